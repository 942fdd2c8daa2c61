#include "simulator/links/simulated_visa.hpp"

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "tests/simulator/links/virtual_clock.hpp"

using namespace lumodevice::io;
using namespace std::chrono_literals;
using zansim::Error;
using zansim::Instrument;
using zansim::SimulatedVisa;
using zansim::VisaBench;

namespace {

constexpr const char* kUsb = "USB0::0x5A41::0x0200::SIM00001::INSTR";
constexpr const char* kIdentity = "Ostbrook Instruments,ZAN63200,SIM00001,1.02.3\n";

class SimulatedVisaTest : public testing::Test {
 protected:
  SimulatedVisaTest() {
    bench_.addUsual(instrument_);
    visa_.viOpenDefaultRM(manager_);
  }

  ViSession open(const std::string& name, std::uint32_t mode = VI_NO_LOCK) {
    ViSession session = 0;
    EXPECT_EQ(visa_.viOpen(manager_, name, mode, 1, session), VI_SUCCESS) << name;
    return session;
  }

  ViStatus write(ViSession session, std::string_view data) {
    std::uint32_t count = 0;
    const ViStatus status = visa_.viWrite(session, data, count);
    EXPECT_EQ(count, status == VI_SUCCESS ? data.size() : 0);
    return status;
  }

  struct Read {
    ViStatus status;
    std::string text;
  };
  Read read(ViSession session, std::size_t most = 4096) {
    std::string buffer(most, '\0');
    std::uint32_t count = 99;
    const ViStatus status = visa_.viRead(session, buffer, count);
    return {status, buffer.substr(0, count)};
  }

  void expectRead(ViSession session, ViStatus status, const std::string& text,
                  std::size_t most = 4096) {
    const Read result = read(session, most);
    EXPECT_EQ(result.status, status);
    EXPECT_EQ(result.text, text);
  }

  zansim::tests::VirtualClock clock_;
  Instrument instrument_;
  VisaBench bench_{clock_};
  SimulatedVisa visa_{bench_};
  ViSession manager_ = 0;
};

}  // namespace

TEST_F(SimulatedVisaTest, findsItsResourcesInOrder) {
  bench_.add("GPIB0::5::INSTR", "GPIB0 (Interface)", &instrument_);
  ViFindList list = 0;
  std::uint32_t count = 0;
  std::string name;
  ASSERT_EQ(visa_.viFindRsrc(manager_, "?*INSTR", list, count, name), VI_SUCCESS);
  EXPECT_EQ(count, 3U);
  EXPECT_EQ(name, "ASRL1::INSTR");
  ASSERT_EQ(visa_.viFindNext(list, name), VI_SUCCESS);
  EXPECT_EQ(name, kUsb);
  ASSERT_EQ(visa_.viFindNext(list, name), VI_SUCCESS);
  EXPECT_EQ(name, "GPIB0::5::INSTR");
  EXPECT_EQ(visa_.viFindNext(list, name), VI_ERROR_RSRC_NFOUND);
  EXPECT_EQ(name, "GPIB0::5::INSTR");
  EXPECT_EQ(visa_.viClose(list), VI_SUCCESS);
  EXPECT_EQ(visa_.viFindNext(list, name), VI_ERROR_INV_OBJECT);
}

TEST_F(SimulatedVisaTest, findingNothingOrByNonsenseIsAnError) {
  ViFindList list = 77;
  std::uint32_t count = 0;
  std::string name;
  EXPECT_EQ(visa_.viFindRsrc(manager_, "TCPIP?*", list, count, name), VI_ERROR_RSRC_NFOUND);
  EXPECT_EQ(visa_.viFindRsrc(manager_, "(", list, count, name), VI_ERROR_INV_EXPR);
  EXPECT_EQ(visa_.viFindRsrc(manager_ + 50, "?*", list, count, name), VI_ERROR_INV_OBJECT);
  EXPECT_EQ(list, 77U);
}

