#include "simulator/commands/setting.hpp"

#include <algorithm>

#include "simulator/commands/command_tables.hpp"

namespace zansim {
namespace {

template <typename Action>
void forEachNumber(const Action& action) {
  for (const std::span<const Row> table : commandTables()) {
    for (const Row& row : table) {
      if (row.setting.number != nullptr) {
        action(row.setting);
      }
    }
  }
}

}  // namespace

Bounds Setting::bounds(const Module& module, const Settings& settings) const {
  const Range range = limits->of(module, settings);
  switch (usual.kind) {
    case Usual::Kind::Least:
      return {range.least, range.most, range.least};
    case Usual::Kind::Most:
      return {range.least, range.most, range.most};
    case Usual::Kind::Given:
      break;
  }
  return {range.least, range.most, std::clamp(usual.given, range.least, range.most)};
}

Settings usualSettings(const Module& module) {
  Settings settings;
  forEachNumber([&](const Setting& setting) {
    setting.number(settings) = setting.bounds(module, settings).usual;
  });
  return settings;
}

void bringWithinLimits(Settings& settings, const Module& module) {
  forEachNumber([&](const Setting& setting) {
    const Range range = setting.limits->of(module, settings);
    double& number = setting.number(settings);
    number = std::clamp(number, range.least, range.most);
  });
}

}  // namespace zansim
