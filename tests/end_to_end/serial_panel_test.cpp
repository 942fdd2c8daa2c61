#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <ostream>
#include <span>

#include "simulator/commands/command.hpp"
#include "tests/end_to_end/serial_bench.hpp"
#include "tests/support/script.hpp"

namespace lumodevice::end_to_end {
namespace {

using std::chrono::milliseconds;

/// Every number differs from every other one that could be shown in its place.
constexpr const char* kSettings[] = {
    ":CHAN 5",
    ":CONF:VOLT:RANG LOW;ON 2.5;LAT 1",
    ":CURR:STAT:L1 1.1;L2 1.2;RISE 0.11;FALL 0.12",
    ":CURR:DYN:L1 1.3;L2 1.4;RISE 0.13;FALL 0.14;T1 2.5;T2 3.5",
    ":VOLT:L1 11;L2 12;CURR 9;MODE 1",
    ":RES:L1 6.1;L2 6.2;RISE 0.15;FALL 0.16",
    ":RES:DYN:LOW:L1 7.1;L2 7.2;RISE 0.17;FALL 0.18;T1 4.5;T2 5.5",
    ":CONF:PROT:CURR:LEV 25;STAT 1",
    ":CONF:PROT:VOLT:LEV 15;STAT 1",
    ":CONF:PROT:UVP:LEV 1.5",
    ":SPEC:VOLT:H 13;L 10.5",
    ":SPEC:CURR:H 8;L 7",
};

struct Shown {
  int box;
  const char* query;
};

constexpr Shown kCurrent[] = {
    {0, ":CURR:STAT:L1?"}, {1, ":CURR:STAT:L2?"}, {2, ":CURR:STAT:RISE?"}, {3, ":CURR:STAT:FALL?"}};
constexpr Shown kCurrentSteps[] = {{4, ":CURR:DYN:L1?"},   {5, ":CURR:DYN:L2?"},
                                   {6, ":CURR:DYN:RISE?"}, {7, ":CURR:DYN:FALL?"},
                                   {8, ":CURR:DYN:T1?"},   {9, ":CURR:DYN:T2?"}};
constexpr Shown kVoltage[] = {{11, ":VOLT:L1?"}, {12, ":VOLT:L2?"}, {13, ":VOLT:CURR?"}};
constexpr Shown kResistance[] = {
    {14, ":RES:L1?"}, {15, ":RES:L2?"}, {16, ":RES:RISE?"}, {17, ":RES:FALL?"}};
constexpr Shown kResistanceSteps[] = {{18, ":RES:DYN:LOW:L1?"},   {19, ":RES:DYN:LOW:L2?"},
                                      {20, ":RES:DYN:LOW:RISE?"}, {21, ":RES:DYN:LOW:FALL?"},
                                      {22, ":RES:DYN:LOW:T1?"},   {23, ":RES:DYN:LOW:T2?"}};
constexpr Shown kProtection[] = {{10, ":CONF:VOLT:ON?"},
                                 {24, ":CONF:PROT:CURR:LEV?"},
                                 {25, ":CONF:PROT:VOLT:LEV?"},
                                 {26, ":CONF:PROT:UVP:LEV?"}};
constexpr Shown kVoltageLimits[] = {{27, ":SPEC:VOLT:H?"}, {28, ":SPEC:VOLT:L?"}};
constexpr Shown kCurrentLimits[] = {{27, ":SPEC:CURR:H?"}, {28, ":SPEC:CURR:L?"}};

struct Mode {
  const char* word;
  const char* frame;
  int option;
  const char* wordThen;  ///< choosing the option of one CR dynamic mode switches to the other
  std::span<const Shown> boxes;
  std::span<const Shown> limits;

  friend void PrintTo(const Mode& mode, std::ostream* out) { *out << mode.word; }
};

constexpr Mode kModes[] = {
    {"CCH", "FrameCCStatic", 0, "CCH", kCurrent, kVoltageLimits},
    {"CCL", "FrameCCStatic", 1, "CCL", kCurrent, kVoltageLimits},
    {"CV", "FrameCV", 2, "CV", kVoltage, kCurrentLimits},
    {"CRH", "FrameCRStatic", 3, "CRH", kResistance, kVoltageLimits},
    {"CRL", "FrameCRStatic", 4, "CRL", kResistance, kVoltageLimits},
    {"CCDH", "fraCCDynamic", 5, "CCDH", kCurrentSteps, kVoltageLimits},
    {"CCDL", "fraCCDynamic", 6, "CCDL", kCurrentSteps, kVoltageLimits},
    {"CRDL", "fraCRDynamic", 7, "CRDH", kResistanceSteps, kVoltageLimits},
    {"CRDH", "fraCRDynamic", 8, "CRDL", kResistanceSteps, kVoltageLimits},
};

/// The UVP switch is read back before the box of its level, which it looks at when it is ticked.
constexpr const char* kNoLevelYet = "You Should input setting up new value! first";

/// Not connected yet.
class SerialPanel : public testing::TestWithParam<Mode> {
 protected:
  /// At the load's own front panel.
  std::string atLoad(const std::string& message) {
    std::string answer;
    zansim::execute(load.instrument.mainframe, message, bench.loop.now(), answer);
    return answer;
  }