TEST_F(SimulatedVisaTest, opensByAnyWayOfWritingTheName) {
  for (const char* const name : {kUsb, "usb0::0x5a41::0x0200::sim00001::instr",
                                 "USB::0x5A41::0x0200::SIM00001", "ASRL1", "asrl1::INSTR   "}) {
    open(name);
  }
  ViSession session = 0;
  EXPECT_EQ(visa_.viOpen(manager_, "USB0::1::2::3::INSTR", 0, 1, session), VI_ERROR_RSRC_NFOUND);
  EXPECT_EQ(visa_.viOpen(manager_, "nonsense", 0, 1, session), VI_ERROR_INV_RSRC_NAME);
  EXPECT_EQ(visa_.viOpen(manager_, "", 0, 1, session), VI_ERROR_INV_RSRC_NAME);
  EXPECT_EQ(visa_.viOpen(manager_, kUsb, 64, 1, session), VI_ERROR_INV_ACC_MODE);
  EXPECT_EQ(visa_.viOpen(0, kUsb, 0, 1, session), VI_ERROR_INV_OBJECT);
}

TEST_F(SimulatedVisaTest, aQueryIsAnsweredUpToItsEnd) {
  const ViSession session = open(kUsb, VI_EXCLUSIVE_LOCK);
  EXPECT_EQ(write(session, "*IDN?\n"), VI_SUCCESS);
  expectRead(session, VI_SUCCESS, kIdentity);
  EXPECT_EQ(clock_.now(), 0s);
}

TEST_F(SimulatedVisaTest, endBeatsTerminationCharacterBeatsCount) {
  const ViSession session = open(kUsb);
  write(session, ":CHAN?");
  expectRead(session, VI_SUCCESS, "1\n", 2);
  visa_.viSetAttribute(session, VI_ATTR_TERMCHAR_EN, 1);
  write(session, ":CHAN?");
  expectRead(session, VI_SUCCESS, "1\n", 2);
  visa_.viSetAttribute(session, VI_ATTR_TERMCHAR, ',');
  write(session, ":CHAN? LIST");
  expectRead(session, VI_SUCCESS_TERM_CHAR, "1,", 2);
  expectRead(session, VI_SUCCESS_MAX_CNT, "2", 1);
  expectRead(session, VI_SUCCESS_TERM_CHAR, ",", 1);
  visa_.viSetAttribute(session, VI_ATTR_TERMCHAR_EN, 0);
  expectRead(session, VI_SUCCESS, "3,4,5,6,7\n");
}

TEST_F(SimulatedVisaTest, anAnswerLongerThanTheBufferGoesOnWithTheNextRead) {
  const ViSession session = open(kUsb);
  instrument_.faults.add("long=100");
  write(session, "*IDN?");
  const Read first = read(session, 80);
  EXPECT_EQ(first.status, VI_SUCCESS_MAX_CNT);
  EXPECT_EQ(first.text.size(), 80U);
  const Read second = read(session, 80);
  EXPECT_EQ(second.status, VI_SUCCESS);
  EXPECT_EQ(second.text, std::string(19, 'X') + "\n");
}

TEST_F(SimulatedVisaTest, aReadInVainWaitsExactlyTheTimeOut) {
  const ViSession session = open(kUsb);
  expectRead(session, VI_ERROR_TMO, "");
  EXPECT_EQ(clock_.now(), 2000ms);
  EXPECT_EQ(instrument_.mainframe.status().take(), Error::QueryUnterminated);
  visa_.viSetAttribute(session, VI_ATTR_TMO_VALUE, 150);
  expectRead(session, VI_ERROR_TMO, "");
  EXPECT_EQ(clock_.now(), 2150ms);
  visa_.viSetAttribute(session, VI_ATTR_TMO_VALUE, 0);
  expectRead(session, VI_ERROR_TMO, "");
  EXPECT_EQ(clock_.now(), 2150ms);
  visa_.viSetAttribute(session, VI_ATTR_TMO_VALUE, VI_TMO_INFINITE);
  expectRead(session, VI_ERROR_TMO, "");
  EXPECT_GT(clock_.now(), 1h);
}

TEST_F(SimulatedVisaTest, aLateAnswerEndsTheReadWhenItComes) {
  instrument_.faults.add("late=500");
  const ViSession session = open(kUsb);
  write(session, ":CHAN?");
  expectRead(session, VI_SUCCESS, "1\n");
  EXPECT_EQ(clock_.now(), 500ms);
}

