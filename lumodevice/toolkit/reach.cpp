#include "lumodevice/toolkit/reach.hpp"

#include <algorithm>

namespace lumodevice::toolkit {

namespace {

bool liesUnder(const Control& control, const Control& other) {
  const Place& a = control.place();
  const Place& b = other.place();
  return other.kind() == Kind::Frame && other.visible() &&
         other.container() == control.container() && other.zOrder() > control.zOrder() &&
         b.left <= a.left && b.top <= a.top && b.left + b.width >= a.left + a.width &&
         b.top + b.height >= a.top + a.height;
}

}  // namespace

bool reachable(const Surface& surface, const Control& control) {
  const auto& all = surface.controls();
  const bool covered = std::any_of(all.begin(), all.end(),
                                   [&](const auto& other) { return liesUnder(control, *other); });
  const Container* container = control.container();
  return control.visible() && !covered && (container == nullptr || reachable(surface, *container));
}

}  // namespace lumodevice::toolkit
