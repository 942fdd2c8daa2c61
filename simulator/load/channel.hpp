#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "simulator/load/module.hpp"
#include "simulator/load/operating_point.hpp"
#include "simulator/load/settings.hpp"
#include "simulator/load/source.hpp"
#include "simulator/load/waveform.hpp"
#include "simulator/quantities.hpp"

namespace zansim {

/// What switched a load off.
enum class Trip : std::uint8_t { None, OverCurrent, OverVoltage, UnderVoltage };

/// The true state of a channel's terminals at one instant.
struct Terminals {
  double volts;
  double amps;
  [[nodiscard]] double watts() const { return volts * amps; }
};

enum class Verdict : std::uint8_t { NotJudged, Go, NoGo };

/// One channel with the source on its terminals. It has no clock: `advance` brings it to an
/// instant, and everything else speaks of that instant. The work of an advance is bounded, however
/// long the time.
class Channel {
 public:
  Channel(const Module& module, const Source& source, std::uint64_t seed);

  [[nodiscard]] const Module& module() const { return module_; }
  [[nodiscard]] const Settings& settings() const { return settings_; }

  /// Instants before the present one change nothing.
  void advance(Duration now);

  [[nodiscard]] Terminals terminals() const;
  /// Above 105 % of the voltage range there is no reading of volts.
  [[nodiscard]] bool isOverRange() const;
  [[nodiscard]] Verdict verdict() const;

  [[nodiscard]] bool isOn() const { return state_.on; }
  [[nodiscard]] Trip trip() const { return state_.trip; }
  /// False, and nothing happens, while the channel is tripped.
  [[nodiscard]] bool switchOn();
  void switchOff();
  void clearTrip() { state_.trip = Trip::None; }

  /// Takes new settings. A dynamic course starts anew where its kind or its times change; a trip of
  /// a protection that they switch off is cleared.
  void apply(const Settings& settings);

  /// Takes the ratings of another module and settings that lie within them, with the load off.
  void become(const Module& module, const Settings& settings);

  /// Puts another source, unused so far, on the terminals.
  void connect(const Source& source);
  [[nodiscard]] const Source& source() const { return source_; }
  /// Coulombs drawn from the source so far.
  [[nodiscard]] double drawn() const { return state_.coulombs; }

 private:
  /// What time changes.
  struct State {
    Duration at{0};
    double amps = 0;
    double coulombs = 0;
    bool on = false;
    bool conducted = false;  ///< since it was switched on
    Trip trip = Trip::None;
  };

  [[nodiscard]] Supply supply(const State& state) const;
  [[nodiscard]] double wantedAmps(const Supply& supply, double level) const;
  [[nodiscard]] double reachableAmps(const Supply& supply, const State& state) const;
  [[nodiscard]] Waveform waveform(const Supply& supply, const State& state) const;
  [[nodiscard]] Trip tripIn(const Supply& supply, const Course& course, bool conducting) const;
  [[nodiscard]] State stepTo(const State& from, Duration to) const;
  /// The first state between the two that is tripped.
  [[nodiscard]] State firstTripped(const State& from, State tripped) const;

  Module module_;
  Source source_;
  std::uint64_t seed_;
  Settings settings_;
  State state_;
  Duration origin_{0};  ///< where a period of the dynamic modes started
};

}  // namespace zansim
