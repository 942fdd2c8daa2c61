#include <gtest/gtest.h>

#include "tests/support/bench.hpp"

namespace lumodevice {
namespace {

using support::answer;
using support::Bench;
using support::lines;
using support::Reply;

constexpr std::uint32_t kFailure = io::E_VISA_SYSTEM_ERROR;

std::string send(Bench& bench, std::string_view command) {
  bench.type("Text2", command);
  bench.click("cmdSendCmd");
  return bench.text("txtReturn");
}

TEST(VisaComExchange, aQueryWaitsOneUnitBetweenWriteAndRead) {
  Bench bench;
  bench.connectVisaCom();
  bench.instrument.on(":MEAS?", "1.5\n");
  EXPECT_EQ(bench.ask(":MEAS?"), "1.5");
  EXPECT_EQ(bench.journal(), lines({"pass", "Timeout 200", "WriteString :MEAS?\\n END", "sleep 200",
                                    "ReadString", "pass", "sleep 200"}));
}

TEST(VisaComExchange, theTwoLongQueriesWaitFiveUnits) {
  Bench bench;
  bench.connectVisaCom();
  bench.type("Text5", "30");
  for (const std::string command : {":CHAN? LIST", "*RDT?"}) {
    bench.instrument.on(command, "A,B\n");
    EXPECT_EQ(send(bench, command), "A,B");
    EXPECT_EQ(bench.journal(), lines({"pass", "Timeout 200", "WriteString " + command + "\\r END",
                                      "sleep 150", "ReadString"}));
  }
}

TEST(VisaComExchange, aCommandWithoutQuestionMarkIsNeverReadNorWaitedFor) {
  Bench bench;
  bench.connectVisaCom();
  EXPECT_EQ(send(bench, "  :CHAN 1 "), "");
  EXPECT_EQ(bench.journal(), lines({"pass", "Timeout 200", "WriteString :CHAN 1\\n END"}));
}

TEST(VisaComExchange, theTimeOutIsTheFieldsNumber) {
  Bench bench;
  bench.connectVisaCom();
  for (const auto& [field, call] : std::vector<std::pair<const char*, const char*>>{
           {"1500", "Timeout 1500\n"}, {"12 ms", "Timeout 12\n"}, {"none", "Timeout 0\n"}}) {
    bench.type("txtVISATimeout", field);
    send(bench, ":CHAN 1");
    EXPECT_EQ(bench.journal({"Timeout"}), call);
  }
}

TEST(VisaComExchange, aTimeOutBeyondAllNumbersOrBelowZeroIsPassedOver) {
  for (const char* field : {"1E30", "-1", "-200", "-3E9"}) {
    Bench bench;
    bench.connectVisaCom();
    bench.type("txtVISATimeout", field);
    send(bench, ":CHAN 1");
    EXPECT_EQ(bench.journal(), lines({"pass", "WriteString :CHAN 1\\n END"})) << field;
  }
}

TEST(VisaComExchange, aTimeOutOfMinusOneIsNotTheInfiniteOne) {
  Bench bench;
  bench.connectVisaCom();
  bench.instrument.on(":SILENT?", support::silence());
  bench.type("txtVISATimeout", "-1");
  const auto before = bench.loop.now();
  bench.zan().SendCmd(":SILENT?");
  EXPECT_LT(bench.loop.now() - before, std::chrono::seconds(3));
}

struct Read {
  std::string first;
  std::vector<std::string> further;
  std::string text;
  int reads;
};

TEST(VisaComExchange, anEmptyFirstReadIsReadOnceMoreAndOneTerminatorIsRemoved) {
  Bench bench;
  bench.connectVisaCom();
  for (const auto& [first, further, text, reads] : {
           Read{"1.5\n", {"9\n"}, "1.5", 1},
           Read{"1.5\r", {"9\n"}, "1.5", 1},
           Read{"1.5\r\n", {"9\n"}, "1.5\r", 1},
           Read{"1.5\n\n", {"9\n"}, "1.5\n", 1},
           Read{"1.5", {"9\n"}, "1.5", 1},
           Read{"", {"9\n"}, "9", 2},
           Read{"\n", {"9\n"}, "9", 2},
           Read{"\n  ", {"9\n"}, "9", 2},
           Read{"   ", {"9\r\n"}, "9\r", 2},
           Read{"\n", {"\n"}, "", 2},
           Read{"", {""}, "", 2},
           Read{"", {"  "}, "  ", 2},
           Read{"", {}, "", 2},
           Read{"\n", {}, "", 2},
           Read{"  ", {}, "  ", 2},
           Read{"\r", {"9\n"}, "", 1},
           Read{" \n", {"9\n"}, " ", 1},
           Read{"\nA", {"9\n"}, "\nA", 1},
           Read{std::string("\0\n", 2), {"9\n"}, std::string("\0", 1), 1},
           Read{std::string(3000, 'x') + "\n", {}, std::string(3000, 'x'), 1},
       }) {
    bench.instrument.on(":Q?", Reply{.pieces = {{{}, first}}, .further = further});
    EXPECT_EQ(send(bench, ":Q?"), text);
    EXPECT_EQ(bench.journal({"ReadString", "sleep"}),
              reads == 1 ? lines({"sleep 200", "ReadString"})
                         : lines({"sleep 200", "ReadString", "sleep 200", "ReadString"}))
        << support::escaped(first);
  }
}

TEST(VisaComExchange, anAnswerLaterThanTheFirstReadIsCaughtByTheSecond) {
  Bench bench;
  bench.connectVisaCom();
  bench.instrument.on(":Q?", answer("late\n", std::chrono::milliseconds(500)));
  EXPECT_EQ(send(bench, ":Q?"), "late");
}

TEST(VisaComExchange, eachFailedCallIsPassedOver) {
  const std::string twice = lines({"pass", "Timeout 200", "WriteString :Q?\\n END", "sleep 200",
                                   "ReadString", "sleep 200", "ReadString"});
  const std::string once =
      lines({"pass", "Timeout 200", "WriteString :Q?\\n END", "sleep 200", "ReadString"});
  Bench bench;
  bench.connectVisaCom();
  bench.instrument.on(":Q?", "7\n");
  for (const auto& [call, result, journal] :
       std::vector<std::tuple<const char*, std::string, std::string>>{
           {"Timeout", "7", once}, {"WriteString", "", twice}, {"ReadString", "", twice}}) {
    bench.script.fail(call, static_cast<int>(kFailure));
    EXPECT_EQ(send(bench, ":Q?"), result) << call;
    EXPECT_EQ(bench.journal(), journal);
    bench.script.heal(call);
  }
}

TEST(VisaComExchange, withoutAnOpenObjectAQueryEndsInTheBox) {
  Bench bench;
  bench.connectVisa();
  bench.click("optVisa2");
  EXPECT_EQ(bench.ask(":Q?"), "");
  EXPECT_EQ(bench.journal({"viWrite", "WriteString", "box"}),
            lines({"box Error:Device has not sent back some data yet!"}));
}

TEST(VisaComExchange, anObjectThatTheHostPutsInIsTheOneThatIsUsed) {
  Bench bench;
  bench.connectVisaCom();
  bench.zan().devZAN(bench.visaCom.createFormattedIO488());
  EXPECT_EQ(send(bench, ":Q?"), "");
  bench.zan().devZAN(nullptr);
  EXPECT_EQ(send(bench, ":Q?"), "");
  EXPECT_TRUE(bench.zan().isConnected());
}

}  // namespace
}  // namespace lumodevice