  void connectSource(zansim::Source source) {
    load.instrument.mainframe.channel(5, bench.loop.now()).connect(source);
  }

  void expectShown(std::span<const Shown> boxes) {
    for (const auto& [box, query] : boxes) {
      EXPECT_EQ(panel.text("txtInput(" + std::to_string(box) + ')'), atLoad(query)) << query;
    }
  }

  SerialBench bench{4};
  RealPanel& panel = bench.panel();
  LoadOnTerminal& load = bench.load(4);
};

INSTANTIATE_TEST_SUITE_P(EachMode, SerialPanel, testing::ValuesIn(kModes),
                         [](const auto& mode) { return mode.param.word; });

TEST_P(SerialPanel, showsTheChannelAsTheLoadHasIt) {
  const Mode& mode = GetParam();
  connectSource({.volts = 12});
  for (const char* settings : kSettings) {
    atLoad(settings);
  }
  atLoad(std::string(":MODE ") + mode.word);
  ASSERT_EQ(atLoad(":SYST:ERR?"), "0,\"No error\"");

  bench.connectByHand(4);
  EXPECT_EQ(panel.boxes(), support::lines({kNoLevelYet}));
  EXPECT_EQ(panel.text("cmbChannel"), "CH5-2041");
  EXPECT_EQ(panel.read("optMode(" + std::to_string(mode.option) + ')', "Value"), "True");
  EXPECT_EQ(panel.read(mode.frame, "Visible"), "True");
  EXPECT_EQ(atLoad(":MODE?"), mode.wordThen);
  expectShown(mode.boxes);
  expectShown(mode.limits);
  expectShown(kProtection);
  EXPECT_EQ(panel.read("lblVoRange", "Caption"), "16");
  EXPECT_EQ(panel.read("cmbVolRange", "ListIndex"), "0");
  EXPECT_EQ(panel.read("chkVON", "Value"), "1");
  EXPECT_EQ(panel.read("chkLoad", "Value"), "0");
  EXPECT_EQ(panel.read("chkOCP", "Value"), "1");
  EXPECT_EQ(panel.read("chkOVP", "Value"), "1");
  EXPECT_EQ(panel.read("chkUVP", "Value"), "1");
  EXPECT_EQ(panel.read("chkGoNogo", "Value"), "0");
  if (mode.option == 2) {
    EXPECT_EQ(panel.read("cmbCVFreq", "ListIndex"), "1");
  }
  EXPECT_EQ(panel.text("txtVoltage(0)"), "12.0000");
  EXPECT_EQ(panel.text("txtCurrent(0)"), "0.0000");
  EXPECT_EQ(panel.text("txtPower(0)"), "0.0000");
  EXPECT_EQ(atLoad(":SYST:ERR?"), "0,\"No error\"") << "nothing that was sent was wrong";
}

class SerialMonitor : public SerialPanel {
 protected:
  /// Lets the panel work until the box shows the number, at most a minute of its time.
  bool becomes(std::string_view box, double value) {
    for (int i = 0; i < 600; ++i) {
      if (std::abs(std::strtod(panel.text(box).c_str(), nullptr) - value) < 0.001 * value) {
        return true;
      }
      bench.run(milliseconds(100));
    }
    return false;
  }
};

TEST_F(SerialMonitor, theReadOutsFollowTheTerminals) {
  connectSource({.volts = 12, .ohms = 0.5});
  atLoad(":CHAN 5;:CURR:STAT:L1 2");
  bench.connectByHand(4);
  panel.zan().AutoQuery(true);
  EXPECT_TRUE(becomes("txtVoltage(0)", 12)) << panel.text("txtVoltage(0)");
  atLoad(":LOAD ON");
  EXPECT_TRUE(becomes("txtVoltage(0)", 11)) << panel.text("txtVoltage(0)");
  EXPECT_TRUE(becomes("txtCurrent(0)", 2)) << panel.text("txtCurrent(0)");
  EXPECT_TRUE(becomes("txtPower(0)", 22)) << panel.text("txtPower(0)");
  connectSource({.volts = 7, .ohms = 0.5});
  EXPECT_TRUE(becomes("txtVoltage(0)", 6)) << panel.text("txtVoltage(0)");
  EXPECT_TRUE(becomes("txtPower(0)", 12)) << panel.text("txtPower(0)");
  EXPECT_EQ(panel.boxes(), "");
}

TEST_F(SerialMonitor, aSettingIsSentAndTheLoadSwitched) {
  connectSource({.volts = 12, .ohms = 0.5});
  atLoad(":CHAN 5");
  bench.connectByHand(4);
  panel.type("txtInput(0)", "3");
  panel.click("cmdSet(0)");
  panel.click("chkLoad");
  EXPECT_EQ(panel.ask(":FETC:CURR?"), "3.0000");
  EXPECT_EQ(panel.ask(":FETC:VOLT?"), "10.5000");
  panel.click("chkLoad");
  EXPECT_EQ(panel.ask(":LOAD?"), "0");
  EXPECT_EQ(atLoad(":SYST:ERR?"), "0,\"No error\"");
}

}  // namespace
}  // namespace lumodevice::end_to_end
