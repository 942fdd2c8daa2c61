#include <gtest/gtest.h>

#include "tests/support/bench.hpp"

namespace lumodevice {
namespace {

using support::answer;
using support::Bench;
using support::lines;
using support::Reply;
using support::silence;

/// Presses the button, so that no staged wait follows.
std::string send(Bench& bench, std::string_view command) {
  bench.type("Text2", command);
  bench.click("cmdSendCmd");
  return bench.text("txtReturn");
}

TEST(VisaLibraryExchange, aQueryIsOneWriteAndOneReadWithNoWaitBetween) {
  Bench bench;
  bench.connectVisa();
  bench.instrument.on(":MEAS?", "1.5\n");
  EXPECT_EQ(bench.ask(":MEAS?"), "1.5");
  EXPECT_EQ(bench.journal(),
            lines({"pass", "viWrite 4 :MEAS?\\n", "viRead 4 80", "pass", "sleep 200"}));
}

TEST(VisaLibraryExchange, aCommandWithoutQuestionMarkIsNeverRead) {
  Bench bench;
  bench.connectVisa();
  EXPECT_EQ(bench.ask(":CHAN 1"), "");
  EXPECT_EQ(bench.journal(), lines({"pass", "viWrite 4 :CHAN 1\\n", "pass", "sleep 200"}));
}

TEST(VisaLibraryExchange, aQuestionMarkAnywhereMakesAQuery) {
  Bench bench;
  bench.connectVisa();
  bench.instrument.on(":A? 1", "7\n");
  EXPECT_EQ(send(bench, ":A? 1"), "7");
}

TEST(VisaLibraryExchange, theAnswerIsReadOnceItHasCome) {
  Bench bench;
  bench.connectVisa();
  bench.instrument.on(":SLOW?", answer("9\n", std::chrono::milliseconds(149)));
  EXPECT_EQ(send(bench, ":SLOW?"), "9");
  bench.instrument.on(":SLOW?", answer("9\n", std::chrono::milliseconds(151)));
  EXPECT_EQ(send(bench, ":SLOW?"), "");
}

struct Terminated {
  const char* command;
  const char* written;
};

TEST(VisaLibraryExchange, onlyTheTwoLongQueriesLeaveWithACarriageReturn) {
  Bench bench;
  bench.connectVisa();
  for (const auto& [command, written] : {
           Terminated{":CHAN? LIST", ":CHAN? LIST\\r"},
           Terminated{"*RDT?", "*RDT?\\r"},
           Terminated{":CHAN?", ":CHAN?\\n"},
           Terminated{":CHAN 1", ":CHAN 1\\n"},
           Terminated{"*rdt?", "*rdt?\\n"},
           Terminated{":CHAN? LIST 1", ":CHAN? LIST 1\\n"},
           Terminated{" *RDT? ", "*RDT?\\n"},
           Terminated{"  :LOAD 1  ", ":LOAD 1\\n"},
           Terminated{"", "\\n"},
       }) {
    send(bench, command);
    EXPECT_EQ(bench.journal({"viWrite"}), lines({std::string("viWrite 4 ") + written}));
  }
}

struct Received {
  std::string bytes;
  std::string text;
};

TEST(VisaLibraryExchange, theLastByteReceivedIsDroppedWhateverItIs) {
  Bench bench;
  bench.connectVisa();
  for (const auto& [bytes, text] : {
           Received{"7\n", "7"},
           Received{"7", ""},
           Received{"abc", "ab"},
           Received{"1.5\r\n", "1.5\r"},
           Received{std::string("a\0b\n", 4), std::string("a\0b", 3)},
           Received{"\xFF\x80\n", "\xFF\x80"},
           Received{std::string(79, 'x') + "\n", std::string(79, 'x')},
           Received{std::string(80, 'x') + "\n", std::string(79, 'x')},
           Received{std::string(5000, 'x') + "\n", std::string(79, 'x')},
       }) {
    bench.instrument.on(":Q?", bytes);
    EXPECT_EQ(send(bench, ":Q?"), text);
  }
}

TEST(VisaLibraryExchange, theAnswerBeforeIsGoneWhenTheNextOneStaysOut) {
  Bench bench;
  bench.connectVisa();
  bench.instrument.on(":Q?", {answer("12\n"), silence()});
  EXPECT_EQ(send(bench, ":Q?"), "12");
  EXPECT_EQ(send(bench, ":Q?"), "");
}

TEST(VisaLibraryExchange, bytesThatCameBeforeATimeOutCount) {
  Bench bench;
  bench.connectVisa();
  bench.instrument.on(":Q?", Reply{.pieces = {{{}, "12.5"}}, .readStatus = io::VI_ERROR_TMO});
  EXPECT_EQ(send(bench, ":Q?"), "12.");
}

TEST(VisaLibraryExchange, aFailedWriteIsFollowedByTheReadAllTheSame) {
  Bench bench;
  bench.connectVisa();
  bench.script.fail("viWrite", io::VI_ERROR_CONN_LOST);
  EXPECT_EQ(send(bench, ":Q?"), "");
  EXPECT_EQ(bench.journal(), lines({"pass", "viWrite 4 :Q?\\n", "viRead 4 80"}));
}

TEST(VisaLibraryExchange, aFailedReadLeavesTheResultEmpty) {
  Bench bench;
  bench.connectVisa();
  bench.instrument.on(":Q?", "12\n");
  bench.script.fail("viRead", io::VI_ERROR_IO);
  EXPECT_EQ(send(bench, ":Q?"), "");
  EXPECT_TRUE(bench.zan().isConnected());
}

TEST(VisaLibraryExchange, nothingIsLogged) {
  Bench bench;
  bench.connectVisa();
  send(bench, ":CHAN 1");
  EXPECT_EQ(bench.log.str(), "");
}

}  // namespace
}  // namespace lumodevice
