#include <filesystem>
#include <gmock/gmock.h>
#include <iterator>

#include "tests/end_to_end/serial_bench.hpp"
#include "tests/end_to_end/simulated_bench.hpp"

namespace lumodevice::end_to_end {
namespace {

using std::chrono::milliseconds;

std::ptrdiff_t threads() {
  return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {});
}

/// Two components are told to choose channels in turn; each must only ever see its own.
void interleave(RealPanel& first, RealPanel& second) {
  for (int i = 0; i < 5; ++i) {
    const std::string one = std::to_string(1 + i);
    const std::string other = std::to_string(7 - i);
    first.zan().SendCmd(":CHAN " + one);
    second.zan().SendCmd(":CHAN " + other);
    EXPECT_EQ(first.ask(":CHAN?"), one);
    EXPECT_EQ(second.ask(":CHAN?"), other);
  }
  EXPECT_EQ(first.boxes() + second.boxes(), "");
}

TEST(TwoComponents, onTwoVisaInstruments) {
  const auto before = threads();
  for (const Variant variant : {Variant::VisaLibrary, Variant::VisaCom}) {
    SimulatedBench first(Variant::VisaLibrary);
    SimulatedBench second(variant);
    EXPECT_TRUE(first.panel.zan().AutoConnect());
    EXPECT_FALSE(second.panel.zan().isConnected());
    EXPECT_TRUE(second.panel.zan().AutoConnect());
    interleave(first.panel, second.panel);
    first.panel.zan().AutoQuery(true);
    second.loop.runFor(milliseconds(2000));
    EXPECT_FALSE(second.panel.zan().AutoQuery());
    first.panel.click("optConnRS232");
    EXPECT_EQ(first.panel.state(), "not connected");
    EXPECT_EQ(second.panel.ask(":CHAN?"), "3");
    EXPECT_EQ(threads(), before);
  }
}

TEST(TwoComponents, onTwoSerialPorts) {
  const auto before = threads();
  SerialBench first({3});
  SerialBench second({3});
  first.connectByHand(3);
  second.connectByHand(3);
  interleave(first.panel(), second.panel());
  EXPECT_EQ(threads(), before);
  second.load(3).unplug();
  EXPECT_EQ(first.panel().ask(":CHAN?"), "5");
}

/// The ports of one machine, seen by both.
TEST(TwoComponents, onePortIsNotSharedByTwo) {
  posix::TemporaryFolder folder;
  const std::string link = (folder.path() / "port").string();
  support::ScaledLoop loop;
  LoadOnTerminal load(loop, link);
  load.plug();
  loop.meanwhile = [&](support::ScaledLoop::Duration span) { load.serve(span); };
  platform::BuiltinVisa visa;
  posix::TermiosDevices devices({{2, link}});
  RealPanel first(loop, visa, devices);
  RealPanel second(loop, visa, devices);
  first.type("Text5", "20");
  first.click("optConnRS232");
  EXPECT_TRUE(first.zan().AutoConnect());
  second.click("optConnRS232");
  EXPECT_EQ(second.items("Combo1"), "");
  EXPECT_FALSE(second.zan().AutoConnect());
  first.type("Text5", "200");
  EXPECT_EQ(first.ask(":CHAN?"), "1");
  first.click("optVISA");
  EXPECT_TRUE((second.type("Text5", "20"), second.zan().AutoConnect()));
}

}  // namespace
}  // namespace lumodevice::end_to_end
