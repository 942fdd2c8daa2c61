#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace zanpanel {

/// When a discharge is over; each one that is there ends it.
struct StopConditions {
  std::optional<double> voltsBelow = std::nullopt;
  std::optional<std::chrono::milliseconds> after = std::nullopt;
  std::optional<double> ampereHours = std::nullopt;
  std::optional<double> wattHours = std::nullopt;

  [[nodiscard]] bool any() const { return voltsBelow || after || ampereHours || wattHours; }
};

/// How far a discharge has come.
struct Progress {
  /// None while none has come.
  std::optional<double> volts = std::nullopt;
  std::chrono::milliseconds elapsed{0};
  double ampereHours = 0;
  double wattHours = 0;
};

/// Why the discharge is over, in words for its report; none while it is not.
[[nodiscard]] std::optional<std::string> reached(const StopConditions& conditions,
                                                 const Progress& progress);

/// "1:02:03"
[[nodiscard]] std::string clockText(std::chrono::milliseconds span);

/// A number with a point, whatever the language of the machine.
[[nodiscard]] std::string fixedText(double value, int decimals);

}  // namespace zanpanel
