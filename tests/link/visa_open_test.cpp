#include <gtest/gtest.h>

#include "tests/support/bench.hpp"

namespace lumodevice {
namespace {

using support::answer;
using support::Bench;
using support::kIdentity;
using support::lines;
using support::silence;

constexpr const char* kResource = "GPIB0::7::INSTR";

class VisaOpen : public testing::Test {
 protected:
  VisaOpen() {
    bench.stopReceivePoll();
    bench.visa.resources = {{kResource, "GPIB0", &bench.instrument}};
    bench.visaCom.instruments = {{kResource, &bench.instrument}};
    bench.instrument.on(":CHAN?", "9\n");
  }

  /// The probe finds the instrument; what the working link then hears is up to the test.
  void identifyAs(support::Reply reply) {
    bench.instrument.on("*IDN?", {answer(kIdentity), std::move(reply)});
  }

  Bench bench;
};

TEST_F(VisaOpen, withoutAnIdentityTheSessionsStayOpenAndThePanelLooksUnconnected) {
  identifyAs(silence());
  EXPECT_FALSE(bench.zan().AutoConnect());
  EXPECT_EQ(bench.visa.openHandles(), " 1 2 4");
  EXPECT_FALSE(bench.zan().isConnected());
  EXPECT_EQ(bench.zan().IDN(), "");
  EXPECT_EQ(bench.read("fraOverChk", "Enabled"), "False");
}

TEST_F(VisaOpen, withoutAnIdentityTheConnectedStateStays) {
  bench.click("cmdAutoConnVISA");
  identifyAs(silence());
  bench.click("cmdAutoConnVISA");
  EXPECT_TRUE(bench.zan().isConnected());
  EXPECT_FALSE(bench.zan().bDevAvaliable());
  EXPECT_EQ(bench.zan().IDN(), "");
  EXPECT_EQ(bench.read("fraOverChk", "Enabled"), "False");
}

TEST_F(VisaOpen, withoutASessionTheConnectedStateEnds) {
  for (const char* variant : {"optVisa1", "optVisa2"}) {
    bench.click(variant);
    bench.click("cmdAutoConnVISA");
    ASSERT_TRUE(bench.zan().isConnected());
    bench.script.fail("viOpen ", io::VI_ERROR_RSRC_LOCKED);
    bench.script.fail("Open ", static_cast<int>(io::E_VISA_SYSTEM_ERROR));
    bench.click("cmdAutoConnVISA");
    EXPECT_FALSE(bench.zan().isConnected()) << variant;
    bench.script.heal("viOpen ");
    bench.script.heal("Open ");
  }
}

TEST_F(VisaOpen, anAnswerFromEarlierDoesNotPassForTheIdentity) {
  bench.type("txtReturn", kIdentity);
  identifyAs(silence());
  EXPECT_FALSE(bench.zan().AutoConnect());
  EXPECT_FALSE(bench.zan().isConnected());
}

TEST_F(VisaOpen, aManualConnectKeepsTheIdentityOfTheAutomaticOne) {
  bench.click("cmdAutoConnVISA");
  bench.instrument.on("*IDN?", "OTHER,ZAN-1,B,9.9\n");
  bench.click("cmdConnVISA");
  EXPECT_TRUE(bench.zan().bDevAvaliable());
  EXPECT_EQ(bench.zan().IDN(), std::string(kIdentity) + "\n");
  identifyAs(silence());
  bench.click("cmdConnVISA");
  EXPECT_EQ(bench.zan().IDN(), std::string(kIdentity) + "\n");
}

TEST_F(VisaOpen, anotherInstrumentsIdentityConnectsButListsNoChannels) {
  identifyAs(answer("OTHER,1,2,3\n"));
  EXPECT_FALSE(bench.zan().AutoConnect());
  EXPECT_TRUE(bench.zan().isConnected());
  EXPECT_EQ(bench.zan().ChCount(), 0);
  EXPECT_EQ(bench.journal({"viWrite 4"}), lines({"viWrite 4 *IDN?\\r"}));
}

TEST_F(VisaOpen, aWorkingLinkThatDoesNotOpenIsAskedInVain) {
  support::Instrument lockedBySomebodyElse;
  lockedBySomebodyElse.otherwise = [this](std::string_view) {
    bench.script.fail("viOpen 1", io::VI_ERROR_RSRC_LOCKED);
    return answer(kIdentity);
  };
  bench.visa.resources[0].instrument = &lockedBySomebodyElse;
  EXPECT_FALSE(bench.zan().AutoConnect());
  const std::string journal = bench.journal();
  EXPECT_EQ(journal.substr(journal.find("viFindNext")),
            lines({"viFindNext 2", "viOpen 1 GPIB0::7::INSTR 1 1", "viGetAttribute 0 BFFF00E9",
                   "viSetAttribute 0 3FFF0018 13", "viSetAttribute 0 3FFF0038 4294967295",
                   "viSetAttribute 0 3FFF001A 150", "viWrite 0 *IDN?\\r", "viRead 0 72"}));
  EXPECT_FALSE(bench.zan().isConnected());
}

TEST_F(VisaOpen, everyCallOfTheWorkingLinkMayFail) {
  for (const char* call : {"viGetAttribute 4", "viSetAttribute 4", "viWrite 4", "viRead 4"}) {
    Bench fresh;
    fresh.stopReceivePoll();
    fresh.visa.resources = {{kResource, "GPIB0", &bench.instrument}};
    fresh.script.fail(call, io::VI_ERROR_SYSTEM_ERROR);
    const bool harmless = std::string_view(call).find("Attribute") != std::string_view::npos;
    EXPECT_EQ(fresh.zan().AutoConnect(), harmless) << call;
    EXPECT_EQ(fresh.zan().isConnected(), harmless) << call;
  }
}

TEST_F(VisaOpen, aSecondConnectAsksItsOwnInstrumentOverTheOpenSessionAndClosesTheOldOnes) {
  bench.click("cmdAutoConnVISA");
  EXPECT_EQ(bench.visa.openHandles(), " 1 2 4");
  bench.journal();
  bench.click("cmdAutoConnVISA");
  EXPECT_EQ(bench.journal({"viOpen", "viClose", "viWrite 4 *IDN?"}),
            lines({"viOpenDefaultRM", "viWrite 4 *IDN?\\r", "viClose 4", "viClose 2", "viClose 1",
                   "viOpen 5 GPIB0::7::INSTR 1 1"}));
  EXPECT_EQ(bench.visa.openHandles(), " 5 6 7");
  EXPECT_TRUE(bench.zan().isConnected());
  bench.ask(":CHAN 1");
  EXPECT_EQ(bench.journal({"viWrite"}), lines({"viWrite 7 :CHAN 1\\n"}));
}

TEST_F(VisaOpen, aSessionThatIsLostDoesNotStandInTheWayOfANewOne) {
  bench.click("cmdAutoConnVISA");
  bench.script.fail("viWrite 4", io::VI_ERROR_CONN_LOST);
  bench.script.fail("viRead 4", io::VI_ERROR_CONN_LOST);
  EXPECT_TRUE(bench.zan().AutoConnect());
  EXPECT_TRUE(bench.zan().isConnected());
  EXPECT_EQ(bench.visa.openHandles().find(" 4 "), std::string::npos);
}

TEST_F(VisaOpen, aSearchThatFindsNothingLeavesTheWorkingLink) {
  bench.click("cmdAutoConnVISA");
  bench.journal();
  bench.visa.resources.clear();
  bench.type("cmbVISARes", "ASRL?*INSTR");
  bench.click("cmdConnVISA");
  EXPECT_TRUE(bench.zan().isConnected());
  EXPECT_EQ(bench.visa.openHandles(), " 1 2 4");
  bench.ask(":CHAN 1");
  EXPECT_EQ(bench.journal({"viWrite"}), lines({"viWrite 4 :CHAN 1\\n"}));
}

TEST_F(VisaOpen, aSearchThatFindsNothingKeepsTheIdentity) {
  bench.click("cmdAutoConnVISA");
  bench.visa.resources.clear();
  EXPECT_FALSE(bench.zan().AutoConnect());
  EXPECT_EQ(bench.zan().IDN(), std::string(kIdentity) + "\n");
}

TEST_F(VisaOpen, throughVisaComTheLibraryIsLeftBeforeTheObjectsAreMade) {
  bench.click("optVisa2");
  EXPECT_TRUE(bench.zan().AutoConnect());
  const std::string journal = bench.journal();
  EXPECT_EQ(journal.substr(journal.find("viFindNext")), lines({"viFindNext 2",
                                                               "viClose 2",
                                                               "viClose 1",
                                                               "createResourceManager",
                                                               "createFormattedIO488",
                                                               "Open GPIB0::7::INSTR 0 2000 \"\"",
                                                               "IO GPIB0::7::INSTR",
                                                               "WriteString *IDN?\\r END",
                                                               "ReadString",
                                                               "pass",
                                                               "Timeout 200",
                                                               "WriteString *RDT?\\r END",
                                                               "sleep 1000",
                                                               "ReadString",
                                                               "pass",
                                                               "sleep 1000",
                                                               "pass",
                                                               "pass",
                                                               "Timeout 200",
                                                               "WriteString :CHAN?\\n END",
                                                               "sleep 200",
                                                               "ReadString",
                                                               "pass",
                                                               "sleep 200"}));
  EXPECT_EQ(bench.visa.openHandles(), "");
  EXPECT_EQ(bench.zan().IDN(), std::string(kIdentity) + "\n");
  EXPECT_NE(bench.zan().devZAN(), nullptr);
}

TEST_F(VisaOpen, throughVisaComEveryFailedCallEndsUnconnected) {
  for (const char* call : {"createResourceManager", "createFormattedIO488", "Open", "IO",
                           "WriteString", "ReadString"}) {
    Bench fresh;
    fresh.stopReceivePoll();
    fresh.visa.resources = {{kResource, "GPIB0", &bench.instrument}};
    fresh.visaCom.instruments = {{kResource, &bench.instrument}};
    fresh.click("optVisa2");
    fresh.script.fail(call, static_cast<int>(io::E_VISA_SYSTEM_ERROR));
    EXPECT_FALSE(fresh.zan().AutoConnect()) << call;
    const std::string journal = fresh.journal();
    EXPECT_NE(journal.find(std::string("\n") + call), std::string::npos) << journal;
    EXPECT_FALSE(fresh.zan().isConnected()) << call;
    EXPECT_EQ(fresh.zan().IDN(), "") << call;
    EXPECT_EQ(fresh.read("fraOverChk", "Enabled"), "False") << call;
    EXPECT_EQ(fresh.visa.openHandles(), "") << call;
  }
}

TEST_F(VisaOpen, throughVisaComALongIdentityIsNotCut) {
  const std::string identity = "LUMO,ZAN-6400," + std::string(500, 'x') + "\n";
  bench.click("optVisa2");
  identifyAs(answer(identity));
  EXPECT_TRUE(bench.zan().AutoConnect());
  EXPECT_EQ(bench.zan().IDN(), identity);
}

TEST_F(VisaOpen, throughVisaComAManualConnectWorksToo) {
  bench.click("optVisa2");
  bench.click("cmdConnVISA");
  EXPECT_TRUE(bench.zan().isConnected());
  EXPECT_EQ(bench.zan().ConnStyle(), LinkKind::Visa);
}

}  // namespace
}  // namespace lumodevice
