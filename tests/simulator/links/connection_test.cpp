#include "simulator/links/connection.hpp"

#include <algorithm>
#include <gmock/gmock.h>
#include <stdexcept>
#include <string>
#include <vector>

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::ThrowsMessage;
using zansim::Connection;
using zansim::Duration;
using zansim::Error;
using zansim::Faults;
using zansim::Instrument;

namespace {

constexpr const char* kIdentity = "Ostbrook Instruments,ZAN63200,SIM00001,1.02.3\n";

std::string take(Connection& connection, Duration now) {
  char buffer[4096];
  const Connection::Taken taken = connection.take(buffer, now);
  return {buffer, taken.count};
}

/// The answer to ":CHAN?" under a fault, taken after ten seconds.
std::string answerUnder(std::string_view fault) {
  Instrument instrument;
  instrument.faults.add(fault);
  Connection connection(instrument, Connection::Kind::Stream);
  connection.feed("*RDT?\n", false, 0s);
  return take(connection, 10s);
}

}  // namespace

TEST(Connection, answersEndInOneLineFeed) {
  Instrument instrument;
  Connection connection(instrument, Connection::Kind::Stream);
  connection.feed("*IDN?\r\n", false, 0s);
  EXPECT_EQ(take(connection, 0s), kIdentity);
  EXPECT_EQ(take(connection, 1h), "");
}

TEST(Connection, bytesMayComeOneByOne) {
  Instrument instrument;
  Connection connection(instrument, Connection::Kind::Stream);
  for (const char byte : std::string("*IDN?\n")) {
    EXPECT_EQ(take(connection, 0s), "");
    connection.feed({&byte, 1}, false, 0s);
  }
  EXPECT_EQ(take(connection, 0s), kIdentity);
}

TEST(Connection, takingStopsAtTheBuffersEndTheAnswersEndAndTheStopCharacter) {
  Instrument instrument;
  Connection connection(instrument, Connection::Kind::Stream);
  connection.feed("*RDT?\n:CHAN?\n", false, 0s);
  char buffer[80];
  Connection::Taken taken = connection.take(std::span(buffer).first(3), 0s);
  EXPECT_EQ(taken.count, 3U);
  EXPECT_FALSE(taken.end);
  taken = connection.take(buffer, 0s, ',');
  EXPECT_EQ(std::string(buffer, taken.count), "1L,");
  EXPECT_TRUE(taken.stop);
  taken = connection.take(buffer, 0s);
  EXPECT_EQ(std::string(buffer, taken.count), "2021R,0,2040,2040,2041,2050,2030\n");
  EXPECT_TRUE(taken.end);
  EXPECT_EQ(take(connection, 0s), "1\n");
}

TEST(Connection, aNewMessageDiscardsAnUnreadAnswerOnMessageBasedLinksAlone) {
  Instrument instrument;
  Connection usb(instrument, Connection::Kind::MessageBased);
  usb.feed("*IDN?\r", false, 0s);
  usb.feed("\n", true, 0s);
  usb.feed(":CHAN?", true, 0s);
  EXPECT_EQ(take(usb, 0s), "1\n");
  EXPECT_EQ(instrument.mainframe.status().take(), Error::QueryInterrupted);

  Connection serial(instrument, Connection::Kind::Stream);
  serial.feed("*IDN?\n:CHAN?\n", false, 0s);
  EXPECT_EQ(take(serial, 0s), kIdentity);
  EXPECT_EQ(take(serial, 0s), "1\n");
  EXPECT_EQ(instrument.mainframe.status().take(), Error::None);
}

TEST(Connection, anAnswerReadInPartIsDiscardedTooAndALateOneDoesNotHoldUpTheNext) {
  Instrument instrument;
  instrument.faults.add("late=500 every=2 after=1");
  instrument.faults.add("pieces=4 every=2");
  Connection usb(instrument, Connection::Kind::MessageBased);
  usb.feed("*CLS;*IDN?\n", true, 0s);
  EXPECT_EQ(take(usb, 0s), kIdentity);
  usb.feed("*IDN?\n", true, 0s);
  EXPECT_EQ(take(usb, 0s), "Ostb");
  usb.feed(":CHAN?\n", true, 0s);
  EXPECT_EQ(usb.nextDue(), Duration(500ms));
  usb.feed("*RST\n", true, 0s);
  EXPECT_EQ(usb.nextDue(), std::nullopt);
  EXPECT_EQ(instrument.mainframe.status().count(), 2U);
}