TEST_F(SimulatedVisaTest, theTimeOutIsTotalAndKeepsWhatArrived) {
  instrument_.faults.add("pieces=1 gap=100");
  const ViSession session = open(kUsb);
  visa_.viSetAttribute(session, VI_ATTR_TMO_VALUE, 250);
  write(session, "*RDT?");
  expectRead(session, VI_ERROR_TMO, "202");
  EXPECT_EQ(clock_.now(), 250ms);
  expectRead(session, VI_ERROR_TMO, "1L,");
  EXPECT_EQ(clock_.now(), 500ms);
}

TEST_F(SimulatedVisaTest, anAnswerWithoutEndTimesOutWithItsBytes) {
  instrument_.faults.add("unterminated");
  const ViSession session = open(kUsb);
  write(session, ":CHAN?");
  expectRead(session, VI_ERROR_TMO, "1");
  EXPECT_EQ(instrument_.mainframe.status().take(), Error::None);
}

TEST_F(SimulatedVisaTest, withoutEndAMessageNeedsItsTerminator) {
  const ViSession session = open(kUsb);
  visa_.viSetAttribute(session, VI_ATTR_SEND_END_EN, 0);
  write(session, ":CHA");
  write(session, "N?");
  expectRead(session, VI_ERROR_TMO, "");
  write(session, "\r");
  expectRead(session, VI_SUCCESS, "1\n");
}

TEST_F(SimulatedVisaTest, attributesHaveDefaultsWidthsAndLimits) {
  const ViSession usb = open(kUsb);
  const ViSession serial = open("ASRL1::INSTR");
  struct Case {
    ViAttr attribute;
    std::uint32_t value;
    int width;
  };
  for (const Case& c : {Case{VI_ATTR_TMO_VALUE, 2000, 4}, Case{VI_ATTR_TERMCHAR, '\n', 1},
                        Case{VI_ATTR_TERMCHAR_EN, 0, 2}, Case{VI_ATTR_SEND_END_EN, 1, 2},
                        Case{VI_ATTR_ASRL_END_IN, 2, 2}, Case{VI_ATTR_ASRL_END_OUT, 0, 2},
                        Case{0x3FFF0021, 9600, 4}}) {
    std::uint32_t value = 99;
    int width = 0;
    EXPECT_EQ(visa_.numericAttribute(serial, c.attribute, value, width), VI_SUCCESS) << c.attribute;
    EXPECT_EQ(value, c.value) << c.attribute;
    EXPECT_EQ(width, c.width) << c.attribute;
  }
  EXPECT_EQ(visa_.viSetAttribute(usb, VI_ATTR_TERMCHAR, 0x100), VI_ERROR_NSUP_ATTR_STATE);
  EXPECT_EQ(visa_.viSetAttribute(serial, VI_ATTR_ASRL_END_IN, 3), VI_ERROR_NSUP_ATTR_STATE);
  EXPECT_EQ(visa_.viSetAttribute(usb, VI_ATTR_INTF_INST_NAME, 1), VI_ERROR_ATTR_READONLY);
  EXPECT_EQ(visa_.viSetAttribute(usb, 0x3FFF0021, 9600), VI_ERROR_NSUP_ATTR);
  EXPECT_EQ(visa_.viSetAttribute(manager_, VI_ATTR_TMO_VALUE, 1), VI_ERROR_NSUP_ATTR);
  EXPECT_EQ(visa_.viSetAttribute(1234, VI_ATTR_TMO_VALUE, 1), VI_ERROR_INV_OBJECT);
}

TEST_F(SimulatedVisaTest, minusOneMeansTrue) {
  const ViSession session = open(kUsb);
  EXPECT_EQ(visa_.viSetAttribute(session, VI_ATTR_TERMCHAR_EN, 0xFFFFFFFF), VI_SUCCESS);
  std::uint32_t value = 0;
  int width = 0;
  visa_.numericAttribute(session, VI_ATTR_TERMCHAR_EN, value, width);
  EXPECT_EQ(value, 1U);
}

