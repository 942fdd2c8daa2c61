#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "simulator/load/module.hpp"
#include "simulator/load/settings.hpp"

namespace zansim {

/// What a number may be and what it is after power-on.
struct Bounds {
  double least;
  double most;
  double usual;
};

/// What a setting may be on a channel, for the manual and as numbers.
struct Limits {
  std::string_view text;
  Range (*of)(const Module& module, const Settings& settings);
};

/// What a setting is after power-on.
struct Usual {
  enum class Kind : std::uint8_t { Least, Most, Given };
  Kind kind = Kind::Least;
  double given = 0;
};

using Words = std::array<std::string_view, 2>;

/// One setting of a channel: a number in `unit`, or one of two words.
struct Setting {
  double& (*number)(Settings&) = nullptr;
  bool Settings::*flag = nullptr;
  std::string_view unit = {};
  const Limits* limits = nullptr;  ///< of a number
  Usual usual = {};                ///< of a number
  Words words = {};                ///< for a flag that is false, that is true
  bool valueB = false;             ///< the halves of a two-channel module lack it

  [[nodiscard]] Bounds bounds(const Module& module, const Settings& settings) const;
};

/// After power-on.
[[nodiscard]] Settings usualSettings(const Module& module);
/// Brings every number to the nearest that is allowed, after a change of range.
void bringWithinLimits(Settings& settings, const Module& module);

}  // namespace zansim
