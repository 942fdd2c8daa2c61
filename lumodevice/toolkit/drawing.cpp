#include "lumodevice/toolkit/drawing.hpp"

#include <algorithm>
#include <cmath>

#include "lumodevice/toolkit/controls.hpp"
#include "lumodevice/toolkit/reach.hpp"

namespace lumodevice::toolkit {

namespace {

bool overlap(const Place& a, const Place& b) {
  return a.left < b.left + b.width && b.left < a.left + a.width && a.top < b.top + b.height &&
         b.top < a.top + a.height;
}

/// Whether the picture lies over a part of the control. Over a page it lies as over what sits
/// there.
bool touches(const Pictured& picture, const Control& control) {
  Place place = control.place();
  const Control* beside = &control;
  while (beside->container() != nullptr && beside->container() != picture.container()) {
    beside = beside->container();
    place.left += beside->place().left;
    place.top += beside->place().top;
  }
  const bool inFront =
      beside->container() == picture.container() && picture.zOrder() > beside->zOrder();
  return inFront && !isPage(control) && overlap(place, picture.place());
}

}  // namespace

bool isPage(const Control& control) {
  const Container* const around = control.container();
  return control.kind() == Kind::Frame && around != nullptr &&
         around->place().width <= control.place().width;
}

bool seen(const Surface& surface, const Control& control) {
  const auto& all = surface.controls();
  return reachable(surface, control) && std::none_of(all.begin(), all.end(), [&](const auto& each) {
           const auto* const picture = dynamic_cast<const Pictured*>(each.get());
           return picture != nullptr && picture != &control && picture->picture() &&
                  picture->visible() && touches(*picture, control);
         });
}

Control* clickedByEnter(const Control& field) {
  const auto& all = field.surface().controls();
  const auto found = std::find_if(all.begin(), all.end(), [&field](const auto& control) {
    return control->fullName() == field.look().enterClicks;
  });
  return found == all.end() ? nullptr : found->get();
}

Colour colourOf(ColorRole role, bool onDark) {
  switch (role) {
    case ColorRole::Heading:
      return onDark ? Colour{0x8a, 0xbc, 0xf5} : Colour{0x1b, 0x4f, 0x91};
    case ColorRole::Value:
      return onDark ? Colour{0x7d, 0xe3, 0xa5} : Colour{0x0b, 0x5d, 0x36};
    case ColorRole::Warning:
      return onDark ? Colour{0xff, 0x9b, 0x8f} : Colour{0xb0, 0x21, 0x1a};
    case ColorRole::Hint:
      return onDark ? Colour{0xaa, 0xb4, 0xbf} : Colour{0x56, 0x61, 0x6d};
    case ColorRole::Normal:
      break;
  }
  return {};
}

Colour mixed(Colour from, Colour to, double share) {
  const auto part = [share](std::uint8_t a, std::uint8_t b) {
    return static_cast<std::uint8_t>(std::lround(a + (b - a) * share));
  };
  return {part(from.red, to.red), part(from.green, to.green), part(from.blue, to.blue)};
}

bool isDark(Colour window) {
  constexpr int kMiddle = 128;
  const auto [least, most] = std::minmax({window.red, window.green, window.blue});
  return (least + most) / 2 < kMiddle;
}

Colour cardColour(Colour window, Colour field, Colour text) {
  return isDark(window) ? mixed(window, text, 0.05) : mixed(window, field, 0.65);
}

Colour edgeColour(Colour window, Colour text) {
  return mixed(window, text, 0.18);
}

}  // namespace lumodevice::toolkit
