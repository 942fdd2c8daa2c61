#include "simulator/mainframe.hpp"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <utility>

#include "simulator/commands/setting.hpp"

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

void Mainframe::selectChannel(std::size_t channel) {
  const Group group = groups_.of(channel);
  selected_ = group.parallel ? group.head : channel;
}

void Mainframe::selectNextChannel() {
  do {
    selected_ = selected_ % channelCount() + 1;
  } while (groups_.isFurtherMember(selected_));
}

bool Mainframe::resizeGroup(std::size_t size, Duration now) {
  const Group before = groups_.of(selected_);
  if (!groups_.resize(selected_, size, configuration_.channels())) {
    return false;
  }
  if (size != before.size) {
    settle({selected_, std::max(size, before.size)}, now);
  }
  return true;
}

bool Mainframe::setParallel(bool parallel, Duration now) {
  const Group before = groups_.of(selected_);
  if (!groups_.setParallel(selected_, parallel)) {
    return false;
  }
  if (parallel != before.parallel) {
    settle(before, now);
  }
  selectChannel(selected_);
  return true;
}

void Mainframe::settle(const Group& channels, Duration now) {
  const std::vector<const Module*> modules = configuration_.channels();
  for (std::size_t number = channels.head; number < channels.end(); ++number) {
    const Group group = groups_.of(number);
    const std::size_t joined = group.parallel && group.head == number ? group.size : 1;
    const Module module = inParallel(std::span(modules).subspan(number - 1, joined));
    Channel& settled = channel(number, now);
    Settings settings = settled.settings();
    bringWithinLimits(settings, module);
    settled.become(module, settings);
  }
}

Group Mainframe::switchedTogether() const {
  const Group group = groups_.of(selected_);
  return group.parallel ? Group{group.head} : group;
}

bool Mainframe::switchOn(Duration now) {
  const Group group = switchedTogether();
  for (std::size_t number = group.head; number < group.end(); ++number) {
    if (channel(number, now).trip() != Trip::None) {
      return false;
    }
  }
  for (std::size_t number = group.head; number < group.end(); ++number) {
    static_cast<void>(channel(number, now).switchOn());
  }
  return true;
}

void Mainframe::switchOff(Duration now) {
  const Group group = switchedTogether();
  for (std::size_t number = group.head; number < group.end(); ++number) {
    channel(number, now).switchOff();
  }
}

void Mainframe::reset(Duration now) {
  selected_ = 1;
  groups_.dissolve();
  style_ = Style::VoltsAmps;
  settle({1, channelCount()}, now);
  page_ = Page::Readings;
  for (std::size_t number = 1; number <= channels_.size(); ++number) {
    Channel& reset = channel(number, now);
    reset.clearTrip();
    reset.apply(usualSettings(reset.module()));
  }
}

}  // namespace zansim
