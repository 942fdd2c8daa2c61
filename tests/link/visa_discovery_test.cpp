#include <gtest/gtest.h>

#include "tests/support/bench.hpp"

namespace lumodevice {
namespace {

using support::Bench;
using support::kIdentity;
using support::lines;
using support::silence;

constexpr const char* kResource = "GPIB0::7::INSTR";

/// One instrument, not connected yet, whose channel number lies beyond its list, so that a connect
/// ends with it and reads no channel back.
class VisaDiscovery : public testing::Test {
 protected:
  VisaDiscovery() {
    bench.stopReceivePoll();
    bench.visa.resources = {{kResource, "GPIB0", &bench.instrument}};
    bench.instrument.on(":CHAN?", "9\n");
  }
  Bench bench;
};

TEST_F(VisaDiscovery, anAutomaticConnectMakesTheseCallsInThisOrder) {
  EXPECT_TRUE(bench.zan().AutoConnect());
  EXPECT_EQ(bench.journal(), lines({"viOpenDefaultRM",
                                    "viFindRsrc 1 ?*INSTR",
                                    "viOpen 1 GPIB0::7::INSTR 1 1",
                                    "viGetAttribute 3 BFFF00E9",
                                    "viSetAttribute 3 3FFF0018 13",
                                    "viSetAttribute 3 3FFF0038 4294967295",
                                    "viSetAttribute 3 3FFF001A 200",
                                    "viSetAttribute 3 3FFF0016 0",
                                    "viWrite 3 *IDN?\\r",
                                    "viRead 3 72",
                                    "viClose 3",
                                    "viFindNext 2",
                                    "viOpen 1 GPIB0::7::INSTR 1 1",
                                    "viGetAttribute 4 BFFF00E9",
                                    "viSetAttribute 4 3FFF0018 13",
                                    "viSetAttribute 4 3FFF0038 4294967295",
                                    "viSetAttribute 4 3FFF001A 150",
                                    "viWrite 4 *IDN?\\r",
                                    "viRead 4 72",
                                    "pass",
                                    "viWrite 4 *RDT?\\r",
                                    "viRead 4 80",
                                    "pass",
                                    "sleep 1000",
                                    "pass",
                                    "pass",
                                    "viWrite 4 :CHAN?\\n",
                                    "viRead 4 80",
                                    "pass",
                                    "sleep 200"}));
  EXPECT_EQ(bench.visa.openHandles(), " 1 2 4");
  EXPECT_TRUE(bench.zan().isConnected());
  EXPECT_EQ(bench.zan().IDN(), std::string(kIdentity) + "\n");
}

TEST_F(VisaDiscovery, aManualConnectSearchesWithTheExpressionOfTheField) {
  bench.type("cmbVISARes", "GPIB?*INSTR");
  bench.click("cmdConnVISA");
  const std::string journal = bench.journal();
  EXPECT_EQ(journal.substr(0, journal.find("viOpen 1")),
            lines({"viOpenDefaultRM", "viFindRsrc 1 GPIB?*INSTR"}));
  EXPECT_TRUE(bench.zan().isConnected());
  EXPECT_TRUE(bench.zan().bDevAvaliable());
}

TEST_F(VisaDiscovery, ofTwoMatchesBothAreListedAndTheOneFoundLastIsOpened) {
  bench.visa.resources.push_back({"GPIB0::9::INSTR", "GPIB0", &bench.instrument});
  bench.click("cmdAutoConnVISA");
  EXPECT_EQ(bench.items("cmbVISARes"), lines({"GPIB0::7::INSTR", "GPIB0::9::INSTR"}));
  EXPECT_EQ(bench.text("cmbVISARes"), "GPIB0::9::INSTR");
  EXPECT_EQ(bench.journal({"viOpen 1", "viClose", "viFindNext"}),
            lines({"viOpen 1 GPIB0::7::INSTR 1 1", "viClose 3", "viFindNext 2",
                   "viOpen 1 GPIB0::9::INSTR 1 1", "viClose 4", "viFindNext 2",
                   "viOpen 1 GPIB0::9::INSTR 1 1"}));
}

TEST_F(VisaDiscovery, onlyGpibAndZanInterfacesAreAsked) {
  struct Interface {
    const char* name;
    bool asked;
  };
  for (const auto& [name, asked] :
       {Interface{"GPIB0", true}, Interface{"GPIB1 (board)", true}, Interface{"ZAN", true},
        Interface{"USB0 (ZAN-6400)", true}, Interface{"zan", false}, Interface{"gpib0", false},
        Interface{"ASRL1", false}, Interface{"", false}}) {
    Bench fresh;
    fresh.visa.resources = {{kResource, name, &fresh.instrument}};
    EXPECT_EQ(fresh.zan().AutoConnect(), asked) << name;
    EXPECT_EQ(fresh.journal({"viWrite"}).empty(), !asked) << name;
  }
}

TEST_F(VisaDiscovery, aResourceOfAnotherKindIsClosedWithoutAQuestion) {
  bench.visa.resources[0].interfaceName = "ASRL1";
  bench.click("cmdAutoConnVISA");
  EXPECT_EQ(bench.journal(), lines({"viOpenDefaultRM", "viFindRsrc 1 ?*INSTR",
                                    "viOpen 1 GPIB0::7::INSTR 1 1", "viGetAttribute 3 BFFF00E9",
                                    "viClose 3", "viFindNext 2", "viClose 2", "viClose 1"}));
}

TEST_F(VisaDiscovery, anIdentityWithoutTheProductWordDoesNotMatch) {
  for (const std::string identity : {"OTHER,6400,1,2\r", "lumo,zan-6400\r", "Z A N", "\r", ""}) {
    bench.instrument.on("*IDN?", identity);
    EXPECT_FALSE(bench.zan().AutoConnect()) << identity;
    EXPECT_EQ(bench.items("cmbVISARes"), "");
    EXPECT_EQ(bench.read("cmbVISARes", "Tag"), "");
    EXPECT_EQ(bench.visa.openHandles(), "");
  }
}

TEST_F(VisaDiscovery, anOddIdentityIsKeptAsItCame) {
  for (const std::string& identity :
       {std::string("ZAN"), std::string("a\0b,ZAN\0\n", 9), std::string("\xFF\x80ZAN\xFE"),
        std::string(",,,ZAN,,,,\r")}) {
    bench.instrument.on("*IDN?", identity);
    EXPECT_TRUE(bench.zan().AutoConnect());
    EXPECT_EQ(bench.zan().IDN(), identity);
  }
}

TEST_F(VisaDiscovery, anIdentityIsCutAtSeventyTwoBytes) {
  const std::string identity = "LUMO,ZAN-6400," + std::string(100, 'x');
  bench.instrument.on("*IDN?", identity);
  EXPECT_TRUE(bench.zan().AutoConnect());
  EXPECT_EQ(bench.zan().IDN(), identity.substr(0, 72));
}

TEST_F(VisaDiscovery, aProductWordBeyondSeventyTwoBytesDoesNotMatch) {
  bench.instrument.on("*IDN?", std::string(70, 'x') + "ZAN");
  EXPECT_FALSE(bench.zan().AutoConnect());
}

TEST_F(VisaDiscovery, theTagHoldsTheDescriptorPaddedToItsBuffer) {
  bench.click("cmdAutoConnVISA");
  EXPECT_EQ(bench.read("cmbVISARes", "Tag"), kResource + std::string(256 - 15, ' '));
  EXPECT_EQ(bench.text("cmbVISARes"), kResource);
  bench.click("cmdConnVISA");
  EXPECT_EQ(bench.read("cmbVISARes", "Tag"), kResource + std::string(255 - 15, ' '));
}

TEST_F(VisaDiscovery, aDescriptorLongerThanItsBufferIsCut) {
  bench.visa.resources[0].descriptor = std::string(300, 'G');
  bench.click("cmdAutoConnVISA");
  EXPECT_EQ(bench.read("cmbVISARes", "Tag"), std::string(256, 'G'));
  EXPECT_FALSE(bench.zan().isConnected());
}

TEST_F(VisaDiscovery, repeatedManualConnectsKeepTheListAndAppendToIt) {
  bench.click("cmdAutoConnVISA");
  bench.click("cmdConnVISA");
  bench.click("cmdConnVISA");
  EXPECT_EQ(bench.items("cmbVISARes"), lines({kResource, kResource, kResource}));
  bench.click("cmdAutoConnVISA");
  EXPECT_EQ(bench.items("cmbVISARes"), lines({kResource}));
}

TEST_F(VisaDiscovery, anAutomaticConnectEmptiesTheListsFirst) {
  for (const char* list : {"List1", "List2", "List3"}) {
    bench.control<toolkit::ListBox>(list).addItem("CH1");
  }
  bench.type("cmbVISARes", "typed");
  bench.control<toolkit::ComboBox>("cmbVISARes").addItem("old");
  bench.control<toolkit::ComboBox>("cmbVISARes").setTag("old");
  bench.script.fail("viOpenDefaultRM", io::VI_ERROR_LIBRARY_NFOUND);
  bench.click("cmdAutoConnVISA");
  for (const char* list : {"List1", "List2", "List3", "cmbVISARes"}) {
    EXPECT_EQ(bench.items(list), "") << list;
  }
  EXPECT_EQ(bench.text("cmbVISARes"), "");
  EXPECT_EQ(bench.read("cmbVISARes", "Tag"), "");
}

TEST_F(VisaDiscovery, aManualConnectKeepsTheListsAndForgetsTheTag) {
  bench.control<toolkit::ListBox>("List1").addItem("CH1");
  bench.type("cmbVISARes", "typed");
  bench.control<toolkit::ComboBox>("cmbVISARes").setTag("old");
  bench.script.fail("viOpenDefaultRM", io::VI_ERROR_LIBRARY_NFOUND);
  bench.click("cmdConnVISA");
  EXPECT_EQ(bench.items("List1"), lines({"CH1"}));
  EXPECT_EQ(bench.text("cmbVISARes"), "typed");
  EXPECT_EQ(bench.read("cmbVISARes", "Tag"), "");
}

TEST_F(VisaDiscovery, theHourglassStandsOnEveryWayThroughAnAutomaticConnectAndNeverLonger) {
  bench.watch({"ZANCtrl"});
  const std::string pointer = lines({"ZANCtrl.MousePointer 11", "ZANCtrl.MousePointer 1"});
  bench.click("cmdAutoConnVISA");
  EXPECT_EQ(bench.journal({"ZANCtrl"}), pointer);
  bench.instrument.on("*IDN?", {support::answer(kIdentity), silence()});
  bench.click("cmdAutoConnVISA");
  EXPECT_EQ(bench.journal({"ZANCtrl"}), pointer);
  bench.instrument.on("*IDN?", silence());
  bench.click("cmdAutoConnVISA");
  EXPECT_EQ(bench.journal({"ZANCtrl"}), pointer);
  for (const char* call : {"viFindRsrc", "viOpenDefaultRM"}) {
    bench.script.fail(call, io::VI_ERROR_SYSTEM_ERROR);
    bench.click("cmdAutoConnVISA");
    EXPECT_EQ(bench.journal({"ZANCtrl"}), pointer) << call;
  }
}

TEST_F(VisaDiscovery, aManualConnectLeavesTheMousePointerAlone) {
  bench.watch({"ZANCtrl"});
  bench.click("cmdConnVISA");
  EXPECT_EQ(bench.journal({"ZANCtrl"}), "");
}

struct Failure {
  const char* call;
  std::vector<std::string> journal;
};

TEST_F(VisaDiscovery, aFailedCallSkipsTheCandidateOrEndsTheSearchAndClosesWhatIsOpen) {
  const std::vector<Failure> failures = {
      {"viOpenDefaultRM", {"viOpenDefaultRM"}},
      {"viFindRsrc", {"viOpenDefaultRM", "viFindRsrc 1 ?*INSTR", "viClose 1"}},
      {"viOpen 1",
       {"viOpenDefaultRM", "viFindRsrc 1 ?*INSTR", "viOpen 1 GPIB0::7::INSTR 1 1", "viFindNext 2",
        "viClose 2", "viClose 1"}},
      {"viGetAttribute",
       {"viOpenDefaultRM", "viFindRsrc 1 ?*INSTR", "viOpen 1 GPIB0::7::INSTR 1 1",
        "viGetAttribute 3 BFFF00E9", "viClose 3", "viFindNext 2", "viClose 2", "viClose 1"}},
      {"viWrite",
       {"viOpenDefaultRM", "viFindRsrc 1 ?*INSTR", "viOpen 1 GPIB0::7::INSTR 1 1",
        "viGetAttribute 3 BFFF00E9", "viSetAttribute 3 3FFF0018 13",
        "viSetAttribute 3 3FFF0038 4294967295", "viSetAttribute 3 3FFF001A 200",
        "viSetAttribute 3 3FFF0016 0", "viWrite 3 *IDN?\\r", "viRead 3 72", "viClose 3",
        "viFindNext 2", "viClose 2", "viClose 1"}},
  };
  for (const auto& [call, journal] : failures) {
    Bench fresh;
    fresh.stopReceivePoll();
    fresh.visa.resources = {{kResource, "GPIB0", &bench.instrument}};
    fresh.script.fail(call, io::VI_ERROR_SYSTEM_ERROR);
    EXPECT_FALSE(fresh.zan().AutoConnect()) << call;
    EXPECT_EQ(fresh.journal(), lines(journal));
    EXPECT_EQ(fresh.visa.openHandles(), "") << call;
    EXPECT_FALSE(fresh.zan().isConnected()) << call;
  }
}

TEST_F(VisaDiscovery, aFailedReadDoesNotMatch) {
  bench.script.fail("viRead", io::VI_ERROR_TMO);
  EXPECT_FALSE(bench.zan().AutoConnect());
  EXPECT_EQ(bench.visa.openHandles(), "");
}

TEST_F(VisaDiscovery, refusedAttributesAndFailedClosesChangeNothing) {
  bench.script.fail("viSetAttribute", io::VI_ERROR_NSUP_ATTR);
  bench.script.fail("viClose", io::VI_ERROR_SYSTEM_ERROR);
  EXPECT_TRUE(bench.zan().AutoConnect());
}

TEST_F(VisaDiscovery, warningsAreNoErrors) {
  bench.script.fail("vi", io::VI_WARN_NULL_OBJECT);
  EXPECT_TRUE(bench.zan().AutoConnect());
}

TEST_F(VisaDiscovery, aCandidateThatCannotBeOpenedDoesNotStopTheSearch) {
  bench.visa.resources.push_back({"GPIB0::9::INSTR", "GPIB0", &bench.instrument});
  bench.script.fail("viOpen 1 GPIB0::7", io::VI_ERROR_RSRC_LOCKED);
  EXPECT_TRUE(bench.zan().AutoConnect());
  EXPECT_EQ(bench.items("cmbVISARes"), lines({"GPIB0::9::INSTR"}));
}

TEST_F(VisaDiscovery, aFailedNextEndsTheSearchWithWhatItFound) {
  bench.visa.resources.push_back({"GPIB0::9::INSTR", "GPIB0", &bench.instrument});
  bench.script.fail("viFindNext", io::VI_ERROR_SYSTEM_ERROR);
  EXPECT_TRUE(bench.zan().AutoConnect());
  EXPECT_EQ(bench.items("cmbVISARes"), lines({kResource}));
}

TEST_F(VisaDiscovery, aCountTooLargeListsEveryInstrumentOnce) {
  bench.visa.claimedCount = 0xFFFFFFFF;
  EXPECT_TRUE(bench.zan().AutoConnect());
  EXPECT_EQ(bench.items("cmbVISARes"), lines({kResource}));
}

TEST_F(VisaDiscovery, aCountOfNoneOpensNothing) {
  bench.visa.claimedCount = 0;
  EXPECT_FALSE(bench.zan().AutoConnect());
  EXPECT_EQ(bench.journal(),
            lines({"viOpenDefaultRM", "viFindRsrc 1 ?*INSTR", "viClose 2", "viClose 1"}));
}

TEST_F(VisaDiscovery, withoutAMatchAConnectedComponentStaysAsItIs) {
  bench.click("cmdAutoConnVISA");
  const std::string channels = bench.items("cmbChannel");
  bench.instrument.on("*IDN?", silence());
  bench.click("cmdConnVISA");
  EXPECT_TRUE(bench.zan().isConnected());
  EXPECT_EQ(bench.items("cmbChannel"), channels);
  EXPECT_EQ(bench.read("fraOverChk", "Enabled"), "True");
  EXPECT_FALSE(bench.zan().bDevAvaliable());
}

}  // namespace
}  // namespace lumodevice
