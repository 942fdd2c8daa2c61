#include "simulator/configuration.hpp"

#include <algorithm>
#include <array>
#include <stdexcept>

namespace zansim {
namespace {

constexpr std::array kModules = {
    //      text     half          group  low V  high V  low A  high A  watts
    Module{"2021L", Half::Left, false, 16, 80, 2, 20, 100},
    Module{"2021R", Half::Right, false, 16, 80, 4, 45, 250},
    Module{"2030", Half::Whole, false, 16, 80, 6, 60, 300},
    Module{"2040", Half::Whole, true, 16, 80, 7, 70, 350},
    Module{"2041", Half::Whole, true, 16, 80, 12, 120, 600},
    Module{"2050", Half::Whole, false, 125, 500, 1.2, 12, 300},
};

const Module& moduleNamed(std::string_view text) {
  const auto* const found = std::find_if(kModules.begin(), kModules.end(),
                                         [&](const Module& m) { return m.text == text; });
  if (found != kModules.end()) {
    return *found;
  }
  std::string message = "there is no module \"" + std::string(text) + "\"; modules are 0 (empty)";
  for (const Module& module : kModules) {
    message.append(", ").append(module.text);
  }
  throw std::invalid_argument(message);
}

/// True when `right` is the other half of the module whose left half is `left`.
bool areHalvesOfOne(const Module& left, const Module& right) {
  return left.half == Half::Left && right.half == Half::Right &&
         left.text.substr(0, left.text.size() - 1) == right.text.substr(0, right.text.size() - 1);
}

}  // namespace

std::span<const Module> moduleCatalogue() {
  return kModules;
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
