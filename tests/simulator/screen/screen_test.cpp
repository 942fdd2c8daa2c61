#include "simulator/screen/screen.hpp"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "simulator/screen/dump.hpp"
#include "tests/simulator/load_bench.hpp"
#include "tests/simulator/screen/screen_decoder.hpp"

using namespace std::chrono_literals;
using namespace zansim::tests;
using zansim::Layer;
using zansim::Picture;

namespace {

constexpr const char* kAllModules = "2021L,2021R,2030,2040,2041,2050";

class ScreenTest : public testing::Test {
 protected:
  std::string planes() { return bench_.ask(":DISP:OUTP?"); }
  /// Sends a message and tells whether another picture is on the screen after it.
  bool changesWith(std::string_view message) {
    const std::string before = planes();
    bench_.send(message);
    return planes() != before;
  }

  LoadBench bench_{kAllModules};
};

bool isEmpty(const Layer& layer) {
  for (int y = 0; y < 240; ++y) {
    for (int x = 0; x < 320; ++x) {
      if (layer.at(x, y) != 0) {
        return false;
      }
    }
  }
  return true;
}

void expectInksOfTheirLayers(const Picture& picture) {
  for (int y = 0; y < 240; ++y) {
    for (int x = 0; x < 320; ++x) {
      ASSERT_LE(picture.base.at(x, y), 56);
      ASSERT_LE(picture.overlay1.at(x, y), 3);
      ASSERT_LE(picture.overlay2.at(x, y), 3);
    }
  }
}

/// How often a colour is seen within a part of the screen.
int seen(const Picture& picture, const zansim::Box& box, zansim::Colour colour) {
  int count = 0;
  for (int y = box.top; y < box.top + box.height; ++y) {
    for (int x = box.left; x < box.left + box.width; ++x) {
      count += picture.colour(x, y) == colour ? 1 : 0;
    }
  }
  return count;
}

}  // namespace

TEST_F(ScreenTest, theQueriesAnswerDefiniteLengthBlocks) {
  const std::string memory = planes();
  EXPECT_EQ(memory.substr(0, 8), "#6122880");
  EXPECT_EQ(memory.size(), 8U + 122880);
  const std::string bitmap = bench_.ask("display:color?");
  EXPECT_EQ(bitmap.substr(0, 10), "#6230454BM");
  EXPECT_EQ(bitmap.size(), 8U + 230454);
  EXPECT_EQ(bench_.error(), 0);
}

TEST_F(ScreenTest, theQueriesHaveNoOtherForms) {
  EXPECT_EQ(bench_.ask(":DISP:OUTP"), "");
  EXPECT_EQ(bench_.error(), -113);
  EXPECT_EQ(bench_.ask(":DISP:COL? 1"), "");
  EXPECT_EQ(bench_.error(), -108);
}

TEST_F(ScreenTest, bothQueriesShowThePictureOfTheirMoment) {
  for (const char* const message :
       {":CHAN 4", ":MODE CV", ":LOAD ON", ":CONF:PROT:CURR:LEV 0;:CONF:PROT:CURR:STAT ON"}) {
    bench_.send(message);
    bench_.pass(100ms);
    for (int page = 0; page < 2; ++page) {
      const std::string memory = planes();
      const std::string bitmap = bench_.ask(":DISP:COL?");
      EXPECT_TRUE(paintedFromPlanes(dataOf(memory)) == readFromBitmap(dataOf(bitmap))) << message;
      bench_.mainframe().turnPage();
    }
  }
}

TEST_F(ScreenTest, aPictureIsUprightAndTheMemoryMirrored) {
  const Picture picture = zansim::drawScreen(bench_.mainframe(), 0s);
  const Pixels painted = paintedFromPlanes(zansim::planes(picture));
  // The title is green and at the top; the first soft key, the only bright one, at the bottom left.
  EXPECT_EQ(painted[10 * kWidth + 2], (Bgr{0, 143, 0}));
  EXPECT_EQ(painted[222 * kWidth + 1], hostColour(6));
  EXPECT_EQ(painted[222 * kWidth + 318], hostColour(8));
}

