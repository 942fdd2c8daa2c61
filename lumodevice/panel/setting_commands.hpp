#pragma once

#include <string>

#include "lumodevice/link/command_table.hpp"
#include "lumodevice/link/exchange.hpp"
#include "lumodevice/link/link.hpp"

namespace lumodevice::panel {

/// The box of the under-voltage protection level: a level other than 0 means that UVP is on.
inline constexpr int kUvpBox = 26;

/// A value as the panel writes one: at most three decimals, no trailing zeros, no thousands
/// separator, "5" for five. Throws text::NumberFault for infinities and NaN.
[[nodiscard]] std::string FormatValue(double value);

/// The Set buttons, the interval fields, and the command prefix of each control.
class SettingCommands {
 public:
  /// Takes over cmdSet and the keys of Text5 and Text6.
  SettingCommands(link::Link& link, link::Exchange& exchange, const link::CommandTable& commands);

  /// The entry of the command table that a control's tag names (its position plus one). Throws
  /// std::out_of_range for a tag outside the table, which no control of the form has.
  [[nodiscard]] const std::string& prefix(const toolkit::Control& control) const;

  /// The query of a setting: its prefix without blanks around it, and "?".
  [[nodiscard]] std::string query(const toolkit::Control& control) const;

  /// Asks for the setting of a value box and puts the answer, unchanged, into the box; leaves the
  /// box alone when there is no link, or none any more.
  void readBack(toolkit::TextBox& box);

 private:
  void set(int index);
  void changeInterval(toolkit::TextBox& field, toolkit::Timer& timer);

  link::Link& link_;
  link::Exchange& exchange_;
  const link::CommandTable& commands_;
};

}  // namespace lumodevice::panel
