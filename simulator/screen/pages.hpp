#pragma once

#include "simulator/load/channel.hpp"
#include "simulator/screen/screen.hpp"

namespace zansim {

/// What a page fills, between the line of the mode and the soft keys.
inline constexpr Box kPage{0, 46, kScreenWidth, 156};

/// Voltage, current and power, the settings of the present mode, the protections.
void drawReadings(Picture& picture, const Channel& channel);
/// All settings of the channel.
void drawSettings(Picture& picture, const Channel& channel);

/// A box with a title at its top left; returns what is left for its content.
Box drawPanel(Picture& picture, const Box& box, std::string_view title);

/// Shades of white over black.
inline constexpr Ramp kWhiteOnBlack = {ink::kDarkGrey, ink::kGrey, ink::kLightGrey, ink::kWhite};

}  // namespace zansim