TEST(Connection, readingWithoutAQueryIsAnErrorOfMessageBasedLinks) {
  Instrument instrument;
  Connection usb(instrument, Connection::Kind::MessageBased);
  usb.readInVain();
  EXPECT_EQ(instrument.mainframe.status().take(), Error::QueryUnterminated);
  instrument.faults.add("silent");
  usb.feed("*IDN?\n", true, 0s);
  usb.readInVain();
  EXPECT_EQ(instrument.mainframe.status().take(), Error::None);
}

TEST(Connection, brokenInputIsReportedInTheErrorQueue) {
  Instrument instrument;
  Connection connection(instrument, Connection::Kind::Stream);
  connection.feed(std::string(5000, 'x') + "\nA #2x\n", false, 0s);
  EXPECT_EQ(instrument.mainframe.status().take(), Error::InputOverrun);
  EXPECT_EQ(instrument.mainframe.status().take(), Error::InvalidBlock);
}

TEST(Connection, aSerialLineBringsByteAfterByte) {
  Instrument instrument;
  Connection connection(instrument, Connection::Kind::Stream, 1ms);
  connection.feed(":CHAN?\n:CHAN? LIST\n", false, 10ms);
  EXPECT_EQ(connection.nextDue(), Duration(11ms));
  EXPECT_EQ(take(connection, 10999us), "");
  EXPECT_EQ(take(connection, 11ms), "1");
  EXPECT_EQ(take(connection, 12ms), "\n");
  EXPECT_EQ(take(connection, 14ms), "1,");
  EXPECT_EQ(take(connection, 26ms), "2,3,4,5,6,7\n");
}

TEST(Connection, eachMessageIsShownWithItsAnswer) {
  Instrument instrument;
  std::vector<std::string> seen;
  instrument.onMessage = [&](std::string_view message, std::string_view answer) {
    seen.push_back(std::string(message) + "|" + std::string(answer));
  };
  Connection connection(instrument, Connection::Kind::Stream);
  connection.feed(":CHAN 2\n:CHAN?\r", false, 0s);
  EXPECT_EQ(seen, (std::vector<std::string>{":CHAN 2|", ":CHAN?|2"}));
}

TEST(Faults, silentLateAndPieces) {
  EXPECT_EQ(answerUnder("silent"), "");

  Instrument instrument;
  instrument.faults.add("late=500");
  instrument.faults.add("pieces=20 gap=30");
  Connection connection(instrument, Connection::Kind::Stream);
  connection.feed("*RDT?\n", false, 1s);
  EXPECT_EQ(take(connection, 1499ms), "");
  EXPECT_EQ(take(connection, 1500ms), "2021L,2021R,0,2040,2");
  EXPECT_EQ(take(connection, 1529ms), "");
  EXPECT_EQ(take(connection, 1530ms), "040,2041,2050,2030\n");
}

TEST(Faults, garbledAnswersKeepTheirLengthAndTerminator) {
  const std::string plain = "2021L,2021R,0,2040,2040,2041,2050,2030\n";
  const std::string garbled = answerUnder("garble");
  ASSERT_EQ(garbled.size(), plain.size());
  EXPECT_EQ(garbled.back(), '\n');
  for (std::size_t i = 0; i + 1 < plain.size(); ++i) {
    EXPECT_NE(garbled[i], plain[i]) << i;
  }
}

TEST(Faults, longAndUnterminatedAnswers) {
  const std::string longAnswer = answerUnder("long=200");
  EXPECT_EQ(longAnswer.size(), 200U);
  EXPECT_EQ(longAnswer.substr(0, 40), "2021L,2021R,0,2040,2040,2041,2050,2030XX");
  EXPECT_EQ(longAnswer.back(), '\n');
  EXPECT_EQ(answerUnder("long=5"), "2021L,2021R,0,2040,2040,2041,2050,2030\n");
  EXPECT_EQ(answerUnder("unterminated"), "2021L,2021R,0,2040,2040,2041,2050,2030");
}

