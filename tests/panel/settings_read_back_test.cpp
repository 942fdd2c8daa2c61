#include <gtest/gtest.h>
#include <string>
#include <string_view>

#include "tests/support/panel_bench.hpp"

namespace lumodevice::panel {
namespace {

using support::kEmptyBox;
using support::kLinks;
using support::kNumberBox;
using support::linkName;
using support::Over;
using support::PanelBench;

/// The lines of a channel selection that belong to the settings.
std::string settingsPart(const std::string& sent) {
  const auto begin = sent.find(":CONF:VOLT:RANGE?");
  return sent.substr(begin, sent.find(":FETC:VOLT?") - begin);
}

/// Selects channel 1 and returns what the settings read-back sent.
std::string readSettings(PanelBench& bench) {
  (void)bench.journal();
  bench.select("cmbChannel", 0);
  return settingsPart(bench.sent());
}

TEST(SettingsReadBack, asksInItsOrder) {
  for (const Over link : kLinks) {
    SCOPED_TRACE(linkName(link));
    PanelBench bench;
    bench.connect(link);
    EXPECT_EQ(readSettings(bench),
              ":CONF:VOLT:RANGE?\n"
              ":CONF:VOLT:LAT?\n"
              ":CONF:VOLT:ON?\n"
              ":LOAD?\n"
              ":CONF:PROT:CURR:STAT?\n"
              ":CONF:PROT:VOLT:STAT?\n"
              ":CONF:PROT:UVP:LEV?\n"
              ":SPEC:PASS?\n"
              ":CONF:PROT:CURR:LEV?\n"
              ":CONF:PROT:VOLT:LEV?\n"
              ":CONF:PROT:UVP:LEV?\n"
              ":SPEC:VOLT:H?\n"
              ":SPEC:VOLT:L?\n");
  }
}

TEST(SettingsReadBack, asksForCurrentLimitsInCv) {
  PanelBench bench;
  bench.connect();
  bench.instrument.on(":Mode?", "CV\n");
  const std::string sent = readSettings(bench);
  EXPECT_TRUE(sent.ends_with(":SPEC:CURR:H?\n:SPEC:CURR:L?\n")) << sent;
}

TEST(SettingsReadBack, tagsTheGoNogoBoxesEvenWhereTheModeDidNot) {
  PanelBench bench;
  bench.connect();
  bench.instrument.on(":Mode?", "CV\n");
  bench.watch({"txtInput(27)", "txtInput(28)"});
  bench.selectChannel("CH1G2");
  const std::string sent = bench.sent();
  EXPECT_NE(sent.find(":SPEC:PASS?\ntxtInput(27).Tag 42\ntxtInput(28).Tag 43\n"), std::string::npos)
      << sent;
  EXPECT_NE(sent.find(":SPEC:CURR:H?\n"), std::string::npos);
}

TEST(SettingsReadBack, putsEachAnswerIntoItsBox) {
  PanelBench bench;
  bench.connect();
  const std::pair<const char*, int> boxes[] = {
      {":CONF:VOLT:ON?", 10},      {":CONF:PROT:CURR:LEV?", 24}, {":CONF:PROT:VOLT:LEV?", 25},
      {":CONF:PROT:UVP:LEV?", 26}, {":SPEC:VOLT:H?", 27},        {":SPEC:VOLT:L?", 28}};
  for (const auto& [query, box] : boxes) {
    bench.instrument.on(query, " 0.00" + std::to_string(box) + "0 X\n");
  }
  readSettings(bench);
  for (const auto& [query, box] : boxes) {
    EXPECT_EQ(bench.input(box).text(), " 0.00" + std::to_string(box) + "0 X");
  }
}

TEST(VoltageRange, isShownByItsFullScale) {
  struct Row {
    const char* answer;
    int listIndex;  ///< -2: stays
  };
  for (const Row& row :
       {Row{"16", 0},     Row{"125", 0},    Row{"80", 1},          Row{"500", 1},
        Row{"16.4 V", 0}, Row{"15.5", 0},   Row{"16.5", 0},        Row{"124.5", -2},
        Row{"125.49", 0}, Row{"8e1", 1},    Row{"5E+02", 1},       Row{"&H10", 0},
        Row{"1 6", 0},    Row{"60", -2},    Row{"0", -2},          Row{"-16", -2},
        Row{"LOW", -2},   Row{"HIGH", -2},  Row{"1600", -2},       Row{"NaN", -2},
        Row{"1e400", -2}, Row{"65552", -2}, Row{"4294967312", -2}, Row{"1e300", -2}}) {
    for (const int before : {0, 1}) {
      PanelBench bench;
      bench.connect();
      bench.combo("cmbVolRange").setListIndex(before);
      bench.instrument.on(":CONF:VOLT:RANGE?", std::string(row.answer) + "\n");
      readSettings(bench);
      EXPECT_EQ(bench.combo("cmbVolRange").listIndex(),
                row.listIndex == -2 ? before : row.listIndex)
          << row.answer << " from " << before;
      EXPECT_EQ(bench.read("lblVoRange", "Caption"), row.answer);
    }
  }
}

TEST(VoltageRange, ofAnUnknownModelIsOverwrittenAtOnceByTheAnswer) {
  PanelBench bench;
  bench.connect();
  bench.instrument.on(":CONF:VOLT:RANGE?", "60\n");
  bench.watch({"lblVoRange", "cmbVolRange"});
  const std::string sent = readSettings(bench);
  EXPECT_TRUE(
      sent.starts_with(":CONF:VOLT:RANGE?\n"
                       "lblVoRange.Caption New Model\n"
                       "lblVoRange.Caption 60\n"
                       ":CONF:VOLT:LAT?\n"))
      << sent;
}

struct CheckRow {
  const char* control;
  const char* query;
  const char* command;
};
constexpr CheckRow kChecks[] = {{"chkVON", ":CONF:VOLT:LAT?", ":CONF:VOLT:LAT "},
                                {"chkLoad", ":LOAD?", ":LOAD "},
                                {"chkOCP", ":CONF:PROT:CURR:STAT?", ":CONF:PROT:CURR:STAT "},
                                {"chkOVP", ":CONF:PROT:VOLT:STAT?", ":CONF:PROT:VOLT:STAT "},
                                {"chkGoNogo", ":SPEC:PASS?", ":SPEC:PASS "}};

TEST(SwitchReadBack, takesTheWholeNumberOfTheAnswer) {
  struct Row {
    const char* answer;
    int value;  ///< -1: stays
  };
  for (const CheckRow& check : kChecks) {
    PanelBench bench;
    bench.connect();
    for (const Row& row :
         {Row{"0", 0},          Row{"1", 1},      Row{"2", 2},      Row{"0.5", 0},
          Row{"0.51", 1},       Row{"1.5", 2},    Row{"2.5", 2},    Row{" 1 ", 1},
          Row{"+1.000E+00", 1}, Row{"ON", 0},     Row{"", 0},       Row{"NaN", 0},
          Row{"-0.4", 0},       Row{"7", -1},     Row{"-1", -1},    Row{"2.51", -1},
          Row{"65536", -1},     Row{"65537", -1}, Row{"1e400", -1}, Row{"\x80\xFF", 0},
          Row{"1\xFF", 1}}) {
      for (const int before : {0, 1, 2}) {
        bench.box(check.control).setValue(before);
        bench.instrument.on(check.query, std::string(row.answer) + "\n");
        readSettings(bench);
        EXPECT_EQ(bench.box(check.control).value(), row.value == -1 ? before : row.value)
            << check.control << " answer " << support::escaped(row.answer) << " from " << before;
        EXPECT_EQ(bench.text("Text2"), ":FETC:POW?") << "the read-back went on to its end";
      }
    }
  }
}

TEST(SwitchReadBack, echoesAChangedStateBeforeTheNextQuery) {
  for (const CheckRow& check : kChecks) {
    PanelBench bench;
    bench.connect();
    bench.instrument.on(check.query, "1\n");
    bench.watch({check.control});
    const std::string sent = readSettings(bench);
    const std::string change =
        std::string(check.control) + ".Value 1\n" +
        (std::string_view(check.control) == "chkLoad" ? "chkLoad.Caption CHAN LOAD ON\n" : "");
    EXPECT_NE(sent.find(std::string(check.query) + "\n" + change + check.command + "1\n:"),
              std::string::npos)
        << sent;
    const std::string again = readSettings(bench);
    EXPECT_EQ(again.find(check.command), std::string::npos) << "an unchanged state is not echoed";
  }
}

TEST(SwitchReadBack, echoesTheWholePanelInOrder) {
  PanelBench bench;
  bench.connect();
  for (const CheckRow& check : kChecks) {
    bench.instrument.on(check.query, "1\n");
  }
  bench.instrument.on(":CONF:VOLT:RANGE?", "500\n");
  bench.instrument.on(":CONF:PROT:UVP:LEV?", "3\n");
  bench.input(26).setText("7");
  EXPECT_EQ(readSettings(bench),
            ":CONF:VOLT:RANGE?\n"
            ":CONF:VOLT:RANGE HIGH\n"
            ":CONF:VOLT:LAT?\n"
            ":CONF:VOLT:LAT 1\n"
            ":CONF:VOLT:ON?\n"
            ":LOAD?\n"
            ":LOAD 1\n"
            ":CONF:PROT:CURR:STAT?\n"
            ":CONF:PROT:CURR:STAT 1\n"
            ":CONF:PROT:VOLT:STAT?\n"
            ":CONF:PROT:VOLT:STAT 1\n"
            ":CONF:PROT:UVP:LEV?\n"
            ":CONF:PROT:UVP:LEV 7\n"
            ":SPEC:PASS?\n"
            ":SPEC:PASS 1\n"
            ":CONF:PROT:CURR:LEV?\n"
            ":CONF:PROT:VOLT:LEV?\n"
            ":CONF:PROT:UVP:LEV?\n"
            ":SPEC:VOLT:H?\n"
            ":SPEC:VOLT:L?\n");
}

TEST(SwitchReadBack, echoesNothingOnTheFirstSelectionAfterAConnect) {
  for (const Over link : kLinks) {
    SCOPED_TRACE(linkName(link));
    PanelBench bench;
    for (const CheckRow& check : kChecks) {
      bench.instrument.on(check.query, "1\n");
    }
    bench.instrument.on(":CONF:VOLT:RANGE?", "500\n");
    bench.connectWithoutChannel(link);
    const std::string sent = readSettings(bench);
    for (const CheckRow& check : kChecks) {
      EXPECT_EQ(sent.find(check.command), std::string::npos) << sent;
      EXPECT_EQ(bench.box(check.control).value(), 1);
    }
    EXPECT_EQ(sent.find(":CONF:VOLT:RANGE "), std::string::npos) << sent;
    EXPECT_EQ(bench.combo("cmbVolRange").listIndex(), 1);
  }
}

TEST(UvpReadBack, isOnWhenTheLevelIsNotZero) {
  struct Row {
    const char* answer;
    int value;  ///< -1: stays
  };
  for (const Row& row : {Row{"0", 0}, Row{"0.000", 0}, Row{"-0", 0}, Row{"OFF", 0}, Row{"", 0},
                         Row{"NaN", 0}, Row{"0.4", 1}, Row{"-2", 1}, Row{"5 V", 1}, Row{"70000", 1},
                         Row{"1e300", 1}, Row{"1e400", -1}}) {
    for (const int before : {0, 1}) {
      PanelBench bench;
      bench.connect();
      bench.input(26).setText("4");
      bench.box("chkUVP").setValue(before);
      bench.instrument.on(":CONF:PROT:UVP:LEV?", std::string(row.answer) + "\n");
      readSettings(bench);
      EXPECT_EQ(bench.box("chkUVP").value(), row.value == -1 ? before : row.value)
          << row.answer << " from " << before;
    }
  }
}

// The check box is set before the level box is read, and its handler sends what the level box held.
TEST(UvpReadBack, sendsTheEarlierLevelWhenItTicksTheBox) {
  PanelBench bench;
  bench.connect();
  bench.input(26).setText("7.5");
  bench.instrument.on(":CONF:PROT:UVP:LEV?", "3\n");
  bench.watch({"chkUVP", "txtInput(26)"});
  const std::string sent = readSettings(bench);
  EXPECT_NE(sent.find(":CONF:PROT:UVP:LEV?\n"
                      "chkUVP.Value 1\n"
                      ":CONF:PROT:UVP:LEV 7.5\n"
                      ":SPEC:PASS?\n"
                      ":CONF:PROT:CURR:LEV?\n"
                      ":CONF:PROT:VOLT:LEV?\n"
                      ":CONF:PROT:UVP:LEV?\n"
                      "txtInput(26).Text 3\n"),
            std::string::npos)
      << sent;
}

TEST(UvpReadBack, clearsTheBoxAgainWhenTheEarlierLevelWasZero) {
  PanelBench bench;
  bench.connect();
  bench.input(26).setText("0");
  bench.instrument.on(":CONF:PROT:UVP:LEV?", "3\n");
  bench.watch({"chkUVP"});
  const std::string sent = readSettings(bench);
  EXPECT_NE(sent.find(":CONF:PROT:UVP:LEV?\n"
                      "chkUVP.Value 1\n"
                      ":CONF:PROT:UVP:LEV 0\n"
                      "chkUVP.Value 0\n"
                      ":CONF:PROT:UVP:LEV MIN\n"
                      ":SPEC:PASS?\n"),
            std::string::npos)
      << sent;
}

TEST(UvpReadBack, showsTheMessageOfTheSetButtonForAnEarlierLevelThatIsNone) {
  const std::pair<const char*, const char*> rows[] = {{"", kEmptyBox}, {"abc", kNumberBox}};
  for (const auto& [level, message] : rows) {
    PanelBench bench;
    bench.connect();
    bench.input(26).setText(level);
    bench.instrument.on(":CONF:PROT:UVP:LEV?", "3\n");
    bench.watch({"chkUVP"});
    const std::string sent = readSettings(bench);
    EXPECT_NE(
        sent.find(std::string(":CONF:PROT:UVP:LEV?\nchkUVP.Value 1\n") + message + ":SPEC:PASS?\n"),
        std::string::npos)
        << sent;
    EXPECT_EQ(bench.box("chkUVP").value(), 1);
    EXPECT_EQ(bench.input(26).text(), "3");
  }
}

TEST(UvpReadBack, doesTheSameOnTheFirstSelectionAfterAConnect) {
  PanelBench bench;
  bench.instrument.on(":CONF:PROT:UVP:LEV?", "3\n");
  bench.connectWithoutChannel();
  const std::string sent = readSettings(bench);
  EXPECT_NE(sent.find(std::string(":CONF:PROT:UVP:LEV?\n") + kEmptyBox + ":SPEC:PASS?\n"),
            std::string::npos)
      << sent;
}

TEST(UvpReadBack, sendsTheMinimumWhenItClearsTheBox) {
  PanelBench bench;
  bench.connect();
  bench.set(26, "4");
  bench.watch({"chkUVP"});
  const std::string sent = readSettings(bench);
  EXPECT_NE(sent.find(":CONF:PROT:UVP:LEV?\n"
                      "chkUVP.Value 0\n"
                      ":CONF:PROT:UVP:LEV MIN\n"
                      ":SPEC:PASS?\n"),
            std::string::npos)
      << sent;
}

TEST(UvpReadBack, takesItsQueryFromTheTagOfTheButton) {
  PanelBench bench;
  bench.connect();
  bench.input(26).setText("2");
  bench.control<toolkit::CommandButton>("cmdSet", 26).setTag("36");
  const std::string sent = readSettings(bench);
  EXPECT_NE(sent.find(":CONF:PROT:VOLT:STAT?\n"
                      ":CONF:PROT:VOLT:LEV?\n"
                      ":CONF:PROT:UVP:LEV 2\n"
                      ":SPEC:PASS?\n"),
            std::string::npos)
      << sent;
}

}  // namespace
}  // namespace lumodevice::panel
