#include "hosts/zanpanel/discharge/discharge.hpp"

#include <utility>

#include "hosts/zanpanel/discharge/switch_off.hpp"
#include "lumodevice/toolkit/controls.hpp"
#include "lumodevice/toolkit/hand.hpp"

namespace zanpanel {

namespace toolkit = lumodevice::toolkit;

namespace {

constexpr std::string_view kIsOff = "The instrument confirms that the load is off.";
constexpr std::string_view kUnsure =
    "THE LOAD MAY STILL BE ON: the instrument has not confirmed that it is off.";

}  // namespace

Discharge::Discharge(lumodevice::ZANCtrl& load, Monitor& monitor)
    : load_(load), monitor_(monitor) {}

ChannelRecord& Discharge::record() const {
  return monitor_.records().at(channel_);
}

std::optional<std::string> Discharge::hindrance(const StopConditions& conditions) const {
  if (underWay()) {
    return "a discharge is running";
  }
  if (!load_.isConnected() || monitor_.channel().empty()) {
    return "no channel is connected";
  }
  if (load_.observing()) {
    return "the instrument is only watched";
  }
  if (!conditions.any()) {
    return "at least one stop condition is needed";
  }
  const auto* const channel = monitor_.current();
  if (conditions.voltsBelow && channel->lastVolts &&
      channel->lastVolts->value < *conditions.voltsBelow) {
    return "the voltage is below the stop voltage already";
  }
  return std::nullopt;
}

void Discharge::start(const StopConditions& conditions) {
  if (hindrance(conditions)) {
    return;
  }
  conditions_ = conditions;
  channel_ = monitor_.channel();
  outcome_.clear();
  begin_ = monitor_.now();
  wasOn_ = record().load.on().value_or(false);
  record().counters.reset();
  state_ = State::Running;
  if (!load_.AutoQuery()) {
    load_.AutoQuery(true);
  }
  auto& box = load_.surface().get<toolkit::CheckBox>("chkLoad");
  if (!wasOn_) {
    if (box.value() == toolkit::CheckBox::kTicked) {
      load_.SendCmd(":LOAD 1");
    } else {
      toolkit::hand::click(box);
    }
  }
}

void Discharge::stop(const std::string& why) {
  if (underWay() && !switching_) {
    finish(why);
  }
}

void Discharge::look() {
  if (!underWay() || switching_) {
    return;
  }
  if (monitor_.linkLost() || monitor_.channel() != channel_) {
    state_ = State::Unwatched;
    return;
  }
  state_ = State::Running;
  const auto on = record().load.on();
  if (on.value_or(false)) {
    wasOn_ = true;
  } else if (on && wasOn_) {
    finish(record().load.tripped() ? "the load went off by itself (a protection, or its own key)"
                                   : "the load was switched off");
    return;
  }
  if (const auto why = reached(conditions_, progress())) {
    finish(*why);
  }
}

Progress Discharge::progress() const {
  Progress progress;
  if (channel_.empty()) {
    return progress;
  }
  const ChannelRecord& channel = record();
  if (channel.lastVolts && channel.lastVolts->at >= begin_) {
    progress.volts = channel.lastVolts->value;
  }
  progress.elapsed = end() - begin_;
  progress.ampereHours = channel.counters.ampereHours();
  progress.wattHours = channel.counters.wattHours();
  return progress;
}

void Discharge::finish(const std::string& why) {
  switching_ = true;
  why_ = why;
  const bool off = switchOff();
  end_ = monitor_.now();
  state_ = off ? State::Off : State::Unsure;
  outcome_ = "Over: " + why + ". " + std::string(off ? kIsOff : kUnsure);
  monitor_.mark(Mark::Kind::Stop, why);
  switching_ = false;
}

void Discharge::confirmAgain() {
  if (state_ == State::Unsure && !std::exchange(switching_, true)) {
    if (switchOff()) {
      state_ = State::Off;
      outcome_ = "Over: " + why_ + ". " + std::string(kIsOff);
    }
    switching_ = false;
  }
}

/// As the operator would, who has gone to another one.
bool Discharge::chooseOwnChannel() {
  auto& list = load_.surface().get<toolkit::ComboBox>("cmbChannel");
  for (int i = 0; i < list.listCount(); ++i) {
    if (list.list(i) == channel_) {
      toolkit::hand::select(list, i);
      return monitor_.channel() == channel_;
    }
  }
  return false;
}

bool Discharge::switchOff() {
  if (!load_.isConnected() || (monitor_.channel() != channel_ && !chooseOwnChannel())) {
    return false;
  }
  return switchLoadOff(load_);
}

}  // namespace zanpanel
