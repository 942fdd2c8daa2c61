#include "simulator/configuration.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <span>
#include <stdexcept>

namespace zansim {
namespace {

const Module& moduleNamed(std::string_view text) {
  const std::span<const Module> modules = moduleCatalogue();
  const auto found =
      std::find_if(modules.begin(), modules.end(), [&](const Module& m) { return m.text == text; });
  if (found != modules.end()) {
    return *found;
  }
  std::string message = "there is no module \"" + std::string(text) + "\"; modules are 0 (empty)";
  for (const Module& module : modules) {
    message.append(", ").append(module.text);
  }
  throw std::invalid_argument(message);
}

/// True when `right` is the other half of the module whose left half is `left`.
bool areHalvesOfOne(const Module& left, const Module& right) {
  return left.half == Half::Left && right.half == Half::Right &&
         left.text.substr(0, left.text.size() - 1) == right.text.substr(0, right.text.size() - 1);
}

/// What hangs on a channel out of the box: batteries on the odd channels, supplies on the even
/// ones, a high voltage where only a module for it can take it.
Source usualSource(std::size_t channel, const Module& module) {
  constexpr double kHighVolts = 100;
  Source source{5, 0.02};
  if (module.lowVolts > kHighVolts) {
    source = {380, 1.5};
  } else if (channel % 2 == 1) {
    source = {12.6, 0.05, 5};
  }
  source.rippleVolts = source.volts / 5000;
  source.driftVolts = source.volts / 2000;
  return source;
}

/// Channel, volts, ohms, ampere-hours.
using SourceNumbers = std::array<double, 4>;

/// "3=12.6,0.05" or "3=12.6,0.05,5"; nothing for another text.
std::optional<SourceNumbers> sourceNumbers(std::string_view text) {
  constexpr std::string_view kSeparators = "=,,";
  constexpr SourceNumbers kMost = {kMostChannels, kMostSourceVolts, kMostSourceOhms,
                                   kMostAmpereHours};
  SourceNumbers numbers{};
  const char* const end = text.data() + text.size();
  const char* at = text.data();
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const auto [stop, code] = std::from_chars(at, end, numbers[i]);
    if (code != std::errc() || !(numbers[i] >= 0 && numbers[i] <= kMost[i])) {
      return std::nullopt;
    }
    if (stop == end) {
      const bool wholeChannel = numbers[0] >= 1 && numbers[0] == std::floor(numbers[0]);
      return i >= 2 && wholeChannel ? std::optional(numbers) : std::nullopt;
    }
    if (i == kSeparators.size() || *stop != kSeparators[i]) {
      return std::nullopt;
    }
    at = stop + 1;
  }
  return std::nullopt;
}

}  // namespace

Source Configuration::sourceOf(std::size_t channel) const {
  const auto given = sources.find(channel);
  return given != sources.end() ? given->second : usualSource(channel, *channels().at(channel - 1));
}

void Configuration::setSource(std::string_view text) {
  const std::optional<SourceNumbers> numbers = sourceNumbers(text);
  if (!numbers) {
    throw std::invalid_argument("\"" + std::string(text) +
                                "\" is no source; write CHANNEL=VOLTS,OHMS or "
                                "CHANNEL=VOLTS,OHMS,AMPEREHOURS, as in 3=12.6,0.05");
  }
  const auto [channel, volts, ohms, ampereHours] = *numbers;
  sources[static_cast<std::size_t>(channel)] = {volts, ohms, ampereHours};
}

void Configuration::setSlots(std::string_view text) {
  Configuration changed = *this;
  changed.slots.clear();
  for (std::size_t start = 0; start <= text.size();) {
    const std::size_t comma = std::min(text.find(',', start), text.size());
    changed.slots.emplace_back(text.substr(start, comma - start));
    start = comma + 1;
  }
  static_cast<void>(changed.channels());
  *this = std::move(changed);
}

std::string Configuration::identity() const {
  return maker + "," + model + "," + serial + "," + firmware;
}

std::vector<const Module*> Configuration::channels() const {
  std::vector<const Module*> found;
  const Module* before = nullptr;
  for (const std::string& slot : slots) {
    const Module* const module = slot == "0" ? nullptr : &moduleNamed(slot);
    const bool rightHalf = module != nullptr && module->half == Half::Right;
    const bool leftBefore = before != nullptr && before->half == Half::Left;
    if (rightHalf != leftBefore || (rightHalf && !areHalvesOfOne(*before, *module))) {
      throw std::invalid_argument(
          "the halves of a two-channel module must stand side by side, as in 2021L,2021R");
    }
    if (module != nullptr) {
      found.push_back(module);
    }
    before = module;
  }
  if (before != nullptr && before->half == Half::Left) {
    throw std::invalid_argument("the last slot holds a left half without its right half");
  }
  if (slots.size() > kMostSlots || found.size() > kMostChannels) {
    throw std::invalid_argument("a mainframe has at most 12 slots and 9 channels");
  }
  return found;
}

}  // namespace zansim
