#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/load/module.hpp"
#include "simulator/load/source.hpp"

namespace zansim {

/// How the instrument is made up. Entries of `slots` are module texts of the catalogue or "0" for
/// an empty slot; the two halves of a two-channel module stand side by side, the left one first.
struct Configuration {
  std::string maker = "Ostbrook Instruments";
  std::string model = "ZAN63200";
  std::string serial = "SIM00001";
  std::string firmware = "1.02.3";
  std::vector<std::string> slots = {"2021L", "2021R", "0", "2040", "2040", "2041", "2050", "2030"};

  /// What hangs on the terminals, by channel; the others have a usual source (see sourceOf).
  std::map<std::size_t, Source> sources;
  /// Ripple and drift of the sources follow from it.
  std::uint64_t seed = 1;
  /// Readings are not what is on the terminals but numbers that tell what was asked: voltages from
  /// 10.0001 on, currents from 20.0001 on, powers from 30.0001 on. The decimals count the readings,
  /// whatever they are of, and begin again at 0 after 99999.
  bool numberedReadings = false;

  /// Slots from a comma-separated text. Throws std::invalid_argument, saying what is wrong, for a
  /// module that does not exist, half a module, more than kMostSlots slots or more than
  /// kMostChannels channels.
  void setSlots(std::string_view text);

  /// A source from "CHANNEL=VOLTS,OHMS" or "CHANNEL=VOLTS,OHMS,AMPEREHOURS". Throws
  /// std::invalid_argument for another text, for volts above kMostSourceVolts and ohms above
  /// kMostSourceOhms.
  void setSource(std::string_view text);

  [[nodiscard]] std::string identity() const;
  [[nodiscard]] Source sourceOf(std::size_t channel) const;
  /// The modules of the occupied slots; channel n is element n - 1. Throws like setSlots.
  [[nodiscard]] std::vector<const Module*> channels() const;
};

/// Hosts read the list of slots with buffers of 80 characters, its line feed included.
inline constexpr std::size_t kMostSlots = 12;
/// Hosts write a channel as one digit.
inline constexpr std::size_t kMostChannels = 9;
inline constexpr double kMostSourceVolts = 1000;
inline constexpr double kMostSourceOhms = 1e6;
inline constexpr double kMostAmpereHours = 1e6;

}  // namespace zansim
