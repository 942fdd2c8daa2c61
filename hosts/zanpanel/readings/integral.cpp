#include "hosts/zanpanel/readings/integral.hpp"

namespace zanpanel {

void Integral::add(Moment at, double value) {
  if (last_ && at > last_->at && at - last_->at <= longestStep_) {
    valueMilliseconds_ +=
        (value + last_->value) / 2 * static_cast<double>((at - last_->at).count());
  }
  last_ = {at, value};
}

void Integral::reset() {
  last_.reset();
  valueMilliseconds_ = 0;
}

double Integral::total() const {
  constexpr std::chrono::milliseconds kHour = std::chrono::hours(1);
  return valueMilliseconds_ / static_cast<double>(kHour.count());
}

void Counters::setLongestStep(Moment step) {
  charge_.setLongestStep(step);
  energy_.setLongestStep(step);
}

void Counters::current(Moment at, double amperes) {
  if (on_) {
    charge_.add(at, amperes);
  }
}

void Counters::power(Moment at, double watts) {
  if (on_) {
    energy_.add(at, watts);
  }
}

void Counters::load(bool on) {
  if (on != on_) {
    pause();
  }
  on_ = on;
}

void Counters::pause() {
  charge_.pause();
  energy_.pause();
  on_ = false;
}

void Counters::reset() {
  charge_.reset();
  energy_.reset();
}

}  // namespace zanpanel
