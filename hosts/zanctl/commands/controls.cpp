#include "hosts/zanctl/commands/controls.hpp"

#include "hosts/zanctl/output/escape.hpp"
#include "hosts/zanctl/output/table.hpp"
#include "lumodevice/toolkit/properties.hpp"

namespace zanctl {

namespace {

namespace toolkit = lumodevice::toolkit;

Row rowOf(const toolkit::Control& control) {
  const std::string_view shown = toolkit::shownProperty(control);
  return {control.fullName(),
          std::string(toolkit::kindName(control.kind())),
          shown.empty() ? "" : escapedCaption(toolkit::readProperty(control, shown)),
          control.enabled() ? "True" : "False",
          control.visible() ? "True" : "False",
          escaped(control.tag())};
}

}  // namespace

ExitStatus runControls(Station& station, const Options& options) {
  std::vector<Row> rows = {{"Name", "Kind", "Caption or text", "Enabled", "Visible", "Tag"}};
  for (const auto& control : station.component().surface().controls()) {
    const bool wanted = options.arguments.empty() || options.arguments[0] == control->name() ||
                        options.arguments[0] == control->fullName();
    if (wanted) {
      rows.push_back(rowOf(*control));
    }
  }
  if (rows.size() == 1) {
    throw Unusable("unknown control " + escaped(options.arguments[0]) + " (see zanctl controls)");
  }
  station.output().write(alignedTable(rows));
  return kDone;
}

}  // namespace zanctl