TEST_F(ScreenTest, bothOverlaysAreInUseOnBothPages) {
  for (int page = 0; page < 2; ++page) {
    const Picture picture = zansim::drawScreen(bench_.mainframe(), 0s);
    EXPECT_FALSE(isEmpty(picture.base));
    EXPECT_FALSE(isEmpty(picture.overlay1));
    EXPECT_FALSE(isEmpty(picture.overlay2));
    bench_.mainframe().turnPage();
  }
}

TEST_F(ScreenTest, theSameMomentGivesTheSamePicture) {
  EXPECT_TRUE(planes() == planes());
}

TEST_F(ScreenTest, whateverIsChangedIsSeenOnThePageOfReadings) {
  EXPECT_TRUE(changesWith(":CHAN 3"));
  for (const char* const mode :
       {"CCL", "CCDH", "CCDL", "CV", "CRH", "CRL", "CRDH", "CRDL", "CCH"}) {
    EXPECT_TRUE(changesWith(":MODE " + std::string(mode))) << mode;
  }
  for (const char* const message :
       {":CURR:STAT:L1 1", ":CURR:STAT:L2 2", ":CURR:STAT:RISE 0.5", ":CURR:STAT:FALL 0.5",
        ":CONF:VOLT:RANG LOW", ":CONF:VOLT:ON 2", ":CONF:VOLT:LAT ON", ":CONF:PROT:CURR:STAT ON",
        ":CONF:PROT:CURR:LEV 20", ":CONF:PROT:VOLT:STAT ON", ":CONF:PROT:VOLT:LEV 15",
        ":CONF:PROT:UVP:LEV 3", ":SPEC:PASS ON", ":SPEC:VOLT:H 1", ":LOAD ON", ":LOAD OFF"}) {
    EXPECT_TRUE(changesWith(message)) << message;
  }
}

TEST_F(ScreenTest, whateverIsSetIsSeenOnThePageOfSettings) {
  bench_.send(":CHAN 3");
  bench_.mainframe().turnPage();
  for (const char* const message : {":CURR:STAT:L1 1",
                                    ":CURR:STAT:L2 2",
                                    ":CURR:STAT:RISE 0.5",
                                    ":CURR:STAT:FALL 0.5",
                                    ":CURR:DYN:L1 1",
                                    ":CURR:DYN:L2 2",
                                    ":CURR:DYN:RISE 0.5",
                                    ":CURR:DYN:FALL 0.5",
                                    ":CURR:DYN:T1 3",
                                    ":CURR:DYN:T2 4",
                                    ":VOLT:L1 1",
                                    ":VOLT:L2 2",
                                    ":VOLT:CURR 3",
                                    ":VOLT:MODE FAST",
                                    ":RES:L1 10",
                                    ":RES:L2 11",
                                    ":RES:RISE 0.5",
                                    ":RES:FALL 0.5",
                                    ":RES:DYN:LOW:L1 1",
                                    ":RES:DYN:LOW:L2 2",
                                    ":RES:DYN:LOW:RISE 0.5",
                                    ":RES:DYN:LOW:FALL 0.5",
                                    ":RES:DYN:LOW:T1 3",
                                    ":RES:DYN:LOW:T2 4",
                                    ":RES:DYN:HIGH:L1 20",
                                    ":RES:DYN:HIGH:L2 30",
                                    ":RES:DYN:HIGH:RISE 0.5",
                                    ":RES:DYN:HIGH:FALL 0.5",
                                    ":RES:DYN:HIGH:T1 3",
                                    ":RES:DYN:HIGH:T2 4",
                                    ":CONF:PROT:CURR:LEV 5",
                                    ":CONF:PROT:CURR:STAT ON",
                                    ":CONF:PROT:VOLT:LEV 15",
                                    ":CONF:PROT:VOLT:STAT ON",
                                    ":CONF:PROT:UVP:LEV 3",
                                    ":CONF:VOLT:ON 2",
                                    ":CONF:VOLT:LAT ON",
                                    ":SPEC:VOLT:H 10",
                                    ":SPEC:VOLT:L 1",
                                    ":SPEC:CURR:H 10",
                                    ":SPEC:CURR:L 1",
                                    ":SPEC:PASS ON",
                                    ":MODE CRL",
                                    ":MODE CCDH",
                                    ":MODE CV"}) {
    EXPECT_TRUE(changesWith(message)) << message;
  }
}

