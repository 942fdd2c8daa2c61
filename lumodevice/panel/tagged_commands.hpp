#pragma once

#include <string>

#include "lumodevice/link/command_table.hpp"
#include "lumodevice/link/exchange.hpp"
#include "lumodevice/toolkit/controls.hpp"

namespace lumodevice::panel {

/// The command behind a control: its tag is the position of the prefix in the command table plus
/// one.
class TaggedCommands {
 public:
  TaggedCommands(link::Exchange& exchange, const link::CommandTable& commands)
      : exchange_(exchange), commands_(commands) {}

  /// The entry of the command table that a control's tag names. Throws std::out_of_range for a tag
  /// outside the table, which no control of the form has.
  [[nodiscard]] const std::string& prefix(const toolkit::Control& control) const;

  /// The query of a setting: its prefix without blanks around it, and "?".
  [[nodiscard]] std::string query(const toolkit::Control& control) const;

  /// Asks for the setting of a value box and puts the answer, unchanged, into the box; leaves the
  /// box alone when there is no link, or none any more.
  void readBack(toolkit::TextBox& box) const;

 private:
  link::Exchange& exchange_;
  const link::CommandTable& commands_;
};

}  // namespace lumodevice::panel
