#pragma once

#include <array>

#include "lumodevice/records.hpp"

/// The instrument's screen as a bitmap.
namespace lumodevice::capture {

/// The colours of the palette indexes 0 to 255 of a display dump.
using ScreenPalette = std::array<BGR, 256>;

/// Entries 0 to 56 are the screen's colours, the rest is black.
void FillScreenPalette(ScreenPalette& palette);

}  // namespace lumodevice::capture