TEST_F(ScreenTest, readingsFollowTheTerminals) {
  bench_.send(":CURR:STAT:L1 5;:LOAD ON");
  const std::string rising = planes();
  bench_.pass(1ms);
  const std::string risen = planes();
  EXPECT_FALSE(rising == risen);
  bench_.pass(1ms);
  EXPECT_TRUE(planes() == risen);
}

TEST_F(ScreenTest, theOtherPageIsAnotherPicture) {
  const std::string readings = planes();
  bench_.mainframe().turnPage();
  EXPECT_FALSE(planes() == readings);
  bench_.mainframe().turnPage();
  EXPECT_TRUE(planes() == readings);
}

TEST_F(ScreenTest, theLoadBadgeIsOrangeWhileOnAndRedAfterATrip) {
  const zansim::Box badge{226, 24, 90, 19};
  const zansim::Colour orange{255, 132, 0};
  const zansim::Colour red{255, 34, 34};
  const auto count = [&](zansim::Colour colour) {
    return seen(zansim::drawScreen(bench_.mainframe(), 1s), badge, colour);
  };
  EXPECT_EQ(count(orange), 0);
  bench_.send(":CHAN 3;:CURR:STAT:L1 5;:LOAD ON");
  EXPECT_GT(count(orange), 800);
  EXPECT_EQ(count(red), 0);
  bench_.pass(1s);
  bench_.send(":CONF:PROT:CURR:LEV 1;:CONF:PROT:CURR:STAT ON");
  bench_.pass(1s);
  const Picture tripped = zansim::drawScreen(bench_.mainframe(), 3s);
  EXPECT_EQ(seen(tripped, badge, orange), 0);
  EXPECT_GT(seen(tripped, badge, red), 800);
  // The state of the protection that tripped and the sentence below it.
  EXPECT_GT(seen(tripped, {4, 173, 75, 29}, red), 1000);
  EXPECT_EQ(seen(tripped, {83, 173, 75, 29}, red), 0);
  EXPECT_GT(seen(tripped, {6, 204, 300, 13}, red), 300);
}

TEST_F(ScreenTest, everyTripHasAPictureOfItsOwn) {
  const auto tripped = [](std::string_view arming) {
    LoadBench bench("2030", {12, 0.1});
    bench.send(":CURR:STAT:L1 5");
    bench.send(arming);
    bench.send(":LOAD ON");
    bench.pass(1s);
    bench.send(":CONF:PROT:CURR:LEV 7;:CONF:PROT:VOLT:LEV 7;:CONF:PROT:UVP:LEV 7");
    EXPECT_NE(bench.channel().trip(), zansim::Trip::None) << arming;
    return bench.ask(":DISP:OUTP?");
  };
  const std::string overCurrent = tripped(":CONF:PROT:CURR:LEV 1;:CONF:PROT:CURR:STAT ON");
  const std::string overVoltage = tripped(":CONF:PROT:VOLT:LEV 9;:CONF:PROT:VOLT:STAT ON");
  const std::string underVoltage = tripped(":CONF:PROT:UVP:LEV 11.9");
  EXPECT_FALSE(overCurrent == overVoltage);
  EXPECT_FALSE(overCurrent == underVoltage);
  EXPECT_FALSE(overVoltage == underVoltage);
}

