#include <gtest/gtest.h>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/panel_bench.hpp"

namespace lumodevice::monitor {
namespace {

using support::kLinks;
using support::Over;
using support::PanelBench;

constexpr const char* kChan = ":KEYBoard:CODE 112,1\n";
constexpr const char* kLoad = ":KEYBoard:CODE 111,1\n";
constexpr const char* kF1 = ":KEYBoard:CODE 113,1\n";

class FrontPanelKeys : public testing::TestWithParam<Over> {
 protected:
  FrontPanelKeys() { bench.connect(GetParam()); }

  void have(const std::vector<devButton>& keys) { bench.zan().setKeys(keys); }
  /// What a press there sends.
  std::string press(float x, float y) {
    bench.zan().PressKeyAt(0, 0, x, y);
    return bench.sent();
  }
  PanelBench bench;
};

INSTANTIATE_TEST_SUITE_P(Links, FrontPanelKeys, testing::ValuesIn(kLinks));

TEST_P(FrontPanelKeys, sendTheirCommand) {
  have({{"CHAN", 0, 0, 10, 10}, {"LOAD", 20, 0, 30, 10}, {"F1", 0, 20, 10, 30}});
  EXPECT_EQ(press(5, 5), kChan);
  EXPECT_EQ(press(25, 5), kLoad);
  EXPECT_EQ(press(5, 25), kF1);
  EXPECT_EQ(press(5, 25), kF1) << "the same key again is another press";
  EXPECT_EQ(press(15, 5), "");
  EXPECT_EQ(press(25, 25), "");
}

TEST_P(FrontPanelKeys, areNoneUntilTheHostSaysWhereTheyAre) {
  EXPECT_EQ(press(0, 0), "");
  EXPECT_EQ(press(0.5, 0.5), "");
}

TEST_P(FrontPanelKeys, endBeforeTheirEdges) {
  have({{"CHAN", 10, 20, 30, 40}});
  for (const auto& [x, y] : {std::pair{10.F, 30.F},
                             {30.F, 30.F},
                             {20.F, 20.F},
                             {20.F, 40.F},
                             {10.F, 20.F},
                             {9.99F, 30.F},
                             {20.F, 40.01F}}) {
    EXPECT_EQ(press(x, y), "") << x << ' ' << y;
  }
  for (const auto& [x, y] :
       {std::pair{10.01F, 30.F}, {29.99F, 30.F}, {20.F, 20.01F}, {20.F, 39.99F}}) {
    EXPECT_EQ(press(x, y), kChan) << x << ' ' << y;
  }
}

TEST_P(FrontPanelKeys, canLieAnywhereAndHaveNoSize) {
  have({{"LOAD", 5, 5, 5, 5},
        {"LOAD", 7, 7, 3, 3},
        {"CHAN", -32768, -32768, -32767, -32767},
        {"F1", 32766, 32766, 32767, 32767}});
  EXPECT_EQ(press(5, 5), "");
  EXPECT_EQ(press(-32767.5F, -32767.5F), kChan);
  EXPECT_EQ(press(32766.5F, 32766.5F), kF1);
}

TEST_P(FrontPanelKeys, thatOverlapAreTheFirstOfThem) {
  have({{"LOAD", 0, 0, 20, 20}, {"CHAN", 10, 10, 30, 30}});
  EXPECT_EQ(press(15, 15), kLoad);
  EXPECT_EQ(press(25, 25), kChan);
  have({{"nothing", 0, 0, 20, 20}, {"CHAN", 0, 0, 30, 30}});
  EXPECT_EQ(press(15, 15), "") << "the first is a hit, whatever it is";
}

TEST_P(FrontPanelKeys, ofAnyOtherNameSendNothing) {
  for (const char* name : {"chan", "Load", "f1", "F2", "CHAN ", "", "F11"}) {
    have({{name, 0, 0, 10, 10}});
    EXPECT_EQ(press(5, 5), "") << name;
  }
}

TEST_P(FrontPanelKeys, areTheSameWithEveryMouseButtonAndShiftState) {
  have({{"CHAN", 0, 0, 10, 10}});
  for (const int each : {-32768, -1, 0, 1, 2, 4, 32767}) {
    const auto state = static_cast<std::int16_t>(each);
    bench.zan().PressKeyAt(state, state, 5, 5);
    EXPECT_EQ(bench.sent(), kChan);
  }
}

TEST_P(FrontPanelKeys, areReplacedAsAWhole) {
  have({{"CHAN", 0, 0, 10, 10}, {"LOAD", 20, 20, 30, 30}});
  have({{"F1", 0, 0, 10, 10}});
  EXPECT_EQ(press(5, 5), kF1);
  EXPECT_EQ(press(25, 25), "");
  have({});
  EXPECT_EQ(press(5, 5), "");
}

TEST_P(FrontPanelKeys, areFiftyOneAtMost) {
  std::vector<devButton> keys(51, {"x", 0, 0, 1, 1});
  keys.back() = {"CHAN", 10, 10, 20, 20};
  have(keys);
  EXPECT_EQ(press(15, 15), kChan);
  EXPECT_THROW(have(std::vector<devButton>(52, {"LOAD", 10, 10, 20, 20})), std::length_error);
  EXPECT_EQ(press(15, 15), kChan) << "the table is the one before";
}

TEST_P(FrontPanelKeys, showThePositionOfEveryPress) {
  struct Position {
    float x;
    float y;
    const char* left;
    const char* right;
  };
  for (const Position& row : {Position{12.5F, 0, "12.5", "0"},
                              {0.1F, -3.25F, "0.1", "-3.25"},
                              {1e20F, 1.0F / 3, "1E+20", "0.3333333"}}) {
    EXPECT_EQ(press(row.x, row.y), "");
    EXPECT_EQ(bench.read("lblKeyX", "Caption"), row.left);
    EXPECT_EQ(bench.read("lblKeyY", "Caption"), row.right);
  }
}

TEST_P(FrontPanelKeys, areNowhereAtAnUndefinedPosition) {
  have({{"CHAN", -32768, -32768, 32767, 32767}});
  (void)press(1, 2);
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  for (const float value : {kInfinity, -kInfinity, std::numeric_limits<float>::quiet_NaN()}) {
    EXPECT_EQ(press(value, value), "");
    EXPECT_EQ(bench.read("lblKeyX", "Caption"), "1");
    EXPECT_EQ(bench.read("lblKeyY", "Caption"), "2");
  }
}

TEST(UnconnectedFrontPanel, losesThePress) {
  PanelBench bench;
  const std::vector<devButton> keys = {{"CHAN", 0, 0, 10, 10}};
  bench.zan().setKeys(keys);
  bench.zan().PressKeyAt(0, 0, 5, 5);
  EXPECT_EQ(bench.journal(), "");
  EXPECT_EQ(bench.read("lblKeyX", "Caption"), "5");
}

TEST(FrontPanelOnTheWire, waitsOneUnitAndReadsNothing) {
  PanelBench bench;
  bench.connect();
  const std::vector<devButton> keys = {{"F1", 0, 0, 10, 10}};
  bench.zan().setKeys(keys);
  bench.zan().PressKeyAt(0, 0, 5, 5);
  EXPECT_EQ(bench.journal(),
            support::lines({"pass", "viWrite 4 :KEYBoard:CODE 113,1\\n", "pass", "sleep 200"}));
}

TEST(InstrumentScreen, goesAwayOnAClick) {
  PanelBench bench;
  bench.control<toolkit::PictureBox>("Picture1").setVisible(true);
  bench.click("Picture1");
  EXPECT_EQ(bench.read("Picture1", "Visible"), "False");
}

TEST(Title, showsTheCommandBoxAndItsButtonsOnAClick) {
  PanelBench bench;
  bench.zan().DisplayCmd(false);
  bench.click("Label14");
  for (const char* name : {"TXT", "cmdGetCTRLScrn", "cmdWork", "cmdConnect", "cmdGetSeqFile"}) {
    EXPECT_EQ(bench.read(name, "Visible"), "True") << name;
  }
  bench.click("Label14");
  EXPECT_EQ(bench.read("TXT", "Visible"), "True") << "a second click hides nothing";
}

}  // namespace
}  // namespace lumodevice::monitor
