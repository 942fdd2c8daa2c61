#pragma once

#include <span>
#include <string_view>

#include "simulator/quantities.hpp"

namespace zansim {

/// Which part of a plug-in module answers under a slot entry.
enum class Half { Whole, Left, Right };

/// What a kind of load module can do. Voltages in volts, currents in amperes, power in watts,
/// resistances in ohms, slew rates in A/us.
struct Module {
  std::string_view text;  ///< as "*RDT?" shows it
  Half half;
  bool groupable;  ///< may be joined with such neighbours
  double lowVolts;
  double highVolts;
  double lowAmps;
  double highAmps;
  double watts;
  Range lowOhms;
  Range highOhms;
  Range slew;
};

/// Every kind of module there is.
[[nodiscard]] std::span<const Module> moduleCatalogue();

}  // namespace zansim
