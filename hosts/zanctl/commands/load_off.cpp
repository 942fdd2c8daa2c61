#include "hosts/zanctl/commands/load_off.hpp"

#include <CLI/App.hpp>
#include <array>
#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

#include "hosts/zanctl/output/escape.hpp"
#include "hosts/zanctl/station/interruption.hpp"
#include "hosts/zanctl/station/station.hpp"
#include "lumodevice/text/text.hpp"
#include "lumodevice/toolkit/controls.hpp"

namespace zanctl {

namespace {

namespace text = lumodevice::text;
using lumodevice::toolkit::ComboBox;

/// Before each further attempt; half a minute in all.
constexpr auto kPauses = std::to_array<std::chrono::seconds>(
    {std::chrono::seconds(1), std::chrono::seconds(2), std::chrono::seconds(4),
     std::chrono::seconds(8), std::chrono::seconds(15)});
/// What a shell reports for a program that a signal ended.
constexpr int kEndedBySignal = 128;

/// "" stands for the channel that is selected, where the instrument lists none.
std::vector<std::string> channelsToSwitch(Station& station, int channel) {
  if (channel != 0) {
    return {std::to_string(channel)};
  }
  std::vector<std::string> numbers;
  const auto& list = station.component().surface().get<ComboBox>("cmbChannel");
  numbers.reserve(static_cast<std::size_t>(list.listCount()));
  for (int i = 0; i < list.listCount(); ++i) {
    numbers.push_back(text::numberText(text::Val(text::Mid(list.list(i), 3, 2))));
  }
  return numbers.empty() ? std::vector<std::string>{""} : numbers;
}

std::string ask(lumodevice::ZANCtrl& component, std::string_view query) {
  component.SendCmd(query);
  return text::Trim(component.ResultStr());
}

/// Only what the instrument itself says counts.
bool switchOff(lumodevice::ZANCtrl& component, const std::string& channel) {
  if (channel.size() > 1) {
    return false;  // a channel is selected by one digit
  }
  if (!channel.empty()) {
    component.SendCmd(":CHAN " + channel);
    if (ask(component, ":CHAN?") != channel) {
      return false;
    }
  }
  component.SendCmd(":LOAD OFF");
  const std::string state = ask(component, ":LOAD?");
  return text::isNumericText(state) && text::Val(state) == 0;
}

/// Finding the instrument again leaves it as it is.
bool haveLink(lumodevice::ZANCtrl& component) {
  if (component.isConnected()) {
    return true;
  }
  component.observing(true);
  return component.reconnect();
}

/// Takes the channels out whose load is off.
void switchOffAll(Station& station, std::vector<std::string>& channels) {
  lumodevice::ZANCtrl& component = station.component();
  for (std::size_t attempt = 0; !channels.empty() && attempt <= kPauses.size(); ++attempt) {
    if (attempt > 0) {
      station.loop().runFor(kPauses.at(attempt - 1));
    }
    if (haveLink(component)) {
      component.observing(false);
      std::erase_if(channels, [&](const std::string& each) { return switchOff(component, each); });
    }
  }
}

std::string names(const std::vector<std::string>& channels) {
  std::string all;
  for (const std::string& channel : channels) {
    all += (all.empty() ? "CH" : ", CH") + channel;
  }
  return all == "CH" ? "the selected channel" : all;
}

}  // namespace

void sendLoadOff(Station& station, int channel) {
  lumodevice::ZANCtrl& component = station.component();
  const bool observing = component.observing();
  component.observing(false);
  for (const std::string& each : channelsToSwitch(station, channel)) {
    if (each.size() > 1) {
      continue;  // a channel is selected by one digit
    }
    if (!each.empty()) {
      component.SendCmd(":CHAN " + each);
    }
    component.SendCmd(":LOAD OFF");
  }
  component.observing(observing);
}

bool switchLoadOff(Station& station, int channel) {
  lumodevice::ZANCtrl& component = station.component();
  const bool observing = component.observing();
  component.AutoQuery(false);
  std::vector<std::string> left = channelsToSwitch(station, channel);
  const auto warn = [&](const std::string& why) {
    component.observing(observing);
    station.fail("THE LOAD MAY STILL BE ON: " + names(left) + " could not be switched off" + why);
  };
  try {
    switchOffAll(station, left);
  } catch (const Interrupted&) {
    warn("");
    throw;
  }
  if (!left.empty()) {
    warn(": " + escaped(component.failure().sentence));
    return false;
  }
  component.observing(observing);
  station.errors().line("zanctl: the load is switched off");
  return true;
}

namespace {

/// A second Ctrl-C gives up.
ExitStatus endSwitchedOff(Station& station, int channel, ExitStatus status) {
  try {
    const bool off = !station.everConnected() || switchLoadOff(station, channel);
    return off ? status : kLoadMayBeOn;
  } catch (const Interrupted&) {
    return kLoadMayBeOn;
  }
}

}  // namespace

ExitStatus switchingOff(Station& station, int channel, const std::function<ExitStatus()>& act) {
  if (station.options().sendsNothing) {
    throw WrongCommandLine("--observe sends nothing, so that nothing could be switched off");
  }
  const Interruption interruption;
  ExitStatus status = kFailed;
  try {
    status = act();
  } catch (const Interrupted& interrupted) {
    station.errors().line("zanctl: interrupted; switching the load off");
    status = static_cast<ExitStatus>(kEndedBySignal + interrupted.signal);
  } catch (...) {
    (void)endSwitchedOff(station, channel, status);
    throw;
  }
  return endSwitchedOff(station, channel, status);
}

std::shared_ptr<const bool> addOffAtEnd(CLI::App& parser) {
  const auto wanted = std::make_shared<bool>(false);
  parser.add_flag("--off-at-end", *wanted,
                  "Switch the load off when the command ends, also by Ctrl-C");
  return wanted;
}

}  // namespace zanctl
