#include <algorithm>

#include "simulator/commands/command_tables.hpp"
#include "simulator/commands/setting_rows.hpp"
#include "simulator/load/channel.hpp"

namespace zansim {
namespace {

constexpr Limits kRangeAmps{"0 to the current range",
                            [](const Module& module, const Settings& settings) {
                              return Range{0, settings.fullScaleAmps(module)};
                            }};
constexpr Limits kRangeOhms{"the resistance range",
                            [](const Module& module, const Settings& settings) {
                              return settings.lowOhms ? module.lowOhms : module.highOhms;
                            }};
constexpr Limits kLowOhms{"the low resistance range",
                          [](const Module& module, const Settings&) { return module.lowOhms; }};
constexpr Limits kHighOhms{"the high resistance range",
                           [](const Module& module, const Settings&) { return module.highOhms; }};
constexpr Limits kSlew{"the slew rates",
                       [](const Module& module, const Settings&) { return module.slew; }};
constexpr Limits kTime{"0.025 to 50000", [](const Module&, const Settings&) {
                         return Range{0.025, 50000};
                       }};

void setMode(Call& call) {
  Channel* const channel = call.channel();
  if (channel == nullptr) {
    return;
  }
  const auto found = std::find_if(modes().begin(), modes().end(), [&](const Mode& mode) {
    return isWord(call.arguments.items[0], mode.word);
  });
  if (found == modes().end()) {
    call.failWord(0);
    return;
  }
  Settings changed = channel->settings();
  changed.mode = &*found;
  if (found->regulation == Regulation::Current) {
    changed.lowAmps = found->low;
  } else if (found->regulation == Regulation::Resistance) {
    changed.lowOhms = found->low;
  }
  bringWithinLimits(changed, channel->module());
  channel->apply(changed);
}

void askMode(Call& call) {
  if (const Channel* const channel = call.channel()) {
    call.reply(channel->settings().mode->word);
  }
}

void setVoltageRange(Call& call) {
  Channel* const channel = call.channel();
  if (channel == nullptr) {
    return;
  }
  const Module& module = channel->module();
  Settings changed = channel->settings();
  if (isWord(call.arguments.items[0], "LOW") || isWord(call.arguments.items[0], "HIGH")) {
    changed.highVolts = isWord(call.arguments.items[0], "HIGH");
  } else if (const auto volts = call.number(0, {0, module.highVolts, module.highVolts})) {
    changed.highVolts = *volts > module.lowVolts;
  } else {
    return;
  }
  bringWithinLimits(changed, module);
  channel->apply(changed);
}

void askVoltageRange(Call& call) {
  const Channel* const channel = call.channel();
  if (channel == nullptr) {
    return;
  }
  const Module& module = channel->module();
  if (call.arguments.count == 0) {
    call.reply(channel->settings().fullScaleVolts(module));
  } else if (const auto volts =
                 call.limit(0, {module.lowVolts, module.highVolts, module.highVolts})) {
    call.reply(*volts);
  }
}

void setLoad(Call& call) {
  if (call.channel() == nullptr) {
    return;
  }
  if (const auto on = call.choice(0, kOffOn)) {
    call.switchLoad(*on);
  }
}

void askLoad(Call& call) {
  if (const Channel* const channel = call.channel()) {
    call.reply(channel->isOn() ? "1" : "0");
  }
}

using S = Settings;
using Dynamic = Settings::DynamicOhms;

constexpr Row kRows[] = {
    {.header = ":MODE", .query = askMode, .set = setMode, .setArguments = 1},
    {.header = ":LOAD[:STATe]", .query = askLoad, .set = setLoad, .setArguments = 1},
    {.header = ":CONFigure:VOLTage:RANGe",
     .query = askVoltageRange,
     .set = setVoltageRange,
     .mostQueryArguments = 1,
     .setArguments = 1},

    numberRow(":CURRent:STATic:L1", "A", kField<&S::staticAmpsA>, kRangeAmps, kLeast),
    valueBRow(numberRow(":CURRent:STATic:L2", "A", kField<&S::staticAmpsB>, kRangeAmps, kLeast)),
    numberRow(":CURRent:STATic:RISE", "A/us", kField<&S::staticAmpsRise>, kSlew, kMost),
    numberRow(":CURRent:STATic:FALL", "A/us", kField<&S::staticAmpsFall>, kSlew, kMost),

    numberRow(":CURRent:DYNamic:L1", "A", kField<&S::dynamicAmps1>, kRangeAmps, kLeast),
    numberRow(":CURRent:DYNamic:L2", "A", kField<&S::dynamicAmps2>, kRangeAmps, kLeast),
    numberRow(":CURRent:DYNamic:RISE", "A/us", kField<&S::dynamicAmpsRise>, kSlew, kMost),
    numberRow(":CURRent:DYNamic:FALL", "A/us", kField<&S::dynamicAmpsFall>, kSlew, kMost),
    numberRow(":CURRent:DYNamic:T1", "ms", kField<&S::dynamicAmpsTime1>, kTime, usually(1)),
    numberRow(":CURRent:DYNamic:T2", "ms", kField<&S::dynamicAmpsTime2>, kTime, usually(1)),

    numberRow(":VOLTage:L1", "V", kField<&S::voltsA>, kRangeVoltsLimits, kMost),
    valueBRow(numberRow(":VOLTage:L2", "V", kField<&S::voltsB>, kRangeVoltsLimits, kMost)),
    numberRow(":VOLTage:CURRent", "A", kField<&S::voltsCurrentLimit>, kHighAmpsLimits, kMost),
    flagRow(":VOLTage:MODE", &S::voltsFast, {"LOW", "FAST"}),

    numberRow(":RESistance:L1", "ohm", kField<&S::ohmsA>, kRangeOhms, kMost),
    valueBRow(numberRow(":RESistance:L2", "ohm", kField<&S::ohmsB>, kRangeOhms, kMost)),
    numberRow(":RESistance:RISE", "A/us", kField<&S::ohmsRise>, kSlew, kMost),
    numberRow(":RESistance:FALL", "A/us", kField<&S::ohmsFall>, kSlew, kMost),

    numberRow(":RESistance:DYNamic:LOW:L1", "ohm", kField<&S::dynamicLowOhms, &Dynamic::ohms1>,
              kLowOhms, kMost),
    numberRow(":RESistance:DYNamic:LOW:L2", "ohm", kField<&S::dynamicLowOhms, &Dynamic::ohms2>,
              kLowOhms, kMost),
    numberRow(":RESistance:DYNamic:LOW:RISE", "A/us", kField<&S::dynamicLowOhms, &Dynamic::rise>,
              kSlew, kMost),
    numberRow(":RESistance:DYNamic:LOW:FALL", "A/us", kField<&S::dynamicLowOhms, &Dynamic::fall>,
              kSlew, kMost),
    numberRow(":RESistance:DYNamic:LOW:T1", "ms", kField<&S::dynamicLowOhms, &Dynamic::time1>,
              kTime, usually(1)),
    numberRow(":RESistance:DYNamic:LOW:T2", "ms", kField<&S::dynamicLowOhms, &Dynamic::time2>,
              kTime, usually(1)),

    numberRow(":RESistance:DYNamic:HIGH:L1", "ohm", kField<&S::dynamicHighOhms, &Dynamic::ohms1>,
              kHighOhms, kMost),
    numberRow(":RESistance:DYNamic:HIGH:L2", "ohm", kField<&S::dynamicHighOhms, &Dynamic::ohms2>,
              kHighOhms, kMost),
    numberRow(":RESistance:DYNamic:HIGH:RISE", "A/us", kField<&S::dynamicHighOhms, &Dynamic::rise>,
              kSlew, kMost),
    numberRow(":RESistance:DYNamic:HIGH:FALL", "A/us", kField<&S::dynamicHighOhms, &Dynamic::fall>,
              kSlew, kMost),
    numberRow(":RESistance:DYNamic:HIGH:T1", "ms", kField<&S::dynamicHighOhms, &Dynamic::time1>,
              kTime, usually(1)),
    numberRow(":RESistance:DYNamic:HIGH:T2", "ms", kField<&S::dynamicHighOhms, &Dynamic::time2>,
              kTime, usually(1)),
};

}  // namespace

std::span<const Row> settingCommands() {
  return kRows;
}

}  // namespace zansim
