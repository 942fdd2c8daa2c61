#pragma once

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "hosts/zanctl/commands/command.hpp"

namespace zanctl {

/// When readings end by themselves. Volts, seconds, watt-hours.
struct Limits {
  std::optional<double> volts;
  std::optional<double> seconds;
  std::optional<double> wattHours;
  [[nodiscard]] bool any() const { return volts || seconds || wattHours; }
};

/// Adds --stop-below, --stop-after and --stop-energy. The limits must live until the command line
/// was read.
void addLimits(CLI::App& parser, Limits& limits);

/// Adds an option that takes a time. `seconds` must live until the command line was read.
void addSeconds(CLI::App& parser, const char* name, std::optional<double>& seconds,
                const char* help);

/// "10.5V", "500mV", "2h", "1h30min", "50Wh": numbers, each with a unit of the kind, in the unit of
/// Limits; a single number may be without. None for anything else, and for what is not above 0.
[[nodiscard]] std::optional<double> parseVolts(std::string_view text);
[[nodiscard]] std::optional<double> parseSeconds(std::string_view text);
[[nodiscard]] std::optional<double> parseWattHours(std::string_view text);

/// What one channel said. None for what it did not say.
struct Measured {
  std::optional<double> volts;
  std::optional<double> watts;
  std::optional<bool> on;
};

/// The energy under the straight lines between the readings of a power, also over a gap: what was
/// drawn then is not to be left out.
class Energy {
 public:
  using Time = std::chrono::nanoseconds;

  /// Returns what has come to it with this reading, in watt-hours.
  double add(double watts, Time now);
  [[nodiscard]] double wattHours() const { return wattHours_; }

 private:
  std::optional<Time> at_;
  double watts_ = 0;
  double wattHours_ = 0;
};

/// Holds readings against limits.
class LimitWatch {
 public:
  using Time = std::chrono::nanoseconds;

  LimitWatch(const Limits& limits, Time begin) : limits_(limits), begin_(begin) {}

  /// Readings in a row without a voltage, after which a channel counts as below its limit.
  static constexpr int kMostUnknown = 3;

  /// One channel was read at that time. Why the readings are to end; none while they go on. The
  /// voltage counts while the load is on. The energy is that of all channels.
  [[nodiscard]] std::optional<std::string> take(const std::string& channel,
                                                const Measured& measured, Time now);
  /// The same for the time alone.
  [[nodiscard]] std::optional<std::string> expired(Time now) const;

 private:
  struct Last {
    Energy energy = {};
    int unknown = 0;
  };

  Limits limits_;
  Time begin_;
  std::map<std::string, Last> channels_;
  double wattHours_ = 0;
};

}  // namespace zanctl
