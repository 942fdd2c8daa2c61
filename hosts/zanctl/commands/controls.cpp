#include <memory>

#include "hosts/zanctl/commands/arguments.hpp"
#include "hosts/zanctl/commands/commands.hpp"
#include "hosts/zanctl/output/control_names.hpp"
#include "hosts/zanctl/output/escape.hpp"
#include "hosts/zanctl/output/nearest.hpp"
#include "hosts/zanctl/output/table.hpp"
#include "hosts/zanctl/station/station.hpp"
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

/// Of a control array all elements are meant.
ExitStatus printControls(Station& station, const std::optional<std::string>& name) {
  std::vector<Row> rows = {{"Name", "Kind", "Caption or text", "Enabled", "Visible", "Tag"}};
  for (const auto& control : station.component().surface().controls()) {
    if (!name || *name == control->name() || *name == control->fullName()) {
      rows.push_back(rowOf(*control));
    }
  }
  if (rows.size() == 1) {
    const std::string unknown = name.value_or("");
    throw Unusable("unknown control " + escaped(unknown) +
                   didYouMean(unknown, namesOfControls(station.component().surface())) +
                   " (see zanctl controls)");
  }
  station.output().write(alignedTable(rows));
  return kDone;
}

Run prepare(CLI::App& parser) {
  const auto name = std::make_shared<std::optional<std::string>>();
  addArgument(parser, "CONTROL", *name,
              "A control, an element of a control array, or a whole array");
  return [name](Station& station) { return printControls(station, *name); };
}

}  // namespace

const Command kControls = {
    .name = "controls",
    .summary = "Print a table of every control of the panel, or of one",
    .usage = "[CONTROL]",
    .prepare = prepare,
    .watching = Watching::All,
};

}  // namespace zanctl
