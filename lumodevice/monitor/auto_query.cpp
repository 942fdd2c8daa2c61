#include "lumodevice/monitor/auto_query.hpp"

#include "lumodevice/monitor/rotation.hpp"
#include "lumodevice/toolkit/handling.hpp"

namespace lumodevice::monitor {

namespace {

constexpr std::int16_t kRotationLimit = 7000;
static_assert(kRotationLimit % kRotation.size() == 0, "the rotation goes on without a jump");

}  // namespace

AutoQuery::AutoQuery(link::Link& link, link::Exchange& exchange)
    : link_(link), exchange_(exchange) {
  toolkit::handle(link_.form.chkAutoQuery.click, [this] { switched(); });
  toolkit::handle(link_.form.Timer1.tick, [this] { tick(); });
}

void AutoQuery::switched() {
  const bool on = link_.form.chkAutoQuery.value() == toolkit::CheckBox::kTicked;
  const auto loaded = on ? link::kLoadedAutoQuery : link::kLoaded;
  link_.panelState = link_.connected() ? loaded : link::kNotConnected;
  link_.form.Timer1.setEnabled(on);
  if (on) {
    // Selecting the VISA link puts the receive poll to rest; without it no read-out would follow.
    link_.form.Timer2.setEnabled(true);
  }
}

void AutoQuery::tick() {
  link_.form.Text2.setText(kRotation[static_cast<std::size_t>(rotation_) % kRotation.size()].query);
  exchange_.Send();
  rotation_ = static_cast<std::int16_t>((rotation_ + 1) % kRotationLimit);
}

}  // namespace lumodevice::monitor