TEST_F(ScreenTest, errorsInTheQueueAreCounted) {
  const std::string before = planes();
  bench_.ask(":NONSENSE");
  EXPECT_FALSE(planes() == before);
  EXPECT_EQ(bench_.error(), -113);
  EXPECT_TRUE(planes() == before);
}

TEST_F(ScreenTest, everyModuleInEveryModeIsDrawnInTheInksOfItsLayers) {
  for (std::size_t channel = 1; channel <= bench_.mainframe().channelCount(); ++channel) {
    bench_.send(":CHAN " + std::to_string(channel));
    for (const zansim::Mode& mode : zansim::modes()) {
      bench_.send(":MODE " + std::string(mode.word));
      for (const char* const load : {":LOAD ON", ":LOAD OFF"}) {
        bench_.ask(load);
        bench_.pass(10ms);
        expectInksOfTheirLayers(zansim::drawScreen(bench_.mainframe(), 0s));
        bench_.mainframe().turnPage();
      }
    }
  }
}

TEST(Screen, readingsBeyondTheRangeStayInTheirField) {
  // Beside the numbers, and in all that follows them, nothing moves.
  const auto drawn = [](double volts) {
    LoadBench bench("2030", {volts, 0.1});
    return zansim::drawScreen(bench.mainframe(), 0s);
  };
  const Picture usual = drawn(75);
  const Picture over = drawn(1000);
  const zansim::Box numbers{10, 50, 150, 113};
  const zansim::Box gauges[] = {{8, 83, 200, 3}, {8, 165, 200, 3}};
  int changed = 0;
  for (int y = 0; y < 240; ++y) {
    for (int x = 0; x < 320; ++x) {
      const bool same = usual.colour(x, y) == over.colour(x, y);
      ASSERT_TRUE(same || numbers.contains(x, y) || gauges[0].contains(x, y) ||
                  gauges[1].contains(x, y))
          << x << ", " << y;
      changed += same ? 0 : 1;
    }
  }
  EXPECT_GT(changed, 500);
}

TEST(Screen, aLongNameOfMakerAndModelStaysInItsField) {
  const auto drawn = [](const std::string& maker) {
    zansim::Configuration configuration;
    configuration.maker = maker;
    configuration.serial = maker;
    zansim::Mainframe mainframe(configuration);
    mainframe.status().report(zansim::Error::OutOfRange);
    return zansim::drawScreen(mainframe, 0s);
  };
  const Picture shortName = drawn("");
  const Picture longName = drawn(std::string(500, 'W'));
  const zansim::Box name{6, 0, 186, 20};
  const zansim::Box serial{6, 204, 220, 13};
  for (int y = 0; y < 240; ++y) {
    for (int x = 0; x < 320; ++x) {
      ASSERT_TRUE(shortName.colour(x, y) == longName.colour(x, y) || name.contains(x, y) ||
                  serial.contains(x, y))
          << x << ", " << y;
    }
  }
}

TEST(Screen, aMainframeWithoutModulesHasOneToo) {
  zansim::Configuration configuration;
  configuration.setSlots("0,0");
  zansim::Mainframe mainframe(configuration);
  const std::string memory = zansim::planes(zansim::drawScreen(mainframe, 0s));
  std::string answer;
  zansim::execute(mainframe, ":DISP:OUTP?;COL?", 0s, answer);
  EXPECT_EQ(mainframe.status().count(), 0U);
  EXPECT_TRUE(answer.substr(8, memory.size()) == memory);
  EXPECT_EQ(answer.substr(8 + memory.size(), 11), ";#6230454BM");
  mainframe.turnPage();
  EXPECT_FALSE(zansim::planes(zansim::drawScreen(mainframe, 0s)) == memory);
}