TEST(Faults, anAnswerIsCutComesTwiceOrHasSomethingBehindIt) {
  EXPECT_EQ(answerUnder("cut=7"), "2021L,2");
  EXPECT_EQ(answerUnder("cut=0"), "");
  Instrument instrument;
  instrument.faults.add("double on=:CHAN?");
  instrument.faults.add("extra=9.9 gap=20 on=*OPC?");
  Connection connection(instrument, Connection::Kind::Stream);
  connection.feed(":CHAN?\n*OPC?\n", false, 0s);
  EXPECT_EQ(take(connection, 0s), "1\n");
  EXPECT_EQ(take(connection, 0s), "1\n");
  EXPECT_EQ(take(connection, 19ms), "1\n");
  EXPECT_EQ(take(connection, 19ms), "");
  EXPECT_EQ(take(connection, 20ms), "9.9\n");
}

TEST(Faults, anotherIdentityMayHoldCommasAndBlanks) {
  Instrument instrument;
  instrument.faults.add("identity=Somebody, Else,X 1,0 every=1");
  Connection connection(instrument, Connection::Kind::Stream);
  connection.feed("*IDN?;:CHAN?\n:CHAN?\n", false, 0s);
  EXPECT_EQ(take(connection, 0s), "Somebody, Else,X 1,0;1\n");
  EXPECT_EQ(take(connection, 0s), "1\n");
}

TEST(Faults, everyAndAfterChooseTheAnswers) {
  Instrument instrument;
  instrument.faults.add("silent every=3 after=2");
  Connection connection(instrument, Connection::Kind::Stream);
  std::string pattern;
  for (int i = 0; i < 9; ++i) {
    connection.feed(":CHAN?\n", false, 0s);
    pattern += take(connection, 0s).empty() ? '-' : 'x';
  }
  EXPECT_EQ(pattern, "xxxx-xx-x");
}

TEST(Faults, aHeaderChoosesTheQueryAndGoesBeforeAFaultOfAllAnswers) {
  Instrument instrument;
  instrument.faults.add("late=100");
  instrument.faults.add("late=300 on=:chan?");
  instrument.faults.add("silent on=*IDN?");
  Connection connection(instrument, Connection::Kind::Stream);
  connection.feed("*IDN?\n", false, 0s);
  EXPECT_EQ(connection.nextDue(), std::nullopt);
  connection.feed(":CHAN? MAX\n", false, 0s);
  EXPECT_EQ(connection.nextDue(), Duration(300ms));
  EXPECT_EQ(take(connection, 300ms), "7\n");
  connection.feed("*OPC?\n", false, 1s);
  EXPECT_EQ(connection.nextDue(), Duration(1100ms));
}

std::vector<Duration> dueTimes(std::string_view latency) {
  Instrument instrument;
  instrument.faults.addLatency(latency);
  std::vector<Duration> times;
  for (int i = 0; i < 50; ++i) {
    Connection connection(instrument, Connection::Kind::Stream);
    connection.feed(":CHAN?\n", false, 0s);
    times.push_back(connection.nextDue().value_or(-1s));
  }
  return times;
}

TEST(Faults, aLatencyIsFixedOrRandomWithinItsBoundsAndFollowsFromItsSeed) {
  EXPECT_EQ(dueTimes("300"), std::vector<Duration>(50, 300ms));
  EXPECT_EQ(dueTimes(":CHAN?=300"), std::vector<Duration>(50, 300ms));
  EXPECT_EQ(dueTimes(":CHAN=300"), std::vector<Duration>(50, 0ms));
  const std::vector<Duration> random = dueTimes("60-600");
  EXPECT_EQ(random, dueTimes("60-600,seed=1"));
  EXPECT_EQ(random, dueTimes(":CHAN?=60-600"));
  EXPECT_NE(random, dueTimes("60-600,seed=7"));
  EXPECT_GE(*std::ranges::min_element(random), 60ms);
  EXPECT_LE(*std::ranges::max_element(random), 600ms);
  EXPECT_GT(*std::ranges::max_element(random) - *std::ranges::min_element(random), 300ms);
}

