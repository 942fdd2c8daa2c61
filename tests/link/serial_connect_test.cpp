#include <gtest/gtest.h>

#include "tests/support/bench.hpp"

namespace lumodevice {
namespace {

using support::answer;
using support::Bench;
using support::kIdentity;
using support::lines;
using support::silence;

/// COM3 and COM4 exist, the instrument is on COM3 at 38400 baud; the serial link is selected.
class SerialConnect : public testing::Test {
 protected:
  SerialConnect() {
    bench.stopReceivePoll();
    bench.serial.ports[3].instrument = &bench.instrument;
    bench.serial.ports[4];
    bench.instrument.on(":CHAN?", "9\n");
    bench.click("optConnRS232");
    bench.type("Text1", "3");
    bench.select("Combo2", 0);
    bench.journal();
  }

  std::string channels() { return bench.items("cmbChannel"); }

  Bench bench;
};

TEST_F(SerialConnect, opensTheChosenPortAsksForTheIdentityAndListsTheChannels) {
  bench.click("Command2");
  EXPECT_EQ(bench.journal(), lines({"COM3 open 38400,n,8,1",
                                    "COM3 write *IDN?\\n",
                                    "pass",
                                    "sleep 200",
                                    "pass",
                                    "COM3 read LUMO,ZAN-6400,A0001,1.20\\n",
                                    "pass",
                                    "pass",
                                    "COM3 write *RDT?\\r",
                                    "pass",
                                    "sleep 50",
                                    "pass",
                                    "COM3 read ZAN2040,0,ZAN6310,0\\n",
                                    "pass",
                                    "sleep 1000",
                                    "pass",
                                    "pass",
                                    "COM3 write :CHAN?\\n",
                                    "pass",
                                    "sleep 50",
                                    "pass",
                                    "COM3 read 9\\n",
                                    "pass",
                                    "sleep 200"}));
  EXPECT_TRUE(bench.zan().isConnected());
  EXPECT_TRUE(bench.zan().bDevAvaliable());
  EXPECT_EQ(bench.zan().IDN(), kIdentity);
  EXPECT_EQ(bench.zan().ConnStyle(), LinkKind::Serial);
  EXPECT_EQ(channels(), lines({"CH1-ZAN2040", "CH2-ZAN6310"}));
}

TEST_F(SerialConnect, waitsAsLongAsTheFieldSays) {
  bench.type("Text5", "1234");
  bench.click("Command2");
  const std::string sleeps = bench.journal({"sleep"});
  EXPECT_EQ(sleeps.substr(0, sleeps.find('\n')), "sleep 1234");
}

TEST_F(SerialConnect, theSettingsAreTheTextOfTheField) {
  struct Field {
    const char* text;
    const char* opened;
  };
  for (const auto& [text, opened] :
       {Field{"19200", "COM3 open 19200,n,8,1"}, Field{"4800,e,7,2", "COM3 open 4800,e,7,2"},
        Field{"9600,n,8,1", "COM3 open 9600,n,8,1"}}) {
    bench.type("Combo2", text);
    bench.click("Command2");
    EXPECT_EQ(bench.journal({"COM3 open"}), lines({opened}));
  }
}

TEST_F(SerialConnect, aPortThatIsOpenAlreadyIsClosedAndOpenedAgain) {
  bench.click("Command2");
  bench.journal();
  bench.click("Command2");
  EXPECT_EQ(bench.journal({"COM3 open", "COM3 close"}),
            lines({"COM3 close", "COM3 open 38400,n,8,1"}));
  EXPECT_TRUE(bench.zan().bDevAvaliable());
}

TEST_F(SerialConnect, anotherInstrumentEndsTheLink) {
  bench.click("Command2");
  bench.instrument.on("*IDN?", "OTHER,1,2,3\n");
  bench.click("Command2");
  EXPECT_FALSE(bench.zan().isConnected());
  EXPECT_FALSE(bench.zan().bDevAvaliable());
  EXPECT_EQ(bench.zan().IDN(), "");
  EXPECT_EQ(bench.read("fraOverChk", "Enabled"), "False");
}

TEST_F(SerialConnect, withoutAnAnswerAnUnconnectedComponentStaysUnconnected) {
  bench.instrument.on("*IDN?", silence());
  bench.click("Command2");
  EXPECT_FALSE(bench.zan().isConnected());
  EXPECT_FALSE(bench.zan().bDevAvaliable());
  EXPECT_EQ(bench.read("fraOverChk", "Enabled"), "False");
}

TEST_F(SerialConnect, withoutAnAnswerAConnectedComponentStaysConnectedWithoutChannels) {
  bench.click("Command2");
  bench.instrument.on("*IDN?", silence());
  bench.click("Command2");
  EXPECT_TRUE(bench.zan().isConnected());
  EXPECT_FALSE(bench.zan().bDevAvaliable());
  EXPECT_EQ(bench.zan().IDN(), kIdentity);
  EXPECT_EQ(channels(), "");
}

TEST_F(SerialConnect, anAnswerLaterThanTheWaitIsNone) {
  bench.instrument.on("*IDN?", answer("ZAN\n", std::chrono::milliseconds(201)));
  bench.click("Command2");
  EXPECT_FALSE(bench.zan().isConnected());
}

TEST_F(SerialConnect, anAnswerFromEarlierDoesNotPassForTheIdentity) {
  bench.type("txtReturn", kIdentity);
  bench.instrument.on("*IDN?", silence());
  bench.click("Command2");
  EXPECT_FALSE(bench.zan().isConnected());
  EXPECT_EQ(bench.zan().IDN(), "");
}

TEST_F(SerialConnect, wakesTheReceivePoll) {
  EXPECT_EQ(bench.read("Timer2", "Enabled"), "False");
  bench.instrument.on("*IDN?", silence());
  bench.click("Command2");
  EXPECT_EQ(bench.read("Timer2", "Enabled"), "True");
}

struct Refusal {
  const char* call;
  int code;
};

TEST_F(SerialConnect, aPortThatCannotBeUsedLeavesTheLinkThatThereWas) {
  bench.click("Command2");
  const std::string before = channels();
  for (const auto& [call, code] :
       {Refusal{"COM3 open", io::kSerialUnavailable}, Refusal{"COM3 open", io::kSerialInvalidPort},
        Refusal{"COM3 open", io::kSerialInvalidValue}, Refusal{"COM3 write", io::kSerialDeviceBusy},
        Refusal{"COM3 write", io::kSerialUnavailable}}) {
    bench.script.fail(call, code, 1);
    bench.journal();
    bench.click("Command2");
    EXPECT_EQ(bench.journal({"sleep", "pass", "box"}), "") << call << code;
    EXPECT_TRUE(bench.zan().isConnected()) << call << code;
    EXPECT_EQ(channels(), before) << call << code;
    EXPECT_FALSE(bench.zan().bDevAvaliable());
    EXPECT_EQ(bench.ask(":CHAN?"), "9") << "the port is open again";
  }
}

TEST_F(SerialConnect, aPortNumberThatIsNoneLeavesTheLinkThatThereWas) {
  bench.click("Command2");
  bench.type("Text1", "99");
  bench.click("Command2");
  EXPECT_TRUE(bench.zan().isConnected());
  EXPECT_EQ(bench.ask(":CHAN?"), "9");
}

TEST_F(SerialConnect, aPortThatDoesNotOpenAgainEndsTheLink) {
  bench.click("Command2");
  bench.script.fail("COM3 open", io::kSerialUnavailable);
  bench.click("Command2");
  EXPECT_FALSE(bench.zan().isConnected());
  EXPECT_EQ(bench.read("FrameCCStatic", "Enabled"), "False");
}

TEST_F(SerialConnect, aBadPortNumberOrSettingEndsItAtOnce) {
  for (const char* port : {"17", "0", "-1", "", "two", "99999", "1E999"}) {
    bench.type("Text1", port);
    bench.click("Command2");
    EXPECT_EQ(bench.journal({"COM", "sleep"}), "") << port;
  }
  bench.type("Text1", "3");
  for (const char* settings : {"fast", "9600,x", "9600,n,8,1,1", "-9600"}) {
    bench.type("Combo2", settings);
    bench.click("Command2");
    EXPECT_EQ(bench.journal({"COM", "sleep"}), "") << settings;
  }
}

TEST_F(SerialConnect, thePortNumberIsTheNumberThatTheFieldBeginsWith) {
  bench.type("Text1", " 3 (bench)");
  bench.click("Command2");
  EXPECT_TRUE(bench.zan().isConnected());
}

TEST_F(SerialConnect, aPortSaidToBeOpenAlreadyIsPassedOverToTheNextStep) {
  bench.script.fail("COM3 open", io::kSerialAlreadyOpen);
  bench.type("txtReturn", "old");
  bench.click("Command2");
  EXPECT_EQ(bench.text("txtReturn"), "");
  EXPECT_FALSE(bench.zan().isConnected());
}

TEST_F(SerialConnect, aPortPulledOutWhileItsAnswerIsAwaitedIsAnEmptyAnswer) {
  bench.script.fail("COM3 read", io::kSerialReadError);
  bench.click("Command2");
  EXPECT_FALSE(bench.zan().isConnected());
}

TEST_F(SerialConnect, aPortPulledOutWhileTheChannelsAreAskedForLeavesAConnectedComponent) {
  bench.script.fail("COM3 write *RDT?", io::kSerialUnavailable);
  bench.script.fail("COM3 write :CHAN?", io::kSerialUnavailable);
  bench.click("Command2");
  EXPECT_TRUE(bench.zan().isConnected());
  EXPECT_EQ(channels(), "");
  EXPECT_EQ(bench.text("cmbChannel"), "CH1");
}

}  // namespace
}  // namespace lumodevice
