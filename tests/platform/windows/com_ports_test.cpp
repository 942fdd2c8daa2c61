#include <chrono>
#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "lumodevice/system_host.hpp"
#include "lumodevice/toolkit/controls.hpp"
#include "lumodevice/toolkit/hand.hpp"
#include "lumodevice/zan_ctrl.hpp"
#include "platform/environment.hpp"
#include "platform/system_clock.hpp"
#include "platform/windows/serial_devices.hpp"
#include "tests/io/fault_number.hpp"

// A simulated load answers at the port that the variable LUMODEVICE_TEST_PORT names, and one that
// vanishes with its second message at LUMODEVICE_VANISHING_PORT. scripts/test-windows sees to both.

namespace lumodevice::windows {
namespace {

using std::chrono::milliseconds;

constexpr io::SerialSettings kSettings{.baud = 9600};

int fault(const std::function<void()>& act) {
  return faultNumber<io::SerialFault>(act);
}

/// What comes within two seconds, up to a line feed.
std::string answer(io::SerialLine& line) {
  platform::SystemClock clock;
  std::string queue;
  while (queue.find('\n') == std::string::npos && clock.now() < milliseconds(2000)) {
    clock.wait(milliseconds(5));
    line.receive(queue);
  }
  return queue;
}

struct ComPortsTest : testing::Test {
  /// The port's number; the test is skipped where there is none.
  int portOf(const char* variable) {
    const auto name = platform::processVariable(variable);
    return name ? std::atoi(name->substr(3).c_str()) : 0;
  }
  ComPorts ports;
};

#define REQUIRE_PORT(port, variable) \
  const int port = portOf(variable); \
  if (port == 0) GTEST_SKIP() << variable << " names no port"

TEST_F(ComPortsTest, aPortThatIsNotThereIsAnInvalidOne) {
  EXPECT_EQ(fault([&] { (void)ports.open(0, kSettings); }), io::kSerialInvalidPort);
  ComPorts given({{1, "COM77"}});
  EXPECT_EQ(given.deviceOf(1), "COM77");
  EXPECT_EQ(given.deviceOf(2), "");
  EXPECT_EQ(fault([&] { (void)given.open(1, kSettings); }), io::kSerialInvalidPort);
}

TEST_F(ComPortsTest, aPortBeyondTheSixteenTakesTheLastFreeOne) {
  ComPorts given({{1, "COM77"}});
  EXPECT_EQ(given.portNamed("COM21"), 16);
  EXPECT_EQ(given.deviceOf(16), "COM21");
  EXPECT_EQ(given.portNamed("\\\\.\\com21"), 16);
  EXPECT_EQ(given.portNamed("com77"), 1);
}

TEST_F(ComPortsTest, anInstrumentAnswers) {
  REQUIRE_PORT(port, "LUMODEVICE_TEST_PORT");
  EXPECT_EQ(ports.portNamed("\\\\.\\COM" + std::to_string(port)), port);
  EXPECT_THAT(listComPorts(), testing::Contains("COM" + std::to_string(port)));
  for (const std::int32_t baud : {38400, 19200, 9600, 4800}) {
    const auto line = ports.open(port, {.baud = baud});
    std::string queue = "kept ";
    line->receive(queue);
    EXPECT_EQ(queue, "kept ") << "nothing waits";
    line->write("*IDN?\n");
    EXPECT_THAT(answer(*line), testing::HasSubstr("ZAN"));
  }
}

TEST_F(ComPortsTest, whatWasSentBeforeItWasOpenedIsDropped) {
  REQUIRE_PORT(port, "LUMODEVICE_TEST_PORT");
  ports.open(port, kSettings)->write("*IDN?\n");
  platform::SystemClock().wait(milliseconds(100));
  const auto line = ports.open(port, kSettings);
  std::string queue;
  line->receive(queue);
  EXPECT_EQ(queue, "");
}

TEST_F(ComPortsTest, settingsThatNoPortHasAreRefused) {
  REQUIRE_PORT(port, "LUMODEVICE_TEST_PORT");
  const auto line = ports.open(port, kSettings);
  EXPECT_EQ(fault([&] { line->configure({.dataBits = 4}); }), io::kSerialInvalidValue);
  EXPECT_EQ(fault([&] { line->configure({.stopBits = "1.5"}); }), io::kSerialInvalidValue);
  EXPECT_EQ(fault([&] { line->configure({.dataBits = 5, .stopBits = "2"}); }),
            io::kSerialInvalidValue);
  EXPECT_EQ(fault([&] { line->configure({.parity = 'x'}); }), io::kSerialInvalidValue);
  EXPECT_EQ(fault([&] { (void)ports.open(port, {.baud = 0}); }), io::kSerialInvalidValue);
  line->configure({.baud = 19200, .stopBits = "2"});
}

TEST_F(ComPortsTest, aPortThatVanishesIsAReadError) {
  REQUIRE_PORT(port, "LUMODEVICE_VANISHING_PORT");
  const auto line = ports.open(port, kSettings);
  line->write("*IDN?\n");
  EXPECT_THAT(answer(*line), testing::HasSubstr("ZAN"));
  line->write("*IDN?\n");
  int last = 0;
  platform::SystemClock clock;
  while (last == 0 && clock.now() < milliseconds(3000)) {
    clock.wait(milliseconds(10));
    last = fault([&] {
      std::string queue;
      line->receive(queue);
    });
  }
  EXPECT_EQ(last, io::kSerialReadError);
  EXPECT_EQ(fault([&] { line->write("*IDN?\n"); }), io::kSerialUnavailable);
}

TEST_F(ComPortsTest, aComponentSearchesThePortsAndWorksWithTheOneThatAnswers) {
  REQUIRE_PORT(port, "LUMODEVICE_TEST_PORT");
  ZANCtrl load(systemHost({.ports = {{port, "COM" + std::to_string(port)}}}));
  toolkit::hand::click(load.surface().get<toolkit::OptionButton>("optConnRS232"));
  ASSERT_TRUE(load.AutoConnect());
  EXPECT_EQ(load.ConnStyle(), LinkKind::Serial);
  EXPECT_EQ(load.ChCount(), 7);
  load.SendCmd(":CURR:STAT:L1 1.5");
  load.SendCmd(":CURR:STAT:L1?");
  EXPECT_EQ(load.ResultStr().substr(0, 3), "1.5");
}

}  // namespace
}  // namespace lumodevice::windows
