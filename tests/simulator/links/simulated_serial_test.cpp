#include "simulator/links/simulated_serial.hpp"

#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "tests/simulator/links/virtual_clock.hpp"

using namespace lumodevice::io;
using namespace std::chrono_literals;
using zansim::Instrument;
using zansim::SerialSocket;
using zansim::SimulatedSerialDevices;

namespace {

constexpr const char* kIdentity = "Ostbrook Instruments,ZAN63200,SIM00001,1.02.3\n";

class SimulatedSerialTest : public testing::Test {
 protected:
  int failureOfOpening(int port, const SerialSettings& settings = {}) {
    try {
      static_cast<void>(devices_.open(port, settings));
    } catch (const SerialFault& fault) {
      return fault.number();
    }
    return 0;
  }

  std::string receivedAfter(SerialLine& line, zansim::Duration span) {
    clock_.wait(span);
    std::string queue;
    line.receive(queue);
    return queue;
  }

  zansim::tests::VirtualClock clock_;
  Instrument instrument_;
  SimulatedSerialDevices devices_{clock_};
};

}  // namespace

TEST_F(SimulatedSerialTest, everyReasonNotToOpenHasItsNumber) {
  devices_.plug(2, instrument_);
  devices_.port(3).state = SerialSocket::State::InUse;
  devices_.port(4).state = SerialSocket::State::Broken;
  EXPECT_EQ(failureOfOpening(1), kSerialInvalidPort);
  EXPECT_EQ(failureOfOpening(0), kSerialInvalidPort);
  EXPECT_EQ(failureOfOpening(17), kSerialInvalidPort);
  EXPECT_EQ(failureOfOpening(2), 0);
  EXPECT_EQ(failureOfOpening(3), kSerialAlreadyOpen);
  EXPECT_EQ(failureOfOpening(4), kSerialUnavailable);
}

TEST_F(SimulatedSerialTest, anOpenPortCannotBeOpenedUntilItIsClosed) {
  devices_.plug(16, instrument_);
  auto line = devices_.open(16, {});
  EXPECT_EQ(failureOfOpening(16), kSerialAlreadyOpen);
  line.reset();
  EXPECT_EQ(failureOfOpening(16), 0);
}

TEST_F(SimulatedSerialTest, settingsThatNoDeviceTakesAreRefused) {
  devices_.plug(1, instrument_);
  for (const SerialSettings& settings :
       {SerialSettings{.baud = 0}, SerialSettings{.baud = -9600},
        SerialSettings{.baud = 10'000'000}, SerialSettings{.parity = 'x'},
        SerialSettings{.dataBits = 4}, SerialSettings{.stopBits = "3"}}) {
    EXPECT_EQ(failureOfOpening(1, settings), kSerialInvalidValue);
  }
  const auto line = devices_.open(1, {});
  EXPECT_THROW(line->configure({.baud = 0}), SerialFault);
}

TEST_F(SimulatedSerialTest, anAnswerArrivesAtTheSpeedOfTheLine) {
  devices_.plug(1, instrument_, 9600);
  const auto line = devices_.open(1, {.baud = 9600});
  line->write(":CHAN?\n");
  const zansim::Duration byte = zansim::Duration(10s) / 9600;
  EXPECT_EQ(receivedAfter(*line, byte * 7), "");
  EXPECT_EQ(receivedAfter(*line, byte), "1");
  EXPECT_EQ(receivedAfter(*line, byte), "\n");
  EXPECT_EQ(receivedAfter(*line, 1s), "");
}

TEST_F(SimulatedSerialTest, writesFollowOneAnotherOnTheLine) {
  devices_.plug(1, instrument_, 1000);
  const auto line = devices_.open(1, {.baud = 1000});
  line->write(":CH");
  line->write("AN?\n");
  EXPECT_EQ(receivedAfter(*line, 79ms), "");
  EXPECT_EQ(receivedAfter(*line, 1ms), "1");
}

TEST_F(SimulatedSerialTest, atTheWrongSpeedOrFrameBytesAreLost) {
  devices_.plug(1, instrument_, 9600);
  for (const SerialSettings& settings :
       {SerialSettings{.baud = 19200}, SerialSettings{.parity = 'e'},
        SerialSettings{.dataBits = 7}}) {
    const auto line = devices_.open(1, settings);
    line->write("*IDN?\n");
    EXPECT_EQ(receivedAfter(*line, 5s), "");
  }
  const auto line = devices_.open(1, {.baud = 19200});
  line->write("*IDN?\n");
  line->configure({.baud = 9600});
  EXPECT_EQ(receivedAfter(*line, 5s), "");
  line->write("*IDN?\r");
  EXPECT_EQ(receivedAfter(*line, 5s), kIdentity);
}

TEST_F(SimulatedSerialTest, aUsbVirtualPortTakesAnySettingsAndAnswersAtOnce) {
  devices_.plug(5, instrument_);
  const auto line = devices_.open(5, {.baud = 4800, .parity = 'o', .dataBits = 7});
  line->write("*IDN?\n*RDT?\n");
  EXPECT_EQ(receivedAfter(*line, 0s),
            std::string(kIdentity) + "2021L,2021R,0,2040,2040,2041,2050,2030\n");
}

TEST_F(SimulatedSerialTest, nobodyAnswersOnAPortWithoutInstrument) {
  devices_.port(1).state = SerialSocket::State::Free;
  const auto line = devices_.open(1, {});
  line->write("*IDN?\n");
  EXPECT_EQ(receivedAfter(*line, 5s), "");
}

TEST_F(SimulatedSerialTest, aLineThatVanishesFails) {
  devices_.plug(1, instrument_);
  instrument_.faults.add("vanish=1");
  const auto line = devices_.open(1, {});
  line->write(":CHAN?\n");
  EXPECT_EQ(receivedAfter(*line, 0s), "1\n");
  std::string queue;
  try {
    line->receive(queue);
    ADD_FAILURE() << "the line is still there";
  } catch (const SerialFault& fault) {
    EXPECT_EQ(fault.number(), kSerialReadError);
  }
  try {
    line->write("*IDN?\n");
    ADD_FAILURE() << "the line is still there";
  } catch (const SerialFault& fault) {
    EXPECT_EQ(fault.number(), kSerialUnavailable);
  }
  EXPECT_EQ(failureOfOpening(1), kSerialAlreadyOpen);
}

TEST_F(SimulatedSerialTest, twoPortsLeadToTheSameInstrument) {
  devices_.plug(1, instrument_);
  devices_.plug(2, instrument_);
  const auto first = devices_.open(1, {});
  const auto second = devices_.open(2, {});
  first->write(":CHAN 3\n");
  second->write(":CHAN?\n");
  EXPECT_EQ(receivedAfter(*second, 0s), "3\n");
  EXPECT_EQ(receivedAfter(*first, 0s), "");
}

TEST_F(SimulatedSerialTest, aPictureArrivesWholeAtTheSpeedOfTheLine) {
  devices_.plug(1, instrument_, 115200);
  const auto line = devices_.open(1, {.baud = 115200});
  line->write(":DISP:COL?\n");
  const zansim::Duration byte = zansim::Duration(10s) / 115200;
  std::string picture = receivedAfter(*line, byte * (11 + 100'000));
  EXPECT_EQ(picture.size(), 100'000U);
  EXPECT_EQ(picture.substr(0, 10), "#6230454BM");
  picture += receivedAfter(*line, byte * 130'463);
  EXPECT_EQ(picture.size(), 230'463U);
  EXPECT_EQ(picture.back(), '\n');
  EXPECT_EQ(receivedAfter(*line, 1s), "");
}
