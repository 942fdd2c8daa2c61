#include "lumodevice/io/serial_port.hpp"

#include <gmock/gmock.h>

#include "tests/io/fault_number.hpp"

namespace lumodevice::io {
namespace {

using testing::ElementsAre;

std::string textOf(const SerialSettings& settings) {
  return std::to_string(settings.baud) + settings.parity + std::to_string(settings.dataBits) +
         settings.stopBits;
}

/// Devices that write down what is asked of them; one line at a time.
struct FakeDevices : SerialDevices {
  struct Line : SerialLine {
    explicit Line(FakeDevices& devices) : owner(devices) {}
    ~Line() override { owner.log.emplace_back("close"); }
    Line(const Line&) = delete;
    Line& operator=(const Line&) = delete;
    void configure(const SerialSettings& settings) override {
      if (settings.baud == owner.refusedBaud) throw SerialFault(kSerialInvalidValue, "refused");
      owner.log.push_back("configure " + textOf(settings));
    }
    void write(std::string_view data) override {
      if (owner.gone) throw SerialFault(kSerialUnavailable, "gone");
      owner.log.push_back("write " + std::string(data));
    }
    void receive(std::string& queue) override {
      if (owner.gone) throw SerialFault(kSerialReadError, "gone");
      queue += std::exchange(owner.arriving, {});
    }
    FakeDevices& owner;
  };

  std::unique_ptr<SerialLine> open(int port, const SerialSettings& settings) override {
    if (openFault != 0) throw SerialFault(openFault, "cannot be opened");
    log.push_back("open " + std::to_string(port) + " " + textOf(settings));
    return std::make_unique<Line>(*this);
  }

