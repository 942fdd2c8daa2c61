#include <algorithm>
#include <array>
#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "hosts/zanctl/commands/commands.hpp"
#include "hosts/zanctl/commands/connection.hpp"
#include "hosts/zanctl/commands/demo_files.hpp"
#include "hosts/zanctl/output/escape.hpp"
#include "hosts/zanctl/output/table.hpp"
#include "hosts/zanctl/station/station.hpp"
#include "lumodevice/toolkit/hand.hpp"

namespace zanctl {

namespace {

namespace hand = lumodevice::toolkit::hand;
using lumodevice::toolkit::CheckBox;
using lumodevice::toolkit::ComboBox;
using lumodevice::toolkit::CommandButton;
using lumodevice::toolkit::Label;
using lumodevice::toolkit::ListBox;
using lumodevice::toolkit::OptionButton;
using lumodevice::toolkit::TextBox;

/// What is told before a command is sent; an empty text goes on from the step before.
struct Step {
  std::string_view told;
  std::string_view command;
};

constexpr std::array kConsoleSteps = {
    Step{"Questions go to the console as they are, and their answers stand in ResultStr. Long and "
         "short\nforms, upper and lower case mean the same:",
         ":FETCh:VOLTage?"},
    Step{"", "fetc:curr?"},
    Step{"The instrument keeps what it did not understand in its error queue:", ":NONSENSE 1"},
    Step{"", ":SYST:ERR?"},
    Step{"... and the queue is empty again:", ":SYST:ERR?"},
};

/// What the tour shows of a channel: a control, and what it stands for.
struct Shown {
  std::string_view label;
  std::string_view control;
  std::optional<int> index = {};
};

constexpr std::array kChannelSettings = {
    Shown{"A value (A)", "txtInput", 0},       Shown{"B value (A)", "txtInput", 1},
    Shown{"Slew rates (A/us)", "txtInput", 2}, Shown{"", "txtInput", 3},
    Shown{"OCP level (A)", "txtInput", 24},    Shown{"OVP level (V)", "txtInput", 25},
    Shown{"UVP level (V)", "txtInput", 26},
};
constexpr std::array kReadOuts = {Shown{"V", "txtVoltage", 0}, Shown{"A", "txtCurrent", 0},
                                  Shown{"W", "txtPower", 0}};

constexpr std::size_t kReadOutWidth = 11;

constexpr int kTouredChannel = 2;  // its place in the list: CH3
/// What the component waits for an answer, in milliseconds: less than the usual 200, for a tour is
/// no place to wait.
constexpr std::string_view kWaitUnit = "75";
/// To read what was printed.
constexpr std::chrono::milliseconds kRest{700};
constexpr int kDischargeSeconds = 5;
constexpr std::array<std::string_view, 2> kGrouped = {"CH3", "CH4"};

constexpr std::string_view kOpening =
    "A tour of the simulated instrument. Nothing real is touched.\n"
    "\n"
    "The component searches the chosen link, opens the instrument that it finds and lists its\n"
    "channels; > marks the selected one.\n"
    "\n";

constexpr std::string_view kClosing =
    "\n"
    "That was all through the panel's own controls. Go on with:\n"
    "  zanctl --simulate readings           voltage, current and power of every channel\n"
    "  zanctl --simulate send '*IDN?'       one question\n"
    "  zanctl --simulate --trace - connect  what goes over the wire\n"
    "  zanctl controls                      every control of the panel\n"
    "  zanctl run --help                    how to write a script of your own\n";

template <typename ControlType>
ControlType& the(Station& station, std::string_view name, std::optional<int> index = {}) {
  return station.component().surface().get<ControlType>(name, index);
}

std::string textOf(Station& station, const Shown& shown) {
  return escaped(the<TextBox>(station, shown.control, shown.index).text());
}

void rest(Station& station) {
  station.loop().runFor(kRest);
}

/// The operator chooses a channel, and its panel is read back.
void showChannel(Station& station) {
  Output& output = station.output();
  output.write(
      "\nAn operator picks channel 3; the panel asks for its mode, its settings and its "
      "readings:\n");
  auto& channels = the<ComboBox>(station, "cmbChannel");
  hand::select(channels, kTouredChannel);
  std::vector<Row> rows{
      {"Channel", escaped(channels.text())},
      {"Voltage range (V)", escaped(the<Label>(station, "lblVoRange").caption())}};
  for (const Shown& setting : kChannelSettings) {
    if (setting.label.empty()) {
      rows.back()[1] += ", " + textOf(station, setting);
    } else {
      rows.push_back({std::string(setting.label), textOf(station, setting)});
    }
  }
  output.write(alignedTable(rows, "  "));
}

void switchLoad(Station& station) {
  auto& load = the<CheckBox>(station, "chkLoad");
  hand::click(load);
  station.output().line("  " + load.caption());
}

/// The operator loads the battery on the channel and watches it with the auto query.
void loadBattery(Station& station) {
  Output& output = station.output();
  output.write(
      "\nA battery hangs on it. The operator types 20 A, clicks Set and ticks the load switch; "
      "the\n"
      "auto query keeps the read-outs up to date:\n");
  hand::type(the<TextBox>(station, "txtInput", 0), "20");
  hand::click(the<CommandButton>(station, "cmdSet", 0));
  switchLoad(station);
  station.component().AutoQuery(true);
  for (int second = 0; second < kDischargeSeconds && !output.closed(); ++second) {
    station.loop().runFor(std::chrono::seconds(1));
    std::string line = "  " + std::to_string(second + 1) + " s";
    for (const Shown& reading : kReadOuts) {
      const std::string value = textOf(station, reading);
      line.append(kReadOutWidth - std::min(kReadOutWidth, value.size()), ' ').append(value);
      line.append(" ").append(reading.label);
    }
    output.line(line);
  }
  station.component().AutoQuery(false);
}

/// The operator drags the items into a list of the group editor and sends what stands there.
void dragAll(Station& station, std::string_view from, std::string_view onto) {
  hand::click(the<CommandButton>(station, "cmdParalle"));
  for (const std::string_view channel : kGrouped) {
    hand::drag(the<ListBox>(station, from), channel, the<ListBox>(station, onto));
  }
  const Activity activity(station.progress(), "setting the groups");
  hand::click(the<CommandButton>(station, "cmdParaOK"));
}

/// Two channels are joined to a group, and taken apart.
void group(Station& station) {
  Output& output = station.output();
  output.write(
      "\nNeighbouring channels can run as one load. The operator drags CH3 and CH4 into Group1 "
      "and\n"
      "sends that:\n");
  hand::click(the<OptionButton>(station, "optPara"));
  dragAll(station, "List1", "List2");
  const auto& channels = the<ComboBox>(station, "cmbChannel");
  output.line("  offered as " + escaped(channels.text()));
  output.write("... and drags them out again:\n");
  dragAll(station, "List2", "List1");
  output.line("  " + std::to_string(channels.listCount()) + " channels");
}

/// Commands by hand; false when one stayed unanswered.
bool talk(Station& station) {
  Output& output = station.output();
  for (const Step& step : kConsoleSteps) {
    if (!step.told.empty()) {
      output.line("");
      output.write(std::string(step.told) + '\n');
    }
    output.line(std::string("  ").append(step.command));
    if (!sendAndPrint(station, std::string(step.command))) {
      return false;
    }
  }
  return true;
}

ExitStatus runDemo(Station& station) {
  Output& output = station.output();
  checkRoomForTour(station);
  output.write(kOpening);
  hand::type(the<TextBox>(station, "Text5"), kWaitUnit);
  if (!connectOrExplain(station)) {
    return kFailed;
  }
  printConnection(station);
  rest(station);
  showChannel(station);
  rest(station);
  loadBattery(station);
  if (!showScreen(station)) {
    return kFailed;
  }
  switchLoad(station);
  rest(station);
  if (!showMemoryFiles(station)) {
    return kFailed;
  }
  rest(station);
  group(station);
  rest(station);
  if (!talk(station)) {
    return kFailed;
  }
  output.write(kClosing);
  return output.closed() ? kOutputClosed : kDone;
}

}  // namespace

const Command kDemo = {
    .name = "demo",
    .summary = "Take a guided tour of the simulated instrument",
    .usage = "",
    .prepare = [](CLI::App& /*parser*/) -> Run { return runDemo; },
    .alwaysSimulated = true,
    .temporaryDrive = true,
    .transfers = true,
};

}  // namespace zanctl
