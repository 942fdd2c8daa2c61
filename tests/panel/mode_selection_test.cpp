#include <array>
#include <gtest/gtest.h>
#include <string>
#include <string_view>

#include "tests/support/panel_bench.hpp"

namespace lumodevice::panel {
namespace {

using support::kLinks;
using support::linkName;
using support::Over;
using support::PanelBench;

constexpr std::string_view kFrames[] = {"FrameCCStatic", "fraCCDynamic", "FrameCRStatic",
                                        "fraCRDynamic", "FrameCV"};

struct ModeRow {
  const char* caption;
  std::string_view command;
  std::string_view frame;
  std::string_view queries;
};
constexpr std::string_view kCcQueries =
    ":CURR:STAT:L1?\n:CURR:STAT:L2?\n:CURR:STAT:RISE?\n:CURR:STAT:FALL?\n";
constexpr std::string_view kCrQueries = ":RES:L1?\n:RES:L2?\n:RES:RISE?\n:RES:FALL?\n";
constexpr std::string_view kCcDynamicQueries =
    ":CURR:DYN:L1?\n:CURR:DYN:L2?\n:CURR:DYN:RISE?\n"
    ":CURR:DYN:FALL?\n:CURR:DYN:T1?\n:CURR:DYN:T2?\n";
constexpr std::string_view kCrDynamicQueries =
    ":RES:DYN:LOW:L1?\n:RES:DYN:LOW:L2?\n:RES:DYN:LOW:RISE?\n"
    ":RES:DYN:LOW:FALL?\n:RES:DYN:LOW:T1?\n:RES:DYN:LOW:T2?\n";
constexpr auto kModes = std::to_array<ModeRow>({
    {"CC-High", ":MODE CCH\n", "FrameCCStatic", kCcQueries},
    {"CC-Low", ":MODE CCL\n", "FrameCCStatic", kCcQueries},
    {"CV", ":MODE CV\n", "FrameCV", ":VOLT:L1?\n:VOLT:L2?\n:VOLT:CURR?\n:VOLT:MODE?\n"},
    {"CR-High", ":MODE CRH\n", "FrameCRStatic", kCrQueries},
    {"CR-Low", ":MODE CRL\n", "FrameCRStatic", kCrQueries},
    {"CC_Dynamic_High", ":MODE CCDH\n", "fraCCDynamic", kCcDynamicQueries},
    {"CC_Dynamic_Low", ":MODE CCDL\n", "fraCCDynamic", kCcDynamicQueries},
    {"CR_Dynamic_High", ":MODE CRDH\n", "fraCRDynamic", kCrDynamicQueries},
    {"CR_Dynamic_Low", ":MODE CRDL\n", "fraCRDynamic", kCrDynamicQueries},
});

const ModeRow& rowOf(int mode) {
  return kModes.at(static_cast<std::size_t>(mode));
}

std::string option(int mode) {
  return "optMode(" + std::to_string(mode) + ')';
}

/// The frames that are shown, each with its state: "FrameCV enabled 120 3000\n".
std::string shownFrames(PanelBench& bench) {
  std::string shown;
  for (const std::string_view name : kFrames) {
    const auto& frame = bench.control<toolkit::Frame>(name);
    if (frame.visible()) {
      shown += std::string(name) + (frame.enabled() ? " enabled " : " disabled ") +
               std::to_string(frame.place().left) + ' ' + std::to_string(frame.place().top) + '\n';
    }
  }
  return shown;
}

std::string enabledFrames(PanelBench& bench) {
  std::string enabled;
  for (const std::string_view name : kFrames) {
    enabled += bench.control<toolkit::Frame>(name).enabled() ? std::string(name) + '\n' : "";
  }
  return enabled;
}

std::string goNogoTags(PanelBench& bench) {
  return bench.input(27).tag() + ' ' + bench.input(28).tag();
}

/// The boxes and Set buttons of the panel that are disabled themselves: "txtInput(1) cmdSet(1) ".
std::string disabledSettings(PanelBench& bench) {
  std::string disabled;
  for (int i = 0; i < 29; ++i) {
    const auto& button = bench.control<toolkit::CommandButton>("cmdSet", i);
    disabled += bench.input(i).enabled() ? "" : bench.input(i).fullName() + ' ';
    disabled += button.enabled() ? "" : button.fullName() + ' ';
  }
  return disabled;
}

TEST(ModeOptions, haveTheirCaptions) {
  PanelBench bench;
  for (int i = 0; i < 9; ++i) {
    EXPECT_EQ(bench.read(option(i), "Caption"), rowOf(i).caption);
  }
}

TEST(ModeOptions, startWithCcHighAndItsFrameDisabled) {
  PanelBench bench;
  EXPECT_TRUE(bench.mode(0).value());
  EXPECT_EQ(shownFrames(bench), "FrameCCStatic disabled 120 3000\n");
  EXPECT_EQ(enabledFrames(bench), "");
  EXPECT_EQ(goNogoTags(bench), "38 39");
}

TEST(ModeOptions, showSendAndReadTheirModeFromEveryOtherOne) {
  PanelBench bench;
  bench.connect();
  for (int from = 0; from < 9; ++from) {
    for (int to = 0; to < 9; ++to) {
      if (from == to) {
        continue;
      }
      SCOPED_TRACE(option(from) + " to " + option(to));
      const ModeRow& row = rowOf(to);
      bench.chooseMode(from);
      for (const std::string_view frame : kFrames) {
        bench.control<toolkit::Frame>(frame).moveTo(0, 0);
      }
      bench.click(option(to));
      EXPECT_EQ(bench.sent(), std::string(row.command) + std::string(row.queries));
      EXPECT_EQ(shownFrames(bench), std::string(row.frame) + " enabled 120 3000\n");
      EXPECT_EQ(enabledFrames(bench), std::string(row.frame) + '\n');
      EXPECT_EQ(goNogoTags(bench), to == 2 ? "42 43" : "38 39");
      EXPECT_EQ(disabledSettings(bench), "");
    }
  }
}

TEST(ModeOptions, sendTheSameOverEveryLink) {
  for (const Over link : kLinks) {
    SCOPED_TRACE(linkName(link));
    PanelBench bench;
    bench.connect(link);
    for (const int mode : {2, 8, 3, 0}) {
      bench.click(option(mode));
      EXPECT_EQ(bench.sent(), std::string(rowOf(mode).command) + std::string(rowOf(mode).queries));
    }
  }
}

TEST(ModeOptions, hideAndDisableEveryFrameWhileTheModeIsSent) {
  PanelBench bench;
  bench.connect();
  bench.watch({"FrameCCStatic", "FrameCV", "txtInput(12)", "cmdSet(12)", "txtInput(27)"});
  bench.combo("cmbChannel").setText("CH1L");
  bench.click(option(2));
  EXPECT_EQ(bench.sent(),
            "FrameCCStatic.Visible False\n"
            "FrameCCStatic.Enabled False\n"
            ":MODE CV\n"
            "FrameCV.Visible True\n"
            "FrameCV.Enabled True\n"
            "txtInput(12).Enabled False\n"
            "cmdSet(12).Enabled False\n"
            ":VOLT:L1?\n:VOLT:CURR?\n:VOLT:MODE?\n"
            "txtInput(27).Tag 42\n");
}

TEST(ModeOptions, changeNothingButThePanelWithoutALink) {
  PanelBench bench;
  for (const int mode : {1, 2, 3, 4, 5, 6, 7, 8, 0}) {
    SCOPED_TRACE(mode);
    bench.click(option(mode));
    EXPECT_EQ(bench.sent(), "");
    EXPECT_EQ(shownFrames(bench), std::string(rowOf(mode).frame) + " disabled 120 3000\n");
    EXPECT_EQ(enabledFrames(bench), "");
    EXPECT_EQ(goNogoTags(bench), mode == 2 ? "42 43" : "38 39");
  }
  bench.combo("cmbChannel").setText("CH1R");
  bench.click(option(1));
  EXPECT_EQ(disabledSettings(bench), "txtInput(1) cmdSet(1) ");
}

TEST(ModeOptions, doNothingWhenChosenAgainByTheOperator) {
  PanelBench bench;
  bench.connect();
  bench.click(option(0));
  EXPECT_EQ(bench.sent(), "");
}

// Half of a two-channel module has no B value; only some modes leave a disabled box out when they
// read back.
struct HalfRow {
  int mode;
  const char* disabled;
  std::string_view queries;
};
constexpr auto kHalves = std::to_array<HalfRow>({
    {0, "txtInput(1) cmdSet(1) ", ":CURR:STAT:L1?\n:CURR:STAT:RISE?\n:CURR:STAT:FALL?\n"},
    {1, "txtInput(1) cmdSet(1) ", ":CURR:STAT:L1?\n:CURR:STAT:RISE?\n:CURR:STAT:FALL?\n"},
    {2, "txtInput(12) cmdSet(12) ", ":VOLT:L1?\n:VOLT:CURR?\n:VOLT:MODE?\n"},
    {3, "txtInput(15) cmdSet(15) ", ":RES:L1?\n:RES:RISE?\n:RES:FALL?\n"},
    {4, "txtInput(15) cmdSet(15) ", kCrQueries},
    {5, "", kCcDynamicQueries},
    {6, "", kCcDynamicQueries},
    {7, "", kCrDynamicQueries},
    {8, "", kCrDynamicQueries},
});

TEST(HalfChannel, hasNoBValue) {
  for (const char* channel : {"CH1L", "CH1R", "CH2-ZAN63R"}) {
    for (const HalfRow& row : kHalves) {
      SCOPED_TRACE(std::string(channel) + ' ' + option(row.mode));
      PanelBench bench;
      bench.connect();
      bench.chooseMode(row.mode == 0 ? 8 : 0);
      bench.combo("cmbChannel").setText(channel);
      bench.click(option(row.mode));
      EXPECT_EQ(bench.sent(), std::string(rowOf(row.mode).command) + std::string(row.queries));
      EXPECT_EQ(disabledSettings(bench), row.disabled);
    }
  }
}

TEST(HalfChannel, isNamedByCapitalsAtTheEndOfTheText) {
  for (const char* channel : {"CH1l", "CH1r", "CH1L ", "CHL1", "L1", ""}) {
    PanelBench bench;
    bench.connect();
    bench.combo("cmbChannel").setText(channel);
    bench.click(option(1));
    EXPECT_EQ(disabledSettings(bench), "") << channel;
  }
}

TEST(HalfChannel, givesTheBValueBackToTheNextWholeOne) {
  PanelBench bench;
  bench.connect();
  bench.combo("cmbChannel").setText("CH1L");
  for (const int mode : {1, 2, 3}) {
    bench.click(option(mode));
  }
  EXPECT_EQ(disabledSettings(bench),
            "txtInput(1) cmdSet(1) txtInput(12) cmdSet(12) txtInput(15) cmdSet(15) ")
      << "each mode looks at its own box alone";
  bench.combo("cmbChannel").setText("CH1");
  bench.click(option(5));
  EXPECT_EQ(disabledSettings(bench),
            "txtInput(1) cmdSet(1) txtInput(12) cmdSet(12) txtInput(15) cmdSet(15) ");
  for (const int mode : {0, 2, 4}) {
    bench.click(option(mode));
  }
  EXPECT_EQ(disabledSettings(bench), "");
}

TEST(HalfChannel, isReadBackInTheModesThatAskForDisabledBoxes) {
  PanelBench bench;
  bench.connect();
  bench.instrument.on(":RES:L2?", "77\n");
  bench.combo("cmbChannel").setText("CH1L");
  bench.click(option(4));
  EXPECT_EQ(bench.input(15).text(), "77");
}

/// Disables every box and returns what choosing the mode asks then.
std::string queriesWithBoxesDisabled(int mode) {
  PanelBench bench;
  bench.connect();
  bench.chooseMode(mode == 0 ? 8 : 0);
  for (int i = 0; i < 29; ++i) {
    bench.input(i).setEnabled(false);
  }
  bench.click(option(mode));
  const std::string sent = bench.sent();
  return sent.substr(rowOf(mode).command.size());
}

TEST(ModeFieldsReadBack, leavesDisabledBoxesOutInSomeModesOnly) {
  // The B value is enabled by the choice of the mode.
  EXPECT_EQ(queriesWithBoxesDisabled(0), ":CURR:STAT:L2?\n");
  EXPECT_EQ(queriesWithBoxesDisabled(1), ":CURR:STAT:L2?\n");
  EXPECT_EQ(queriesWithBoxesDisabled(2), ":VOLT:L2?\n:VOLT:MODE?\n");
  EXPECT_EQ(queriesWithBoxesDisabled(3), ":RES:L2?\n");
  EXPECT_EQ(queriesWithBoxesDisabled(4), kCrQueries);
  EXPECT_EQ(queriesWithBoxesDisabled(5), kCcDynamicQueries);
  EXPECT_EQ(queriesWithBoxesDisabled(6), kCcDynamicQueries);
  EXPECT_EQ(queriesWithBoxesDisabled(7), kCrDynamicQueries);
  EXPECT_EQ(queriesWithBoxesDisabled(8), "");
}

TEST(ModeFieldsReadBack, putsEachAnswerIntoItsBoxUnchanged) {
  constexpr std::pair<int, int> kRanges[] = {{0, 3}, {0, 3}, {11, 13}, {14, 17}, {14, 17},
                                             {4, 9}, {4, 9}, {18, 23}, {18, 23}};
  for (int mode = 0; mode < 9; ++mode) {
    PanelBench bench;
    bench.connect();
    bench.chooseMode(mode == 0 ? 8 : 0);
    int count = 0;
    bench.instrument.otherwise = [&](std::string_view) {
      return support::answer("  0.50 A" + std::to_string(++count) + " \n");
    };
    for (int i = 0; i < 29; ++i) {
      bench.input(i).setText("kept");
    }
    bench.click(option(mode));
    const auto [first, last] = kRanges[mode];
    const int command = 1;  // also counted
    for (int i = 0; i < 29; ++i) {
      const bool read = i >= first && i <= last;
      EXPECT_EQ(bench.input(i).text(),
                read ? "  0.50 A" + std::to_string(i - first + 1 + command) + ' ' : "kept")
          << option(mode) << " box " << i;
    }
  }
}

TEST(ModeFieldsReadBack, showsTheCvResponse) {
  struct Row {
    const char* answer;
    int listIndex;
  };
  // From "LOW" selected, so that "0" and all that is none of the two look alike; and from "FAST".
  for (const Row& row : {Row{"0\n", 0}, Row{"1\n", 1}, Row{"\n", -2}, Row{"2\n", -2},
                         Row{" 1\n", -2}, Row{"1 \n", -2}, Row{"LOW\n", -2}, Row{"FAST\n", -2},
                         Row{"1.0\n", -2}, Row{"+1\n", -2}, Row{"01\n", -2}}) {
    for (const int before : {-1, 0, 1}) {
      PanelBench bench;
      bench.connect();
      bench.combo("cmbCVFreq").setListIndex(before);
      bench.instrument.on(":VOLT:MODE?", row.answer);
      bench.click(option(2));
      EXPECT_EQ(bench.combo("cmbCVFreq").listIndex(), row.listIndex == -2 ? before : row.listIndex)
          << support::escaped(row.answer) << " from " << before;
    }
  }
}

TEST(ModeFieldsReadBack, echoesALowCvResponseOnly) {
  PanelBench bench;
  bench.connect();
  bench.instrument.on(":VOLT:MODE?", {support::answer("1\n"), support::answer("0\n")});
  bench.watch({"cmbCVFreq"});
  bench.click(option(2));
  EXPECT_EQ(bench.journal({"cmbCVFreq.ListIndex", "viWrite 4 :VOLT:MODE"}),
            "viWrite 4 :VOLT:MODE?\\n\ncmbCVFreq.ListIndex 1\n");
  bench.chooseMode(0);
  bench.click(option(2));
  EXPECT_EQ(bench.journal({"cmbCVFreq.ListIndex", "viWrite 4 :VOLT:MODE"}),
            "viWrite 4 :VOLT:MODE?\\n\ncmbCVFreq.ListIndex 0\nviWrite 4 :VOLT:MODE LOW\\n\n");
}

TEST(GroupChannel, isSentNoModeCommand) {
  for (const char* channel : {"CH1G1", "CH3-G2", "G1", "G2"}) {
    for (int mode = 1; mode < 9; ++mode) {
      if (mode == 2) {
        continue;
      }
      PanelBench bench;
      bench.connect();
      bench.combo("cmbChannel").setText(channel);
      bench.click(option(mode));
      EXPECT_EQ(bench.sent(), rowOf(mode).queries) << channel << ' ' << option(mode);
      EXPECT_EQ(shownFrames(bench), std::string(rowOf(mode).frame) + " enabled 120 3000\n");
    }
  }
}

TEST(GroupChannel, inCvIsNotReadBackAndKeepsTheGoNogoTags) {
  for (const char* channel : {"CH1G1", "CH1G2"}) {
    PanelBench bench;
    bench.connect();
    bench.combo("cmbChannel").setText(channel);
    bench.click(option(2));
    EXPECT_EQ(bench.sent(), "") << channel;
    EXPECT_EQ(shownFrames(bench), "FrameCV enabled 120 3000\n");
    EXPECT_EQ(goNogoTags(bench), "38 39");
  }
}

TEST(GroupChannel, isNamedByTheLastTwoCharacters) {
  for (const char* channel : {"CH1G3", "CH1g1", "CH1G1 ", "G11", "1"}) {
    PanelBench bench;
    bench.connect();
    bench.combo("cmbChannel").setText(channel);
    bench.click(option(1));
    EXPECT_EQ(bench.sent(), std::string(":MODE CCL\n") + std::string(kCcQueries)) << channel;
  }
}

TEST(GoNogoLimits, areCurrentLimitsInCv) {
  PanelBench bench;
  bench.connect();
  bench.chooseMode(2);
  bench.set(27, "9");
  bench.set(28, "1");
  EXPECT_EQ(bench.sent(), ":SPEC:CURR:H 9\n:SPEC:CURR:L 1\n");
  bench.chooseMode(3);
  bench.set(27, "9");
  bench.set(28, "1");
  EXPECT_EQ(bench.sent(), ":SPEC:VOLT:H 9\n:SPEC:VOLT:L 1\n");
  EXPECT_EQ(bench.read("lblInput(27)", "Caption"), "GoNogo High");
}

TEST(ModeSelectionInTurn, whoseCommandDoesNotGoOutGoesBack) {
  PanelBench bench({.exchanges = Exchanges::InTurn});
  bench.connect();
  bench.script.fail("viWrite", io::VI_ERROR_CONN_LOST);
  bench.click(option(2));
  EXPECT_EQ(bench.read(option(0), "Value"), "True");
  EXPECT_EQ(bench.read("FrameCCStatic", "Visible"), "True");
  EXPECT_EQ(bench.read("FrameCV", "Visible"), "False");
}

}  // namespace
}  // namespace lumodevice::panel
