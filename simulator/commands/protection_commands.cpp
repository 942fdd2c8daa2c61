#include "simulator/commands/command_tables.hpp"
#include "simulator/commands/setting_rows.hpp"
#include "simulator/load/channel.hpp"

namespace zansim {
namespace {

/// Protections reach a little beyond the ratings.
constexpr double kHeadroom = 1.05;

constexpr Limits kOverCurrent{"0 to 105 % of the high current range",
                              [](const Module& module, const Settings&) {
                                return Range{0, kHeadroom * module.highAmps};
                              }};
constexpr Limits kOverVoltage{"0 to 105 % of the high voltage range",
                              [](const Module& module, const Settings&) {
                                return Range{0, kHeadroom * module.highVolts};
                              }};

void clearTrip(Call& call) {
  if (Channel* const channel = call.channel()) {
    channel->clearTrip();
  }
}

/// With or without a value, 0 or 1.
void clearUnderVoltage(Call& call) {
  Channel* const channel = call.channel();
  if (channel == nullptr || (call.arguments.count == 1 && !call.choice(0, kOffOn))) {
    return;
  }
  if (channel->trip() == Trip::UnderVoltage) {
    channel->clearTrip();
  }
}

void askTrip(Call& call) {
  const Channel* const channel = call.channel();
  if (channel == nullptr) {
    return;
  }
  switch (channel->trip()) {
    case Trip::None:
      return call.reply("NONE");
    case Trip::OverCurrent:
      return call.reply("OCP");
    case Trip::OverVoltage:
      return call.reply("OVP");
    case Trip::UnderVoltage:
      return call.reply("UVP");
  }
}

constexpr Row kRows[] = {
    numberRow(":CONFigure:PROTection:CURRent:LEVel", "A", kField<&Settings::overCurrent>,
              kOverCurrent, kMost),
    flagRow(":CONFigure:PROTection:CURRent:STATe", &Settings::overCurrentOn, kOffOn),
    numberRow(":CONFigure:PROTection:VOLTage:LEVel", "V", kField<&Settings::overVoltage>,
              kOverVoltage, kMost),
    flagRow(":CONFigure:PROTection:VOLTage:STATe", &Settings::overVoltageOn, kOffOn),
    numberRow(":CONFigure:PROTection:UVP:LEVel", "V", kField<&Settings::underVoltage>,
              kHighVoltsLimits, kLeast),
    {.header = ":CONFigure:PROTection:UVP:CLEar",
     .set = clearUnderVoltage,
     .setArguments = 1,
     .setArgumentsOptional = true},
    {.header = ":CONFigure:PROTection:CLEar", .set = clearTrip},
    {.header = ":CONFigure:PROTection:TRIPped", .query = askTrip},

    numberRow(":CONFigure:VOLTage:ON", "V", kField<&Settings::onVolts>, kRangeVoltsLimits,
              usually(1)),
    flagRow(":CONFigure:VOLTage:LATch", &Settings::onLatch, kOffOn),

    numberRow(":SPECification:VOLTage:H", "V", kField<&Settings::highestVolts>, kHighVoltsLimits,
              kMost),
    numberRow(":SPECification:VOLTage:L", "V", kField<&Settings::lowestVolts>, kHighVoltsLimits,
              kLeast),
    numberRow(":SPECification:CURRent:H", "A", kField<&Settings::highestAmps>, kHighAmpsLimits,
              kMost),
    numberRow(":SPECification:CURRent:L", "A", kField<&Settings::lowestAmps>, kHighAmpsLimits,
              kLeast),
    flagRow(":SPECification:PASS", &Settings::judging, kOffOn),
};

}  // namespace

std::span<const Row> protectionCommands() {
  return kRows;
}

}  // namespace zansim
