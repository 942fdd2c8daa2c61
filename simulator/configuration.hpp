#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace zansim {

/// Which part of a plug-in module answers under a slot entry.
enum class Half { Whole, Left, Right };

/// What a kind of load module can do. Voltages in volts, currents in amperes, power in watts.
struct Module {
  std::string_view text;  ///< as "*RDT?" shows it
  Half half;
  bool groupable;  ///< may be joined with neighbours of its kind
  double lowVolts;
  double highVolts;
  double lowAmps;
  double highAmps;
  double watts;
};

/// Every kind of module there is.
[[nodiscard]] std::span<const Module> moduleCatalogue();

/// How the instrument is made up. Entries of `slots` are module texts of the catalogue or "0" for
/// an empty slot; the two halves of a two-channel module stand side by side, the left one first.
struct Configuration {
  std::string maker = "Ostbrook Instruments";
  std::string model = "ZAN63200";
  std::string serial = "SIM00001";
  std::string firmware = "1.02.3";
  std::vector<std::string> slots = {"2021L", "2021R", "0", "2040", "2040", "2041", "2050", "2030"};

  /// Slots from a comma-separated text. Throws std::invalid_argument, saying what is wrong, for a
  /// module that does not exist, half a module, more than kMostSlots slots or more than
  /// kMostChannels channels.
  void setSlots(std::string_view text);

  [[nodiscard]] std::string identity() const;
  /// The modules of the occupied slots; channel n is element n - 1. Throws like setSlots.
  [[nodiscard]] std::vector<const Module*> channels() const;
};

/// Hosts read the list of slots with buffers of 80 characters, its line feed included.
inline constexpr std::size_t kMostSlots = 12;
/// Hosts write a channel as one digit.
inline constexpr std::size_t kMostChannels = 9;

}  // namespace zansim