TEST_F(SimulatedVisaTest, serialEndModesOfTheUsbPortCanBeRefused) {
  const ViSession session = open(kUsb);
  EXPECT_EQ(visa_.viSetAttribute(session, VI_ATTR_ASRL_END_IN, 0), VI_SUCCESS);
  bench_.resources().back()->takesSerialEndModes = false;
  EXPECT_EQ(visa_.viSetAttribute(session, VI_ATTR_ASRL_END_IN, 0), VI_ERROR_NSUP_ATTR);
}

TEST_F(SimulatedVisaTest, textAttributes) {
  const ViSession session = open(kUsb);
  std::string text;
  EXPECT_EQ(visa_.viGetAttribute(session, VI_ATTR_INTF_INST_NAME, text), VI_SUCCESS);
  EXPECT_EQ(text, "USB0 (ZAN DC Electronic Load)");
  EXPECT_EQ(visa_.viGetAttribute(session, 0xBFFF0002, text), VI_SUCCESS);
  EXPECT_EQ(text, kUsb);
  EXPECT_EQ(visa_.viGetAttribute(session, 0xBFFF0001, text), VI_SUCCESS);
  EXPECT_EQ(text, "INSTR");
  EXPECT_EQ(visa_.viGetAttribute(session, VI_ATTR_TMO_VALUE, text), VI_ERROR_NSUP_ATTR);
  EXPECT_EQ(visa_.viGetAttribute(manager_, VI_ATTR_INTF_INST_NAME, text), VI_ERROR_NSUP_ATTR);
  EXPECT_EQ(visa_.viGetAttribute(4711, VI_ATTR_INTF_INST_NAME, text), VI_ERROR_INV_OBJECT);
}

TEST_F(SimulatedVisaTest, aSerialResourceEndsAtTheTerminationCharacterAlone) {
  bench_.add("ASRL3::INSTR", "ASRL3 (ZAN USB Port)", &instrument_);
  const ViSession session = open("ASRL3");
  write(session, ":CHAN?\n:CHAN?\n");
  expectRead(session, VI_SUCCESS_TERM_CHAR, "1\n");
  visa_.viSetAttribute(session, VI_ATTR_TERMCHAR, '\r');
  expectRead(session, VI_ERROR_TMO, "1\n");
  visa_.viSetAttribute(session, VI_ATTR_ASRL_END_IN, 0);
  write(session, ":CHAN?\n");
  expectRead(session, VI_SUCCESS_MAX_CNT, "1", 1);
  visa_.viSetAttribute(session, VI_ATTR_ASRL_END_OUT, 2);
  write(session, ":CHAN?");
  expectRead(session, VI_ERROR_TMO, "\n1\n");
}

TEST_F(SimulatedVisaTest, nobodyAnswersOnAnUnrelatedPort) {
  const ViSession session = open("ASRL1");
  EXPECT_EQ(bench_.resources().front()->bytesWritten, 0U);
  EXPECT_EQ(write(session, "*IDN?\r"), VI_SUCCESS);
  EXPECT_EQ(bench_.resources().front()->bytesWritten, 6U);
  expectRead(session, VI_ERROR_TMO, "");
  EXPECT_EQ(clock_.now(), 2000ms);
}

TEST_F(SimulatedVisaTest, closingAManagerClosesAllThatItOpened) {
  const ViSession session = open(kUsb);
  ViFindList list = 0;
  std::uint32_t count = 0;
  std::string name;
  visa_.viFindRsrc(manager_, "?*", list, count, name);
  EXPECT_EQ(visa_.openObjects(), 3U);
  EXPECT_EQ(visa_.viClose(manager_), VI_SUCCESS);
  EXPECT_EQ(visa_.openObjects(), 0U);
  EXPECT_EQ(visa_.viClose(session), VI_ERROR_INV_OBJECT);
  EXPECT_EQ(visa_.viClose(list), VI_ERROR_INV_OBJECT);
  EXPECT_EQ(visa_.viClose(0), VI_WARN_NULL_OBJECT);
}

