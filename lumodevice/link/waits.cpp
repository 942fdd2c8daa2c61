#include "lumodevice/link/waits.hpp"

#include <cstdint>
#include <limits>

#include "lumodevice/text/text.hpp"
#include "lumodevice/toolkit/event.hpp"

namespace lumodevice::link {

void Waits::pause(double milliseconds) {
  processEvents();
  sleep(milliseconds);
}

void Waits::waitUnits(double units) {
  attempt([&] { sleep(units * text::Val(unit_.text())); });
}

double Waits::unit() const {
  const double typed = text::Val(unit_.text());
  return typed > 0 && typed <= std::numeric_limits<std::int32_t>::max() ? typed : 0;
}

void Waits::sleep(double milliseconds) {
  goOn();
  host_.loop.sleep(milliseconds);
  goOn();
}

void Waits::processEvents() {
  goOn();
  host_.loop.processEvents();
  goOn();
}

void Waits::showBox(std::string_view text) {
  goOn();
  host_.informationBox(text);
  goOn();
}

/// Whatever ran during a wait may have ended the component.
void Waits::goOn() const {
  if (ended_) {
    throw toolkit::OperationEnded();
  }
}

}  // namespace lumodevice::link
