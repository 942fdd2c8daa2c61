#pragma once

#include "simulator/mainframe.hpp"
#include "simulator/screen/layer.hpp"

namespace zansim {

/// What the screen shows at one instant: overlay 2 lies over the base layer, overlay 1 over both.
struct Picture {
  Layer base;      ///< entries of the palette
  Layer overlay1;  ///< 0 to 3, see kOverlay1Entries
  Layer overlay2;  ///< 0 to 3, see kOverlay2Entries

  /// The entry of the palette that is seen, and its colour; `x` is below kScreenWidth and `y` below
  /// kScreenHeight, none negative.
  [[nodiscard]] Ink entry(int x, int y) const;
  [[nodiscard]] Colour colour(int x, int y) const { return paletteColour(entry(x, y)); }
};

/// Draws the present page of the selected channel as it is at `now`.
[[nodiscard]] Picture drawScreen(Mainframe& mainframe, Duration now);

}  // namespace zansim