TEST(Faults, aLatencyThatIsNoneIsExplained) {
  for (const char* text : {"", "x", "1-", "-1", "9-1", "1-2,seed=", "1,2", ":CHAN?", ":CHAN?=x"}) {
    Faults faults;
    EXPECT_THROW(faults.addLatency(text), std::invalid_argument) << text;
  }
}

TEST(Faults, theLinkVanishesOnceItsLastAnswerWasTaken) {
  Instrument instrument;
  instrument.faults.add("vanish=2");
  Connection connection(instrument, Connection::Kind::Stream);
  connection.feed(":CHAN?\n", false, 0s);
  EXPECT_FALSE(connection.isLost());
  EXPECT_EQ(take(connection, 0s), "1\n");
  connection.feed(":CHAN?\n", false, 0s);
  EXPECT_FALSE(connection.isLost());
  EXPECT_EQ(take(connection, 0s), "1\n");
  EXPECT_TRUE(connection.isLost());
  instrument.faults.clear();
  EXPECT_FALSE(connection.isLost());
}

TEST(Faults, aTextThatIsNoFaultIsExplained) {
  struct Case {
    const char* text;
    const char* why;
  };
  for (const Case& c :
       {Case{"", "is no fault"}, Case{"sulky", "identity=TEXT"}, Case{"late", "needs"},
        Case{"late=", "whole number"}, Case{"late=-1", "whole number"},
        Case{"late=1s", "whole number"}, Case{"late=99999999999", "whole number"},
        Case{"pieces=0", "from 1"}, Case{"silent=1", "takes no"}, Case{"silent every=0", "from 1"},
        Case{"silent never=1", "is no fault"}}) {
    Faults faults;
    EXPECT_THAT([&] { faults.add(c.text); }, ThrowsMessage<std::invalid_argument>(HasSubstr(c.why)))
        << c.text;
  }
}

namespace {

/// All that the links bring of the screen's picture, ten minutes after it was asked for.
std::string pictureUnder(std::string_view fault) {
  Instrument instrument;
  instrument.faults.add(fault);
  Connection connection(instrument, Connection::Kind::MessageBased);
  connection.feed(":DISP:COL?\n", true, 0s);
  std::string all;
  for (std::string part = take(connection, 600s); !part.empty(); part = take(connection, 600s)) {
    all += part;
  }
  return all;
}

}  // namespace

TEST(ConnectionWithPictures, anAnswerIsAsBinaryAsItsBlock) {
  const std::string whole = pictureUnder("late=0");
  EXPECT_EQ(whole.size(), 8U + 230454 + 1);
  EXPECT_EQ(whole.substr(0, 10), "#6230454BM");
  EXPECT_EQ(whole.back(), '\n');
  EXPECT_NE(whole.find('\0'), std::string::npos);
  EXPECT_TRUE(pictureUnder("pieces=1000") == whole);
  EXPECT_TRUE(pictureUnder("pieces=7 gap=1") == whole);
  EXPECT_TRUE(pictureUnder("unterminated") + '\n' == whole);
  EXPECT_TRUE(pictureUnder("long=100") == whole);
}

TEST(ConnectionWithPictures, faultsDisturbBlocksLikeTexts) {
  std::string whole = pictureUnder("late=0");
  const std::string garbled = pictureUnder("garble");
  ASSERT_EQ(garbled.size(), whole.size());
  EXPECT_EQ(garbled.back(), '\n');
  for (std::size_t i = 0; i + 1 < whole.size(); ++i) {
    ASSERT_NE(garbled[i], whole[i]) << i;
  }
  whole.back() = 'X';
  EXPECT_TRUE(pictureUnder("long=230465") == whole + "X\n");
  EXPECT_EQ(pictureUnder("silent"), "");
}

TEST(ConnectionWithPictures, theNextMessageDiscardsWhatWasNotTaken) {
  Instrument instrument;
  Connection connection(instrument, Connection::Kind::MessageBased);
  connection.feed(":DISP:OUTP?\n", true, 0s);
  EXPECT_EQ(take(connection, 0s).substr(0, 8), "#6122880");
  connection.feed(":CHAN?\n", true, 0s);
  EXPECT_EQ(take(connection, 0s), "1\n");
  EXPECT_EQ(instrument.mainframe.status().take(), Error::QueryInterrupted);
}
