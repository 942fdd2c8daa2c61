#include "simulator/mainframe.hpp"

#include <stdexcept>
#include <string>
#include <utility>

#include "simulator/setting.hpp"

namespace zansim {

Mainframe::Mainframe(Configuration configuration) : configuration_(std::move(configuration)) {
  for (const Module* const module : configuration_.channels()) {
    const std::size_t number = channels_.size() + 1;
    Channel& added = channels_.emplace_back(*module, configuration_.sourceOf(number),
                                            configuration_.seed + number);
    added.apply(usualSettings(*module));
  }
  for (const auto& [number, source] : configuration_.sources) {
    if (number < 1 || number > channels_.size()) {
      throw std::invalid_argument("there is no channel " + std::to_string(number) +
                                  " to put a source on");
    }
  }
}

Channel& Mainframe::channel(std::size_t number, Duration now) {
  Channel& found = channels_[number - 1];
  found.advance(now);
  return found;
}

void Mainframe::reset(Duration now) {
  selected_ = 1;
  page_ = Page::Readings;
  for (std::size_t number = 1; number <= channels_.size(); ++number) {
    Channel& reset = channel(number, now);
    reset.switchOff();
    reset.clearTrip();
    reset.apply(usualSettings(reset.module()));
  }
}

}  // namespace zansim
