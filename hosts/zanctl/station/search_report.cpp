#include "hosts/zanctl/station/search_report.hpp"

#include <string>
#include <utility>

namespace zanctl {

namespace toolkit = lumodevice::toolkit;

SearchReport::SearchReport(toolkit::Surface& surface, toolkit::EventLoop& loop, Progress& progress)
    : surface_(surface),
      loop_(loop),
      progress_(progress),
      port_(surface.get<toolkit::ComboBox>("Combo1")),
      baud_(surface.get<toolkit::ComboBox>("Combo2")),
      onSleep_(std::move(loop.onSleep)) {
  loop_.onSleep = [this](std::int32_t milliseconds) {
    tell();
    if (onSleep_) {
      onSleep_(milliseconds);
    }
  };
  surface_.attach(*this);
}

SearchReport::~SearchReport() {
  surface_.detach(*this);
  loop_.onSleep = std::move(onSleep_);
}

void SearchReport::changed(const toolkit::Control& control, toolkit::Property property, int) {
  const bool watched = &control == &port_ || &control == &baud_;
  due_ = due_ || (watched && property == toolkit::Property::ListIndex);
}

void SearchReport::tell() {
  if (std::exchange(due_, false)) {
    progress_.tell("trying " + std::string(port_.text()) + " at " + std::string(baud_.text()) +
                   " baud");
  }
}

}  // namespace zanctl