TEST_F(SimulatedVisaTest, deadHandlesAreRefusedAndHandlesAreNotUsedTwice) {
  const ViSession session = open(kUsb);
  visa_.viClose(session);
  EXPECT_EQ(write(session, "*IDN?"), VI_ERROR_INV_OBJECT);
  expectRead(session, VI_ERROR_INV_OBJECT, "");
  EXPECT_NE(open(kUsb), session);
  EXPECT_EQ(write(manager_, "*IDN?"), VI_ERROR_INV_OBJECT);
}

TEST_F(SimulatedVisaTest, anExclusiveLockKeepsOtherProgramsOut) {
  const ViSession locked = open(kUsb, VI_EXCLUSIVE_LOCK);
  SimulatedVisa other(bench_);
  ViSession manager = 0;
  ViSession session = 0;
  other.viOpenDefaultRM(manager);
  EXPECT_EQ(other.viOpen(manager, kUsb, VI_EXCLUSIVE_LOCK, 30, session), VI_ERROR_RSRC_LOCKED);
  EXPECT_EQ(clock_.now(), 30ms);
  ASSERT_EQ(other.viOpen(manager, kUsb, VI_NO_LOCK, 1, session), VI_SUCCESS);
  std::uint32_t count = 0;
  EXPECT_EQ(other.viWrite(session, "*IDN?", count), VI_ERROR_RSRC_LOCKED);
  visa_.viClose(locked);
  EXPECT_EQ(other.viWrite(session, "*CLS", count), VI_SUCCESS);
  EXPECT_EQ(other.viOpen(manager, kUsb, VI_EXCLUSIVE_LOCK, 1, session), VI_SUCCESS);
  EXPECT_EQ(write(open(kUsb), "*IDN?"), VI_ERROR_RSRC_LOCKED);
}

TEST_F(SimulatedVisaTest, anExclusiveLockKeepsFurtherSessionsOfTheSameProgramOut) {
  const ViSession locked = open(kUsb, VI_EXCLUSIVE_LOCK);
  const ViSession plain = open(kUsb);
  ViSession second = 0;
  EXPECT_EQ(visa_.viOpen(manager_, kUsb, VI_EXCLUSIVE_LOCK, 30, second), VI_ERROR_RSRC_LOCKED);
  EXPECT_EQ(write(plain, "*IDN?"), VI_ERROR_RSRC_LOCKED);
  EXPECT_EQ(write(locked, "*IDN?"), VI_SUCCESS);
  expectRead(plain, VI_ERROR_RSRC_LOCKED, "");
  EXPECT_EQ(visa_.discardUnread(plain), "");
  expectRead(locked, VI_SUCCESS, kIdentity);
  visa_.viClose(plain);
  EXPECT_EQ(visa_.viOpen(manager_, kUsb, VI_EXCLUSIVE_LOCK, 1, second), VI_ERROR_RSRC_LOCKED);
  visa_.viClose(locked);
  EXPECT_EQ(visa_.viOpen(manager_, kUsb, VI_EXCLUSIVE_LOCK, 1, second), VI_SUCCESS);
}

TEST_F(SimulatedVisaTest, whatHasArrivedCanBeDroppedAndIsNotMissedByTheInstrument) {
  instrument_.faults.add("late=50 every=2");
  const ViSession session = open(kUsb);
  EXPECT_EQ(visa_.discardUnread(session), "");
  write(session, "*IDN?");
  EXPECT_EQ(visa_.discardUnread(session), kIdentity);
  write(session, ":CHAN?");
  EXPECT_EQ(visa_.discardUnread(session), "") << "it is still on its way";
  clock_.wait(50ms);
  EXPECT_EQ(visa_.discardUnread(session), "1\n");
  write(session, ":SYST:ERR?");
  expectRead(session, VI_SUCCESS, "0,\"No error\"\n");
}

TEST_F(SimulatedVisaTest, aProgramThatEndsGivesItsLocksBack) {
  {
    SimulatedVisa other(bench_);
    ViSession manager = 0;
    ViSession session = 0;
    other.viOpenDefaultRM(manager);
    ASSERT_EQ(other.viOpen(manager, kUsb, VI_EXCLUSIVE_LOCK, 1, session), VI_SUCCESS);
  }
  open(kUsb, VI_EXCLUSIVE_LOCK);
}

