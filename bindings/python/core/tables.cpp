#include "bindings/python/core/tables.hpp"

#include <array>
#include <cstddef>
#include <string_view>

#include "bindings/python/core/text.hpp"
#include "lumodevice/failure.hpp"
#include "lumodevice/form/control_rows.hpp"
#include "lumodevice/members.hpp"
#include "lumodevice/monitor/rotation.hpp"
#include "lumodevice/panel/mode_rows.hpp"

namespace lumopython {

namespace py = pybind11;
namespace form = lumodevice::form;

namespace {

template <typename Rows, typename MakeRow>
py::tuple tableOf(const Rows& rows, MakeRow makeRow) {
  py::list table;
  for (const auto& row : rows) {
    table.append(makeRow(row));
  }
  return py::tuple(table);
}

/// (name, kind, argument, type of the argument, type of the result, help)
py::tuple memberRow(const lumodevice::automation::Member& row) {
  constexpr std::array kKinds = {"get", "put", "put", "method"};
  constexpr std::array kTypes = {"", "bool", "int", "int", "str", "FormattedIO488"};
  return py::make_tuple(toPython(row.name), kKinds.at(static_cast<std::size_t>(row.kind)),
                        toPython(row.argument.name),
                        kTypes.at(static_cast<std::size_t>(row.argument.type)),
                        kTypes.at(static_cast<std::size_t>(row.result)), toPython(row.help));
}

/// (caption, command, frame of its settings, the setting that half of a module has not or -1)
py::tuple modes() {
  py::list table;
  for (const form::ControlRow& row : form::kControls) {
    if (row.name == "optMode") {
      const auto& mode = lumodevice::panel::kModes.at(static_cast<std::size_t>(row.index));
      table.append(py::make_tuple(toPython(row.text), toPython(row.command.text()),
                                  toPython(mode.frame), mode.bValueBox));
    }
  }
  return py::tuple(table);
}

/// (frame, caption with the unit or "", check box beside it or "", command, command in CV)
py::tuple settingRow(const form::SettingRow& row) {
  using namespace lumodevice::panel;
  const form::Command inCv = row.index == kGoNogoHighBox  ? kCurrentHigh
                             : row.index == kGoNogoLowBox ? kCurrentLow
                                                          : row.command;
  return py::make_tuple(toPython(row.frame), toPython(row.caption), toPython(row.beside),
                        toPython(row.command.text()), toPython(inCv.text()));
}

/// The check and combo boxes of a channel that send a command:
/// (control, caption, command, entries)
py::tuple switches() {
  py::list table;
  for (const form::ControlRow& row : form::kControls) {
    const bool box = row.kind == lumodevice::toolkit::Kind::CheckBox ||
                     row.kind == lumodevice::toolkit::Kind::ComboBox;
    if (box && !row.command.none() && row.name != "cmbChannel") {
      table.append(py::make_tuple(toPython(row.name), toPython(row.text),
                                  toPython(row.command.text()), toPython(row.details.items)));
    }
  }
  return py::tuple(table);
}

}  // namespace

void bindTables(py::module_& module) {
  module.attr("MEMBERS") = tableOf(lumodevice::automation::kMemberRows, memberRow);
  module.attr("MODES") = modes();
  module.attr("SETTINGS") = tableOf(form::kSettings, settingRow);
  module.attr("SWITCHES") = switches();
  module.attr("READINGS") = tableOf(lumodevice::monitor::kRotation,
                                    [](const auto& entry) { return toPython(entry.query); });
  module.attr("FAILURES") = tableOf(lumodevice::kFailures, [](const lumodevice::FailureRow& row) {
    return py::make_tuple(toPython(row.name), toPython(row.sentence));
  });
}

}  // namespace lumopython
