#pragma once

#include <array>
#include <optional>
#include <string_view>

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

}  // namespace lumodevice::monitor
