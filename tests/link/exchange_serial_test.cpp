#include <gtest/gtest.h>

#include "tests/link/link_parts.hpp"

namespace lumodevice {
namespace {

using support::answer;
using support::Bench;
using support::lines;

std::string send(Bench& bench, std::string_view command) {
  bench.type("Text2", command);
  bench.click("cmdSendCmd");
  return bench.text("txtReturn");
}

TEST(SerialExchange, aQueryWaitsFiftyMillisecondsAndItsAnswerComesFromTheReceivePoll) {
  Bench bench;
  bench.connectSerial();
  bench.instrument.on(":MEAS?", "1.5\n");
  EXPECT_EQ(bench.ask(":MEAS?"), "1.5");
  EXPECT_EQ(bench.journal(), lines({"pass", "COM3 write :MEAS?\\n", "pass", "sleep 50", "pass",
                                    "COM3 read 1.5\\n", "pass", "sleep 200"}));
}

TEST(SerialExchange, aCommandWithoutQuestionMarkIsNeitherWaitedForNorRead) {
  Bench bench;
  bench.connectSerial();
  EXPECT_EQ(send(bench, " :CHAN 1 "), "");
  EXPECT_EQ(bench.journal(), lines({"pass", "COM3 write :CHAN 1\\n"}));
  EXPECT_EQ(bench.read("Timer2", "Enabled"), "False");
}

TEST(SerialExchange, theTwoLongQueriesLeaveWithACarriageReturn) {
  Bench bench;
  bench.connectSerial();
  send(bench, "*RDT?");
  send(bench, ":CHAN? LIST");
  send(bench, ":CHAN?");
  EXPECT_EQ(bench.journal({"COM3 write"}),
            lines({"COM3 write *RDT?\\r", "COM3 write :CHAN? LIST\\r", "COM3 write :CHAN?\\n"}));
}

TEST(SerialExchange, aCommandIsLoggedWithDateAndTime) {
  Bench bench;
  bench.connectSerial();
  bench.log.str("");
  send(bench, ":CHAN 1");
  send(bench, " :LOAD 1");
  EXPECT_EQ(bench.log.str(), "20310307 115955 :CHAN 1 \n20310307 115955  :LOAD 1 \n");
}

TEST(SerialExchange, aQueryIsNotLogged) {
  Bench bench;
  bench.connectSerial();
  bench.log.str("");
  send(bench, ":CHAN?");
  EXPECT_EQ(bench.log.str(), "");
}

TEST(SerialExchange, withoutALogStreamACommandGoesOutAllTheSame) {
  Bench bench({.logging = false});
  bench.connectSerial();
  send(bench, ":CHAN 1");
  EXPECT_EQ(bench.journal({"COM3 write"}), lines({"COM3 write :CHAN 1\\n"}));
  EXPECT_EQ(bench.log.str(), "");
}

TEST(SerialExchange, aDeviceThatIsGoneTakesNothingAndThrowsNothing) {
  Bench bench;
  bench.connectSerial();
  bench.script.fail("COM3 write", io::kSerialUnavailable);
  bench.script.fail("COM3 read", io::kSerialReadError);
  EXPECT_EQ(bench.ask(":MEAS?"), "");
  EXPECT_EQ(bench.journal({"sleep", "box"}),
            lines({"sleep 50", "sleep 200", "sleep 400", "sleep 800",
                   "box Error:Device has not sent back some data yet!"}));
  EXPECT_TRUE(bench.zan().isConnected());
}

TEST(SerialExchange, aDeviceThatComesBackGoesOnAnswering) {
  Bench bench;
  bench.connectSerial();
  bench.instrument.on(":MEAS?", "1.5\n");
  bench.script.fail("COM3 read", io::kSerialReadError);
  EXPECT_EQ(bench.ask(":MEAS?"), "");
  bench.script.heal("COM3 read");
  bench.run(std::chrono::milliseconds(100));
  EXPECT_EQ(bench.zan().ResultStr(), "1.5");
  EXPECT_EQ(bench.ask(":MEAS?"), "1.5");
}

TEST(SerialExchange, anAnswerThatIsCutOffDoesNotStandInFrontOfTheNext) {
  Bench bench;
  bench.connectSerial();
  bench.instrument.on(":MEAS?", "1.5\n");
  send(bench, ":MEAS?");  // the answer waits in the port
  send(bench, ":CHAN 1");
  EXPECT_EQ(bench.ask("*IDN?"), support::kIdentity);
}

/// What the auto query had asked must not pass for the mode: the panel would switch the load to
/// another one.
TEST(SerialExchange, aChannelSelectedWhileAReadingIsOnItsWayReadsItsOwnMode) {
  Bench bench;
  bench.connectSerial();
  bench.instrument.on(":Mode?", "CV\n");
  for (const char* reading : {":FETC:VOLT?", ":FETC:CURR?", ":FETC:POW?"}) {
    bench.instrument.on(reading, "12.0000\n");
  }
  bench.select("cmbChannel", 0);
  bench.zan().AutoQuery(true);
  bench.run(std::chrono::milliseconds(200));
  bench.journal();
  bench.select("cmbChannel", 1);
  EXPECT_EQ(bench.journal({"COM3 write :MODE CCH"}), "");
  EXPECT_EQ(bench.read("optMode(2)", "Value"), "True");
}

TEST(SerialExchange, writingALineEndsTheWaitForAnAnswer) {
  link::LinkParts parts;
  parts.bench.serial.ports[1];
  parts.MSComm1.setPortOpen(true);
  parts.links.serial.expectAnswer();
  parts.exchange.SerialWriteLine("abc");
  EXPECT_FALSE(parts.links.serial.answerPending());
  EXPECT_EQ(parts.bench.journal({"COM1 write"}), lines({"COM1 write abc\\n"}));
}

TEST(SerialExchange, takesWhatHasArrivedWhileAnAnswerIsPending) {
  link::LinkParts parts;
  parts.bench.serial.ports[1];
  parts.MSComm1.setPortOpen(true);
  link::SerialLink& serial = parts.links.serial;
  parts.bench.serial.say(1, answer("12"));
  serial.receive();
  EXPECT_EQ(serial.receiveBuffer(), "") << "no answer is pending";
  serial.expectAnswer();
  serial.receive();
  serial.receive();
  EXPECT_EQ(serial.receiveBuffer(), "12");
  EXPECT_EQ(serial.pollCount(), 1) << "a poll that finds nothing does not count";
}

TEST(SerialExchange, overTheLinkNamedGpibNothingIsWrittenAndAQueryEndsInTheBox) {
  link::LinkParts parts;
  parts.state.setLinkName(link::kGpib);
  parts.form.cmdSendCmd.setEnabled(true);
  parts.exchange.runCommand(":MEAS?");
  EXPECT_EQ(parts.bench.journal(),
            lines({"pass", "pass", "sleep 200", "pass", "sleep 400", "pass", "sleep 800", "pass",
                   "box Error:Device has not sent back some data yet!"}));
}

TEST(SerialExchange, overALinkOfNoNameNothingIsWritten) {
  link::LinkParts parts;
  parts.exchange.Send();
  EXPECT_EQ(parts.bench.journal(), lines({"pass"}));
}

}  // namespace
}  // namespace lumodevice