  std::vector<std::string> log;
  std::string arriving;
  std::int32_t refusedBaud = 0;
  int openFault = 0;
  bool gone = false;
};

struct SerialPortTest : testing::Test {
  FakeDevices devices;
  SerialPort port{devices};
};

TEST_F(SerialPortTest, startsAsTheFirstPortClosedWithTheUsualSettings) {
  EXPECT_EQ(port.CommPort(), 1);
  EXPECT_FALSE(port.PortOpen());
  EXPECT_EQ(port.Settings(), "9600,n,8,1");
  EXPECT_EQ(port.InputMode(), SerialPort::InputModes::Text);
  EXPECT_EQ(port.InBufferCount(), 0U);
}

TEST_F(SerialPortTest, portNumbersOutsideTheSixteenAreRefusedAtOnce) {
  for (const int number : {0, -1, 17, 100000}) {
    EXPECT_EQ(faultNumber<SerialFault>([&] { port.setCommPort(number); }), kSerialInvalidPort);
  }
  port.setCommPort(16);
  EXPECT_EQ(port.CommPort(), 16);
}

TEST_F(SerialPortTest, thePortNumberIsFixedWhileThePortIsOpen) {
  port.setPortOpen(true);
  EXPECT_EQ(faultNumber<SerialFault>([&] { port.setCommPort(2); }), kSerialInvalidWhileOpen);
  port.setPortOpen(false);
  port.setCommPort(2);
  port.setPortOpen(true);
  EXPECT_THAT(devices.log, ElementsAre("open 1 9600n81", "close", "open 2 9600n81"));
}

TEST_F(SerialPortTest, fieldsThatAreLeftOutKeepTheirValues) {
  port.setSettings("19200,E,7,2");
  EXPECT_EQ(port.Settings(), "19200,e,7,2");
  port.setSettings("38400");
  EXPECT_EQ(port.Settings(), "38400,e,7,2");
  port.setSettings("4800, n");
  EXPECT_EQ(port.Settings(), "4800,n,7,2");
  port.setSettings(",,,1.5");
  EXPECT_EQ(port.Settings(), "4800,n,7,1.5");
  port.setSettings("");
  EXPECT_EQ(port.Settings(), "4800,n,7,1.5");
}

/// A blank and a comma leave the field out.
TEST_F(SerialPortTest, knowsFiveParitiesInSmallAndCapitalLettersAndNoOtherCharacter) {
  const std::string known = "emnosEMNOS";
  const std::string leftOut = " ,";
  for (int code = 1; code < 256; ++code) {
    const char parity = static_cast<char>(code);
    if (leftOut.find(parity) != std::string::npos) {
      continue;
    }
    port.setSettings(std::string("9600,") + parity);
    const auto place = known.find(parity);
    if (place == std::string::npos) {
      EXPECT_EQ(faultNumber<SerialFault>([&] { port.setPortOpen(true); }), kSerialInvalidValue)
          << code;
    } else {
      port.setPortOpen(true);
      EXPECT_EQ(port.Settings(), std::string("9600,") + known[place % 5] + ",8,1");
      port.setPortOpen(false);
    }
  }
}

TEST_F(SerialPortTest, badSettingsAreRefusedWhenThePortIsOpenedAndNotBefore) {
  for (const char* bad : {"0", "-9600", "fast", "9600x", "9600,x", "9600,nn", "9600,n,3",
                          "9600,n,9", "9600,n,8,3", "9600,n,8,1,1", "99999999999", "96 00"}) {
    port.setSettings(bad);
    EXPECT_EQ(port.Settings(), bad);
    EXPECT_EQ(faultNumber<SerialFault>([&] { port.setPortOpen(true); }), kSerialInvalidValue)
        << bad;
    EXPECT_FALSE(port.PortOpen());
  }
  port.setSettings("4800");
  port.setPortOpen(true);
  EXPECT_THAT(devices.log, ElementsAre("open 1 4800n81"));
}

TEST_F(SerialPortTest, settingsOfAnOpenPortTakeEffectOrThrowAtOnce) {
  port.setPortOpen(true);
  port.setSettings("115200");
  EXPECT_THAT(devices.log, ElementsAre("open 1 9600n81", "configure 115200n81"));
  EXPECT_EQ(faultNumber<SerialFault>([&] { port.setSettings("9600,?"); }), kSerialInvalidValue);
  devices.refusedBaud = 123;
  EXPECT_EQ(faultNumber<SerialFault>([&] { port.setSettings("123"); }), kSerialInvalidValue);
  EXPECT_EQ(port.Settings(), "115200,n,8,1");
}

TEST_F(SerialPortTest, openingTwiceThrowsAndClosingTwiceDoesNot) {
  port.setPortOpen(true);
  EXPECT_EQ(faultNumber<SerialFault>([&] { port.setPortOpen(true); }), kSerialAlreadyOpen);
  EXPECT_TRUE(port.PortOpen());
  port.setPortOpen(false);
  port.setPortOpen(false);
  EXPECT_THAT(devices.log, ElementsAre("open 1 9600n81", "close"));
}

TEST_F(SerialPortTest, aPortThatCannotBeOpenedStaysClosed) {
  devices.openFault = kSerialUnavailable;
  EXPECT_EQ(faultNumber<SerialFault>([&] { port.setPortOpen(true); }), kSerialUnavailable);
  EXPECT_FALSE(port.PortOpen());
}

TEST_F(SerialPortTest, aClosedPortNeitherTakesNorGivesBytes) {
  EXPECT_EQ(faultNumber<SerialFault>([&] { port.Output("x"); }), kSerialNotOpen);
  EXPECT_EQ(faultNumber<SerialFault>([&] { (void)port.Input(); }), kSerialNotOpen);
}

TEST_F(SerialPortTest, inputTakesAllThatWaitsInTheQueue) {
  port.setPortOpen(true);
  devices.arriving = "ab";
  EXPECT_EQ(port.InBufferCount(), 2U);
  devices.arriving = std::string("\0c", 2);
  EXPECT_EQ(port.InBufferCount(), 4U);
  EXPECT_EQ(port.Input(), std::string("ab\0c", 4));
  EXPECT_EQ(port.Input(), "");
}

TEST_F(SerialPortTest, theInputModeChangesNoByte) {
  port.setPortOpen(true);
  port.setInputMode(SerialPort::InputModes::Binary);
  devices.arriving = "\xFF\x80";
  EXPECT_EQ(port.Input(), "\xFF\x80");
  EXPECT_EQ(port.InputMode(), SerialPort::InputModes::Binary);
}

TEST_F(SerialPortTest, closingEmptiesTheQueue) {
  port.setPortOpen(true);
  devices.arriving = "old";
  EXPECT_EQ(port.InBufferCount(), 3U);
  port.setPortOpen(false);
  port.setPortOpen(true);
  EXPECT_EQ(port.Input(), "");
}

TEST_F(SerialPortTest, outputWritesBytesAsTheyAreAndNothingForAnEmptyText) {
  port.setPortOpen(true);
  port.Output("*IDN?\r");
  port.Output("");
  EXPECT_THAT(devices.log, ElementsAre("open 1 9600n81", "write *IDN?\r"));
}

TEST_F(SerialPortTest, aDeviceThatVanishesThrowsButStaysOpenUntilItIsClosed) {
  port.setPortOpen(true);
  devices.gone = true;
  EXPECT_EQ(faultNumber<SerialFault>([&] { (void)port.Input(); }), kSerialReadError);
  EXPECT_EQ(faultNumber<SerialFault>([&] { (void)port.InBufferCount(); }), kSerialReadError);
  EXPECT_EQ(faultNumber<SerialFault>([&] { port.Output("x"); }), kSerialUnavailable);
  EXPECT_TRUE(port.PortOpen());
  EXPECT_NO_THROW(port.setPortOpen(false));
  EXPECT_FALSE(port.PortOpen());
}

}  // namespace
}  // namespace lumodevice::io
