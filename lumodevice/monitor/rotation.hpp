#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "lumodevice/form/controls.hpp"

namespace lumodevice::monitor {

/// One query of the auto query, and the control that shows its answer.
struct RotationEntry {
  std::string_view query;
  std::string_view readOut;  ///< "" for an answer that is shown nowhere
  std::optional<int> index;
};

/// In the order of asking.
inline constexpr auto kRotation = std::to_array<RotationEntry>({{":FETC:VOLT?", "txtVoltage", 0},
                                                                {":FETC:CURR?", "txtCurrent", 0},
                                                                {":FETC:POW?", "txtPower", 0},
                                                                {":LOAD?", "chkLoad", {}},
                                                                {":SYST:ERR?", "", {}}});

/// Shows the answer of a query of the rotation. Answers of one character are left out on purpose.
/// Throws text::NumberFault and toolkit::PropertyFault for a load state that makes no sense.
void showReading(form::Controls& form, const RotationEntry& entry, const std::string& answer);

}  // namespace lumodevice::monitor
