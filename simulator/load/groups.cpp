#include "simulator/load/groups.hpp"

#include <algorithm>

namespace zansim {
namespace {

/// What lies in both.
Range common(const Range& left, const Range& right) {
  return {std::max(left.least, right.least), std::min(left.most, right.most)};
}

Range times(const Range& range, double factor) {
  return {range.least * factor, range.most * factor};
}

}  // namespace

Group Groups::of(std::size_t channel) const {
  for (const Group& group : std::span(groups_).first(count_)) {
    if (group.contains(channel)) {
      return group;
    }
  }
  return {channel};
}

bool Groups::isFree(const Group& wanted) const {
  const auto groups = std::span(groups_).first(count_);
  return std::none_of(groups.begin(), groups.end(), [&](const Group& group) {
    return group.head != wanted.head && group.head < wanted.end() && wanted.head < group.end();
  });
}

void Groups::remove(std::size_t head) {
  const auto groups = std::span(groups_).first(count_);
  const auto rest = std::remove_if(groups.begin(), groups.end(),
                                   [&](const Group& group) { return group.head == head; });
  count_ = static_cast<std::size_t>(rest - groups.begin());
}

bool Groups::resize(std::size_t head, std::size_t size, std::span<const Module* const> modules) {
  const Group present = of(head);
  Group wanted{head, size, present.parallel};
  if (present.head != head || !isFree(wanted)) {
    return false;
  }
  if (size == 1) {
    remove(head);
    return true;
  }
  const bool isNew = present.size == 1;
  if (wanted.end() > modules.size() + 1 || (isNew && count_ == kMost)) {
    return false;
  }
  const auto members = modules.subspan(head - 1, size);
  if (!std::all_of(members.begin(), members.end(),
                   [](const Module* module) { return module->groupable; })) {
    return false;
  }
  remove(head);
  groups_[count_] = wanted;
  ++count_;
  return true;
}

bool Groups::setParallel(std::size_t channel, bool parallel) {
  for (Group& group : std::span(groups_).first(count_)) {
    if (group.contains(channel)) {
      group.parallel = parallel;
      return true;
    }
  }
  return false;
}

Module inParallel(std::span<const Module* const> modules) {
  Module together = *modules.front();
  for (const Module* const module : modules) {
    together.lowVolts = std::min(together.lowVolts, module->lowVolts);
    together.highVolts = std::min(together.highVolts, module->highVolts);
    together.lowAmps = std::min(together.lowAmps, module->lowAmps);
    together.highAmps = std::min(together.highAmps, module->highAmps);
    together.watts = std::min(together.watts, module->watts);
    together.lowOhms = common(together.lowOhms, module->lowOhms);
    together.highOhms = common(together.highOhms, module->highOhms);
    together.slew = common(together.slew, module->slew);
  }
  const auto count = static_cast<double>(modules.size());
  together.lowAmps *= count;
  together.highAmps *= count;
  together.watts *= count;
  together.lowOhms = times(together.lowOhms, 1 / count);
  together.highOhms = times(together.highOhms, 1 / count);
  together.slew = times(together.slew, count);
  return together;
}

}  // namespace zansim
