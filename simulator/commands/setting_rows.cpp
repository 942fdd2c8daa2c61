#include "simulator/commands/setting_rows.hpp"

#include "simulator/load/channel.hpp"

namespace zansim {
namespace {

/// Half a module has no B value to set; it is asked for all the same and answers what it keeps.
bool refusesToSet(const Channel& channel, const Row& row) {
  return row.setting.valueB && channel.module().half != Half::Whole;
}

}  // namespace

void setNumber(Call& call) {
  Channel* const channel = call.channel();
  if (channel == nullptr) {
    return;
  }
  if (refusesToSet(*channel, call.row)) {
    call.fail(Error::SettingsConflict);
    return;
  }
  const Setting& setting = call.row.setting;
  Settings changed = channel->settings();
  if (const auto value = call.number(0, setting.bounds(channel->module(), changed))) {
    setting.number(changed) = *value;
    channel->apply(changed);
  }
}

void askNumber(Call& call) {
  const Channel* const channel = call.channel();
  if (channel == nullptr) {
    return;
  }
  const Setting& setting = call.row.setting;
  Settings present = channel->settings();
  if (call.arguments.count == 0) {
    call.reply(setting.number(present));
  } else if (const auto limit = call.limit(0, setting.bounds(channel->module(), present))) {
    call.reply(*limit);
  }
}

void setFlag(Call& call) {
  Channel* const channel = call.channel();
  if (channel == nullptr) {
    return;
  }
  Settings changed = channel->settings();
  if (const auto value = call.choice(0, call.row.setting.words)) {
    changed.*call.row.setting.flag = *value;
    channel->apply(changed);
  }
}

void askFlag(Call& call) {
  if (const Channel* const channel = call.channel()) {
    call.reply(channel->settings().*call.row.setting.flag ? "1" : "0");
  }
}

constexpr Limits kHighAmpsLimits{"0 to the high current range",
                                 [](const Module& module, const Settings&) {
                                   return Range{0, module.highAmps};
                                 }};
constexpr Limits kHighVoltsLimits{"0 to the high voltage range",
                                  [](const Module& module, const Settings&) {
                                    return Range{0, module.highVolts};
                                  }};
constexpr Limits kRangeVoltsLimits{"0 to the voltage range",
                                   [](const Module& module, const Settings& settings) {
                                     return Range{0, settings.fullScaleVolts(module)};
                                   }};

}  // namespace zansim
