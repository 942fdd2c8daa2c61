#include "lumodevice/simulated_host.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <stdexcept>

#include "lumodevice/toolkit/hand.hpp"
#include "lumodevice/zan_ctrl.hpp"
#include "tests/platform/temporary_folder.hpp"

namespace lumodevice {
namespace {

using std::chrono::seconds;
using testing::ElementsAre;
using testing::HasSubstr;

std::string ask(ZANCtrl& load, std::string_view query) {
  load.SendCmd(query);
  return load.ResultStr();
}

void choose(ZANCtrl& load, std::string_view link) {
  toolkit::hand::click(load.surface().get<toolkit::OptionButton>(link));
}

int minuteOfDay(const Host& host) {
  const io::LocalTime now = host.wallClock.now();
  return now.hour * 60 + now.minute;
}

TEST(SimulatedHost, needsNothingButTheComponent) {
  ZANCtrl load(simulatedHost({.virtualTime = true}));
  ASSERT_TRUE(load.AutoConnect());
  EXPECT_EQ(load.ChCount(), 7);
  EXPECT_THAT(load.IDN(), HasSubstr("ZAN63200,SIM00001"));
}

TEST(SimulatedHost, hasTheInstrumentBehindVisaCom) {
  ZANCtrl load(simulatedHost({.virtualTime = true}));
  choose(load, "optVisa2");
  ASSERT_TRUE(load.AutoConnect());
  EXPECT_NE(load.devZAN(), nullptr);
  EXPECT_EQ(ask(load, ":CHAN?"), "1");
}

TEST(SimulatedHost, hasTheInstrumentOnCom3At9600) {
  ZANCtrl load(simulatedHost({.virtualTime = true}));
  choose(load, "optConnRS232");
  ASSERT_TRUE(load.AutoConnect());
  EXPECT_EQ(load.ConnStyle(), LinkKind::Serial);
  EXPECT_EQ(load.surface().get<toolkit::ComboBox>("Combo1").text(), "COM3");
  EXPECT_EQ(load.surface().get<toolkit::ComboBox>("Combo2").text(), "9600");
}

TEST(SimulatedHost, runsExchangesInTurnUnlessToldOtherwise) {
  EXPECT_EQ(simulatedHost().exchanges, Exchanges::InTurn);
  EXPECT_EQ(simulatedHost({.exchanges = Exchanges::Interleaved}).exchanges, Exchanges::Interleaved);
}

TEST(SimulatedHost, answersLateAndTellsWhatWasAsked) {
  const Host host = simulatedHost(
      {.virtualTime = true, .latencies = {":FETC:VOLT?=120"}, .numberedReadings = true});
  ZANCtrl load(host);
  ASSERT_TRUE(load.AutoConnect());
  EXPECT_EQ(ask(load, ":FETC:POW?"), "30.0004");
  const auto start = host.loop.now();
  EXPECT_EQ(ask(load, ":FETC:VOLT?"), "10.0005");
  EXPECT_GE(host.loop.now() - start, std::chrono::milliseconds(120));
  EXPECT_EQ(ask(load, ":FETC:CURR?"), "20.0006");
  EXPECT_THROW((void)simulatedHost({.latencies = {"soon"}}), std::invalid_argument);
}

TEST(SimulatedHost, isRealTimeUnlessToldOtherwise) {
  const Host host = simulatedHost();
  EXPECT_NE(dynamic_cast<toolkit::RealTimeLoop*>(&host.loop), nullptr);
}

TEST(SimulatedHost, livesInTheTimeOfTheLoopThatItIsGiven) {
  toolkit::VirtualLoop loop;
  loop.idle(std::chrono::hours(1000));
  const Host host = simulatedHost({.loop = &loop});
  EXPECT_EQ(&host.loop, &loop);
  const Host system = simulatedHost({.virtualTime = true});
  const int late = (minuteOfDay(host) - minuteOfDay(system) + 24 * 60) % (24 * 60);
  EXPECT_TRUE(late <= 1 || late == 24 * 60 - 1) << "its date starts at the present";
  const int before = minuteOfDay(host);
  loop.idle(std::chrono::minutes(30));
  EXPECT_EQ((minuteOfDay(host) - before + 24 * 60) % (24 * 60), 30);
}

TEST(SimulatedHost, hasTheModulesAndSourcesThatAreAskedFor) {
  ZANCtrl load(simulatedHost({.virtualTime = true,
                              .modules = "2040,2050",
                              .sources = {"1=5,0", "2=24,0"},
                              .serialNumber = "BENCH2"}));
  ASSERT_TRUE(load.AutoConnect());
  EXPECT_EQ(load.ChCount(), 2);
  EXPECT_THAT(load.IDN(), HasSubstr("BENCH2"));
  load.SendCmd(":CHAN 2");
  EXPECT_EQ(ask(load, ":FETC:VOLT?").substr(0, 3), "24.");
}

TEST(SimulatedHost, refusesSlotsAndSourcesThatCannotBe) {
  EXPECT_THROW((void)simulatedHost({.modules = "2021R"}), std::invalid_argument);
  EXPECT_THROW((void)simulatedHost({.sources = {"one"}}), std::invalid_argument);
}

TEST(SimulatedHost, hasDriveCInTheFolderThatItIsGiven) {
  const posix::TemporaryFolder folder;
  const Host host = simulatedHost({.driveC = (folder.path() / "c").string()});
  host.drive.createFolder("C:\\temp");
  EXPECT_TRUE(std::filesystem::is_directory(folder.path() / "c" / "temp"));
}

TEST(SimulatedHost, showsBoxesWhereItIsTold) {
  std::vector<std::string> boxes;
  ZANCtrl load(simulatedHost({.virtualTime = true, .informationBox = [&](std::string_view text) {
                                boxes.emplace_back(text);
                              }}));
  toolkit::hand::click(load.surface().get<toolkit::CommandButton>("Command1"));
  EXPECT_THAT(boxes, ElementsAre(HasSubstr("Connect")));
}

TEST(SimulatedHost, printsBoxesOnStandardErrorOtherwise) {
  ZANCtrl load(simulatedHost({.virtualTime = true}));
  testing::internal::CaptureStderr();
  toolkit::hand::click(load.surface().get<toolkit::CommandButton>("Command1"));
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "[information] Pleace Connect to Deivce first!\n");
}

/// Makes whoever holds it known.
std::weak_ptr<void> watch(Host& host) {
  return host.owned;
}

TEST(HostOwnership, aComponentKeepsWhatItsHostOwnsToItsEnd) {
  std::optional<Host> host(simulatedHost({.virtualTime = true}));
  const std::weak_ptr<void> owned = watch(*host);
  std::optional<ZANCtrl> load(*host);
  host.reset();
  ASSERT_TRUE(load->AutoConnect());
  load->AutoQuery(true);
  EXPECT_FALSE(owned.expired());
  load.reset();
  EXPECT_TRUE(owned.expired());
}

TEST(HostOwnership, ofOneHostIsSharedByItsComponentsWhichLockItsInstrumentForEachOther) {
  std::optional<Host> host(simulatedHost({.virtualTime = true}));
  std::optional<ZANCtrl> first(*host);
  std::optional<ZANCtrl> second(*host);
  host.reset();
  ASSERT_TRUE(first->AutoConnect());
  EXPECT_FALSE(second->AutoConnect());
  first.reset();
  EXPECT_TRUE(second->AutoConnect());
}

TEST(HostOwnership, endsOnEveryLinkWithTheLinkOpen) {
  for (const char* link : {"optVisa1", "optVisa2", "optConnRS232"}) {
    ZANCtrl load(simulatedHost({.virtualTime = true}));
    choose(load, link);
    EXPECT_TRUE(load.AutoConnect()) << link;
  }
}

TEST(HostOwnership, aHostMayPutItsOwnPartInThePlaceOfAReadyMadeOne) {
  const Host ready = simulatedHost({.virtualTime = true});
  std::vector<std::string> boxes;
  ZANCtrl load({.loop = ready.loop,
                .visa = ready.visa,
                .visaCom = ready.visaCom,
                .serialDevices = ready.serialDevices,
                .drive = ready.drive,
                .wallClock = ready.wallClock,
                .informationBox = [&](std::string_view text) { boxes.emplace_back(text); },
                .owned = ready.owned});
  toolkit::hand::click(load.surface().get<toolkit::CommandButton>("Command1"));
  EXPECT_EQ(boxes.size(), 1U);
}

TEST(SimulatedHosts, onOneLoopHaveAnInstrumentEach) {
  toolkit::VirtualLoop loop;
  ZANCtrl left(simulatedHost({.loop = &loop, .serialNumber = "LEFT"}));
  ZANCtrl right(simulatedHost({.loop = &loop, .serialNumber = "RIGHT"}));
  ASSERT_TRUE(left.AutoConnect());
  ASSERT_TRUE(right.AutoConnect());
  left.SendCmd(":CHAN 2");
  right.SendCmd(":CHAN 5");
  EXPECT_EQ(ask(left, ":CHAN?"), "2");
  EXPECT_EQ(ask(right, ":CHAN?"), "5");
  EXPECT_THAT(ask(left, "*IDN?"), HasSubstr("LEFT"));
}

}  // namespace
}  // namespace lumodevice
