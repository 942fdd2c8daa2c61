#include "lumodevice/toolkit/timer.hpp"

#include <chrono>

namespace lumodevice::toolkit {

Timer::~Timer() {
  leaveLoop();
}

void Timer::setInterval(int milliseconds) {
  if (milliseconds < 0 || milliseconds > kLongestInterval) {
    throw PropertyFault(kInvalidPropertyValue, fullName() + ".Interval does not take the value " +
                                                   std::to_string(milliseconds));
  }
  EveryStep steps;
  if (interval_ != milliseconds) {
    interval_ = milliseconds;
    steps.take([&] { changed(Property::Interval); });
  }
  steps.take([&] { arm(); });
  steps.finish();
}

void Timer::joinLoop(EventLoop& loop) {
  leaveLoop();
  loop_ = &loop;
  loop.attach(*this);
  arm();
}

void Timer::leaveLoop() {
  if (loop_ != nullptr) {
    loop_->detach(*this);
    loop_ = nullptr;
  }
}

void Timer::arm() {
  due_.reset();
  if (loop_ == nullptr) {
    return;
  }
  if (enabled() && interval_ > 0) {
    due_ = loop_->now() + period();
  }
  loop_->timersChanged();
}

EventLoop::Duration Timer::period() const {
  return std::chrono::milliseconds(interval_);
}

}  // namespace lumodevice::toolkit
