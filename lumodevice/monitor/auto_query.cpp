#include "lumodevice/monitor/auto_query.hpp"

#include "lumodevice/monitor/rotation.hpp"
#include "lumodevice/text/fault.hpp"
#include "lumodevice/toolkit/handling.hpp"

namespace lumodevice::monitor {

namespace {

constexpr std::int16_t kRotationLimit = 7000;
static_assert(kRotationLimit % kRotation.size() == 0, "the rotation goes on without a jump");

}  // namespace

AutoQuery::AutoQuery(form::Controls& form, link::LinkState& state, link::Exchange& exchange)
    : form_(form), state_(state), exchange_(exchange) {
  toolkit::handle(form_.chkAutoQuery.click, [this] { switched(); });
  toolkit::handle(form_.Timer1.tick, [this] { tick(); });
}

void AutoQuery::switched() {
  const bool on = form_.chkAutoQuery.value() == toolkit::CheckBox::kTicked;
  state_.showChannel(on);
  toolkit::EveryStep steps;  // a view that throws must not leave the box ticked and a timer off
  steps.take([&] { form_.Timer1.setEnabled(on); });
  if (on) {
    // Selecting the VISA link puts the receive poll to rest; without it no read-out would follow.
    steps.take([&] { form_.Timer2.setEnabled(true); });
  }
  steps.finish();
}

void AutoQuery::tick() {
  const RotationEntry& entry = kRotation[static_cast<std::size_t>(rotation_) % kRotation.size()];
  if (!exchange_.turns().inTurn()) {
    form_.Text2.setText(entry.query);
    if (state_.connected()) {
      exchange_.Send();
    }
  } else if (!state_.connected() || exchange_.turns().busy()) {
    return;  // the rotation goes on when the line is free
  } else if (const auto answer = exchange_.takeReading(entry.query)) {
    attempt([&] {
      const link::Gate::Echo echo(exchange_.gate());
      showReading(form_, entry, *answer);
    });
    goOn();
    readings.tell(entry, *answer);
    return;
  }
  goOn();
}

void AutoQuery::goOn() {
  rotation_ = static_cast<std::int16_t>((rotation_ + 1) % kRotationLimit);
}

}  // namespace lumodevice::monitor
