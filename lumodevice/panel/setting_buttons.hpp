#pragma once

#include <string>

#include "lumodevice/link/exchange.hpp"
#include "lumodevice/link/link_state.hpp"
#include "lumodevice/link/waits.hpp"
#include "lumodevice/panel/tagged_commands.hpp"

namespace lumodevice::panel {

/// The box of the under-voltage protection level: a level other than 0 means that UVP is on.
inline constexpr int kUvpBox = 26;

/// A value as the panel writes one: at most three decimals, no trailing zeros, no thousands
/// separator, "5" for five. Throws text::NumberFault for infinities and NaN.
[[nodiscard]] std::string FormatValue(double value);

/// The Set buttons: each checks the value beside it and sends it.
class SettingButtons {
 public:
  /// Takes over cmdSet.
  SettingButtons(form::Controls& form, link::Waits& waits, const link::LinkState& state,
                 link::Exchange& exchange, const TaggedCommands& commands);

 private:
  void set(int index);

  form::Controls& form_;
  link::Waits& waits_;
  const link::LinkState& state_;
  link::Exchange& exchange_;
  const TaggedCommands& commands_;
};

}  // namespace lumodevice::panel
