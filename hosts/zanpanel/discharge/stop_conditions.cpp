#include "hosts/zanpanel/discharge/stop_conditions.hpp"

#include <array>
#include <charconv>
#include <cstdio>

namespace zanpanel {

std::string fixedText(double value, int decimals) {
  std::array<char, 400> text{};
  const auto written = std::to_chars(text.data(), text.data() + text.size(), value,
                                     std::chars_format::fixed, decimals);
  return {text.data(), written.ptr};
}

std::string clockText(std::chrono::milliseconds span) {
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(span).count();
  std::array<char, 40> text{};
  (void)std::snprintf(text.data(), text.size(), "%lld:%02d:%02d",
                      static_cast<long long>(seconds / 3600), static_cast<int>(seconds / 60 % 60),
                      static_cast<int>(seconds % 60));
  return text.data();
}

std::optional<std::string> reached(const StopConditions& conditions, const Progress& progress) {
  if (conditions.voltsBelow && progress.volts && *progress.volts < *conditions.voltsBelow) {
    return "the voltage fell to " + fixedText(*progress.volts, 4) + " V, below " +
           fixedText(*conditions.voltsBelow, 3) + " V";
  }
  if (conditions.after && progress.elapsed >= *conditions.after) {
    return "the time of " + clockText(*conditions.after) + " was over";
  }
  if (conditions.ampereHours && progress.ampereHours >= *conditions.ampereHours) {
    return "the charge reached " + fixedText(*conditions.ampereHours, 4) + " Ah";
  }
  if (conditions.wattHours && progress.wattHours >= *conditions.wattHours) {
    return "the energy reached " + fixedText(*conditions.wattHours, 4) + " Wh";
  }
  return std::nullopt;
}

}  // namespace zanpanel
