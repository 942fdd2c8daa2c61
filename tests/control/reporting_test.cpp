#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdexcept>

#include "tests/control/simulated_panel.hpp"

namespace lumodevice {
namespace {

using std::chrono::seconds;
using support::Over;
using support::SimulatedPanel;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kResource = "USB0::0x5A41::0x0200::SIM00001::INSTR";

TEST(Failures, everyKindHasItsSentence) {
  for (const FailureRow& row : kFailures) {
    EXPECT_FALSE(row.name.empty());
    EXPECT_FALSE(row.sentence.empty());
    EXPECT_EQ(&rowOf(row.kind), &row);
  }
}

TEST(ConnectTo, aResourceASerialNumberAndAPortFindTheInstrument) {
  for (const char* address : {kResource, "SIM00001", "COM3", "com3"}) {
    SimulatedPanel panel({});
    EXPECT_TRUE(panel.load.connectTo(address)) << address;
    EXPECT_TRUE(panel.load.isConnected()) << address;
    EXPECT_EQ(panel.load.failure().kind, FailureKind::None) << address;
    EXPECT_EQ(panel.load.ChCount(), 7) << address;
  }
}

TEST(ConnectTo, goesFromOneKindOfLinkToTheOther) {
  SimulatedPanel panel({});
  ASSERT_TRUE(panel.load.connectTo("COM3"));
  EXPECT_EQ(panel.load.ConnStyle(), LinkKind::Serial);
  ASSERT_TRUE(panel.load.connectTo("SIM00001"));
  EXPECT_EQ(panel.load.ConnStyle(), LinkKind::Visa);
  EXPECT_EQ(panel.ask(":CHAN?"), "1");
}

TEST(ConnectTo, touchesNoOtherPort) {
  SimulatedPanel panel({});
  ASSERT_TRUE(panel.load.connectTo("COM3"));
  EXPECT_EQ(panel.control<toolkit::ComboBox>("Combo1").listCount(), 1);
}

TEST(ConnectTo, saysWhyItFailed) {
  const std::vector<std::pair<const char*, FailureKind>> cases{
      {"", FailureKind::BadAddress},
      {"COM17", FailureKind::NothingFound},
      {"/dev/ttyUSB0", FailureKind::BadAddress},
      {"COM4", FailureKind::NothingFound},
      {"SIM00002", FailureKind::NothingFound},
      {"what is this", FailureKind::BadAddress},
      {"USB0::0x5A41::0x0200::SIM00002::INSTR", FailureKind::NothingFound}};
  for (const auto& [address, kind] : cases) {
    SimulatedPanel panel({});
    EXPECT_FALSE(panel.load.connectTo(address)) << address;
    EXPECT_EQ(panel.load.failure().kind, kind) << address << ": " << panel.load.failure().sentence;
    EXPECT_FALSE(panel.load.isConnected()) << address;
  }
}

TEST(ConnectTo, tellsAnotherInstrumentFromOneThatDoesNotAnswer) {
  for (const char* address : {kResource, "COM3"}) {
    SimulatedPanel panel({});
    panel.bench.instrument.faults.add("identity=Somebody,XYZ1,1,1");
    EXPECT_FALSE(panel.load.connectTo(address));
    EXPECT_EQ(panel.load.failure().kind, FailureKind::WrongInstrument) << address;
    panel.bench.instrument.faults.clear();
    panel.bench.instrument.faults.add("silent");
    EXPECT_FALSE(panel.load.connectTo(address));
    EXPECT_EQ(panel.load.failure().kind, FailureKind::NoAnswer) << address;
  }
}

TEST(Failures, ofAnExchange) {
  SimulatedPanel panel({});
  panel.load.SendCmd("*IDN?");
  EXPECT_EQ(panel.load.failure().kind, FailureKind::NotConnected);
  ASSERT_TRUE(panel.connect());
  panel.load.SendCmd(":FOO?");
  EXPECT_EQ(panel.load.failure().kind, FailureKind::NoAnswer);
  EXPECT_THAT(panel.load.failure().sentence, HasSubstr(":FOO?"));
  panel.load.SendCmd("*IDN?");
  EXPECT_EQ(panel.load.failure().kind, FailureKind::None);
}

class LostLink : public testing::TestWithParam<Over> {};
INSTANTIATE_TEST_SUITE_P(Links, LostLink, testing::ValuesIn(support::kLinks));

TEST_P(LostLink, isToldOnceAndIsNoLinkAnyMore) {
  SimulatedPanel panel({.link = GetParam()});
  ASSERT_TRUE(panel.connect());
  panel.bench.instrument.faults.add("vanish=0");
  EXPECT_EQ(panel.ask(":FETC:VOLT?"), "");
  EXPECT_EQ(panel.load.failure().kind, FailureKind::Vanished);
  panel.load.SendCmd(":FETC:VOLT?");
  EXPECT_THAT(panel.told, ElementsAre(HasSubstr("lost: the instrument has gone")));
  EXPECT_FALSE(panel.load.isConnected());
  EXPECT_FALSE(panel.load.bDevAvaliable());
  EXPECT_THAT(panel.boxes, IsEmpty());
}

TEST_P(LostLink, isRegainedByTheSameInstrumentAlone) {
  SimulatedPanel panel({.link = GetParam()});
  ASSERT_TRUE(panel.connect());
  panel.bench.instrument.faults.add("vanish=0");
  panel.load.SendCmd(":FETC:VOLT?");
  EXPECT_FALSE(panel.load.reconnect());
  EXPECT_FALSE(panel.load.isConnected());
  panel.bench.instrument.faults.clear();
  panel.bench.instrument.faults.add("identity=Ostbrook Instruments,ZAN63200,SIM00009,1.02.3");
  EXPECT_FALSE(panel.load.reconnect());
  EXPECT_EQ(panel.load.failure().kind, FailureKind::WrongInstrument);
  panel.bench.instrument.faults.clear();
  panel.told.clear();
  EXPECT_TRUE(panel.load.reconnect()) << panel.load.failure().sentence;
  EXPECT_THAT(panel.told, ElementsAre("regained"));
  EXPECT_EQ(panel.ask(":CHAN?"), "1");
}

TEST_P(LostLink, inAConnectEndsItAtOnce) {
  SimulatedPanel panel({.link = GetParam()});
  panel.bench.instrument.faults.add("vanish=8");
  EXPECT_FALSE(panel.connect());
  EXPECT_EQ(panel.load.failure().kind, FailureKind::Vanished) << panel.load.failure().sentence;
  EXPECT_FALSE(panel.load.isConnected());
  EXPECT_THAT(panel.boxes, IsEmpty());
}

TEST(LostLinkOfReadings, isToldAfterThreeWithoutAnAnswerAndRegainedWithTheNext) {
  SimulatedPanel panel({});
  ASSERT_TRUE(panel.connect());
  panel.load.AutoQuery(true);
  panel.loop.runFor(seconds(2));
  EXPECT_THAT(panel.told, IsEmpty());
  panel.bench.instrument.faults.add("silent");
  panel.loop.runFor(seconds(20));
  EXPECT_THAT(panel.told, ElementsAre(HasSubstr("did not answer in time")));
  EXPECT_TRUE(panel.load.isConnected());
  panel.bench.instrument.faults.clear();
  panel.loop.runFor(seconds(5));
  EXPECT_THAT(panel.told, ElementsAre(HasSubstr("did not answer"), "regained"));
}

TEST(LostLink, anObserverMayReconnectAtOnce) {
  SimulatedPanel panel({});
  ASSERT_TRUE(panel.connect());
  bool back = false;
  const auto reconnecting = panel.load.observeLinkLost([&](const Failure&) {
    panel.bench.instrument.faults.clear();
    back = panel.load.reconnect();
  });
  panel.bench.instrument.faults.add("vanish=0");
  panel.load.SendCmd(":FETC:VOLT?");
  EXPECT_TRUE(back);
  EXPECT_EQ(panel.ask(":CHAN?"), "1");
}

TEST(Reconnect, beforeTheFirstLinkThereIsNothingToReconnectTo) {
  SimulatedPanel panel({});
  EXPECT_FALSE(panel.load.reconnect());
  EXPECT_EQ(panel.load.failure().kind, FailureKind::NotConnected);
}

TEST(WaitUnit, isThatOfTheField) {
  SimulatedPanel panel({});
  EXPECT_EQ(panel.load.waitUnit(), 200);
  panel.load.waitUnit(50);
  EXPECT_EQ(panel.load.waitUnit(), 50);
  EXPECT_EQ(panel.control<toolkit::TextBox>("Text5").text(), "50");
  EXPECT_THROW(panel.load.waitUnit(0), std::out_of_range);
  EXPECT_THROW(panel.load.waitUnit(65536), std::out_of_range);
  EXPECT_EQ(panel.load.waitUnit(), 50);
}

}  // namespace
}  // namespace lumodevice
