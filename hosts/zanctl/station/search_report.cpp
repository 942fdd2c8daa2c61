#include "hosts/zanctl/station/search_report.hpp"

#include <string>

#include "lumodevice/toolkit/controls.hpp"

namespace zanctl {

namespace toolkit = lumodevice::toolkit;

toolkit::Subscription reportSearch(toolkit::Surface& surface, Progress& progress) {
  const auto& port = surface.get<toolkit::ComboBox>("Combo1");
  const auto& baud = surface.get<toolkit::ComboBox>("Combo2");
  // The search shows its port and its baud rate in two boxes, one right after the other; progress
  // is not shown before both stand.
  return surface.observe([&](const toolkit::Control& control, toolkit::Property property, int) {
    const bool watched = &control == &port || &control == &baud;
    if (watched && property == toolkit::Property::Text && port.listIndex() >= 0 &&
        baud.listIndex() >= 0) {
      progress.tell("trying " + std::string(port.text()) + " at " + std::string(baud.text()) +
                    " baud");
    }
  });
}

}  // namespace zanctl