TEST_F(SimulatedVisaTest, aVanishedLinkIsLostAndNotFoundAgain) {
  instrument_.faults.add("vanish=1");
  const ViSession session = open(kUsb);
  write(session, ":CHAN?");
  expectRead(session, VI_SUCCESS, "1\n");
  EXPECT_EQ(write(session, ":CHAN?"), VI_ERROR_CONN_LOST);
  expectRead(session, VI_ERROR_CONN_LOST, "");
  ViSession again = 0;
  EXPECT_EQ(visa_.viOpen(manager_, kUsb, VI_NO_LOCK, 1, again), VI_ERROR_RSRC_NFOUND);
  ViFindList list = 0;
  std::uint32_t count = 0;
  std::string name;
  EXPECT_EQ(visa_.viFindRsrc(manager_, "USB?*", list, count, name), VI_ERROR_RSRC_NFOUND);
  EXPECT_EQ(visa_.viClose(session), VI_SUCCESS);
}

TEST_F(SimulatedVisaTest, twoInstrumentsKeepTheirStatesApart) {
  Instrument second;
  bench_.add("GPIB0::7::INSTR", "GPIB0 (Interface)", &second);
  const ViSession usb = open(kUsb);
  const ViSession gpib = open("GPIB::7");
  write(usb, ":CHAN 2");
  write(gpib, ":CHAN 5;:NONE");
  write(usb, ":CHAN?");
  write(gpib, ":CHAN?");
  expectRead(usb, VI_SUCCESS, "2\n");
  expectRead(gpib, VI_SUCCESS, "5\n");
  EXPECT_EQ(instrument_.mainframe.status().count(), 0U);
  EXPECT_EQ(second.mainframe.status().count(), 1U);
}

TEST_F(SimulatedVisaTest, emptyReadsAndWritesAreLegal) {
  const ViSession session = open(kUsb);
  EXPECT_EQ(write(session, ""), VI_SUCCESS);
  expectRead(session, VI_SUCCESS, "", 0);
}

TEST(VisaBench, aResourceOfAnUnknownInterfaceIsRefused) {
  zansim::tests::VirtualClock clock;
  VisaBench bench(clock);
  EXPECT_THROW(bench.add("TCPIP0::host::5::SOCKET", "TCPIP0"), std::invalid_argument);
}

TEST_F(SimulatedVisaTest, aPictureIsReadWholeWhileTheTerminationCharacterIsOff) {
  const ViSession session = open(kUsb);
  visa_.viSetAttribute(session, VI_ATTR_TERMCHAR_EN, 0);
  write(session, ":DISP:COL?");
  const Read first = read(session, 1000);
  EXPECT_EQ(first.status, VI_SUCCESS_MAX_CNT);
  const Read rest = read(session, 300'000);
  EXPECT_EQ(rest.status, VI_SUCCESS);
  EXPECT_EQ(first.text.substr(0, 10), "#6230454BM");
  EXPECT_EQ(first.text.size() + rest.text.size(), 8U + 230454 + 1);
}

TEST_F(SimulatedVisaTest, aPictureIsCutAtEachTerminationCharacterWhileItIsOn) {
  const ViSession session = open(kUsb);
  write(session, ":DISP:OUTP?");
  const Read whole = read(session, 300'000);
  visa_.viSetAttribute(session, VI_ATTR_TERMCHAR_EN, 1);
  visa_.viSetAttribute(session, VI_ATTR_TERMCHAR, '6');
  write(session, ":DISP:OUTP?");
  std::string all;
  Read part = read(session, 300'000);
  EXPECT_EQ(part.text, "#6");
  while (part.status == VI_SUCCESS_TERM_CHAR) {
    ASSERT_EQ(part.text.find('6'), part.text.size() - 1);
    all += part.text;
    part = read(session, 300'000);
  }
  EXPECT_EQ(part.status, VI_SUCCESS);
  EXPECT_TRUE(all + part.text == whole.text);
}
