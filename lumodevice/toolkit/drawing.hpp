#pragma once

#include "lumodevice/export.hpp"
#include "lumodevice/toolkit/picture.hpp"
#include "lumodevice/toolkit/surface.hpp"

/// What all views that draw a form with a window system have in common.
///
///     for (const auto& control : load.surface().controls()) {
///       if (toolkit::seen(load.surface(), *control)) {
///         const toolkit::Colour letters = toolkit::colourOf(control->look().colorRole, false);
///         std::cout << control->fullName() << ": red " << int{letters.red} << '\n';
///       }
///     }
namespace lumodevice::toolkit {

/// The font that forms are drawn for, 9 points, in twips: its height, and how wide `kSampleText` is
/// in wide letters of it. A view whose own font is larger draws all of the form larger.
inline constexpr double kLineTwips = 210;
inline constexpr double kSampleTwips = 4080;
inline constexpr const char* kSampleText = "The quick brown fox jumps over 0123456789";

inline constexpr double kTwipsPerInch = 1440;
/// A point of a picture, as on the screen that forms are drawn on.
inline constexpr int kTwipsPerPicturePoint = 15;

/// The values of Form::mousePointer() that views know.
inline constexpr int kHourglass = 11;

/// Within a frame: where the caption begins from the left and from the top.
inline constexpr int kFrameMargin = 180;
inline constexpr int kFrameCaptionTop = 90;
/// A page's caption is so much larger than the letters around it.
inline constexpr double kPageCaption = 1.3;

/// A frame as wide as what it sits in.
[[nodiscard]] LUMODEVICE_API bool isPage(const Control& control);

/// Whether a part of the control is to be seen: an operator gets to it (reachable()), and no
/// picture lies over a part of it; what a picture touches is not seen at all.
[[nodiscard]] LUMODEVICE_API bool seen(const Surface& surface, const Control& control);

/// The button that the Enter key in the field clicks as well; null for none.
[[nodiscard]] LUMODEVICE_API Control* clickedByEnter(const Control& field);

/// The colours that say it on a light or dark window; of ColorRole::Normal none, which is the
/// window system's business.
[[nodiscard]] LUMODEVICE_API Colour colourOf(ColorRole role, bool onDark);
/// What is painted behind something switched on that must not be overlooked; its letters are white.
inline constexpr Colour kAlarm{0xc6, 0x28, 0x28};

/// A colour so far on the way from one to another.
[[nodiscard]] LUMODEVICE_API Colour mixed(Colour from, Colour to, double share);
/// What a frame is painted in, and its edge: it stands out a little from the window.
[[nodiscard]] LUMODEVICE_API Colour cardColour(Colour window, Colour field, Colour text);
[[nodiscard]] LUMODEVICE_API Colour edgeColour(Colour window, Colour text);
[[nodiscard]] LUMODEVICE_API bool isDark(Colour window);

}  // namespace lumodevice::toolkit
