#include <gtest/gtest.h>

#include "tests/link/link_parts.hpp"

namespace lumodevice {
namespace {

using link::LinkParts;
using support::Bench;
using support::lines;
using support::silence;

constexpr const char* kResource = "GPIB0::7::INSTR";

struct Identity {
  const char* answer;
  const char* maker;
  const char* model;
  const char* serialNumber;
  const char* firmwareVersion;
  std::array<std::string, 3> versionParts;
};

TEST(ParseIdentity, splitsTheAnswerAtItsCommasAndTheVersionAtItsDots) {
  for (const Identity& row : {
           Identity{"LUMO,ZAN-6400,A1,1.20", "LUMO", "ZAN-6400", "A1", "1.20", {"1", "20", ""}},
           Identity{"LUMO,ZAN,A1,1.2.3", "LUMO", "ZAN", "A1", "1.2.3", {"1", "2", "3"}},
           Identity{"LUMO,ZAN,A1,1.2.3.4", "LUMO", "ZAN", "A1", "1.2.3.4", {"1", "2", "3"}},
           Identity{"LUMO,ZAN,A1,7", "LUMO", "ZAN", "A1", "7", {"", "", ""}},
           Identity{"LUMO,ZAN,A1,", "LUMO", "ZAN", "A1", "", {"", "", ""}},
           Identity{"LUMO,ZAN,A1,..", "LUMO", "ZAN", "A1", "..", {"", "", ""}},
           Identity{"LUMO,ZAN,A1,1.2.3\n", "LUMO", "ZAN", "A1", "1.2.3\n", {"1", "2", "3\n"}},
           Identity{"LUMO,ZAN,A1,1.2,five,six", "LUMO", "ZAN", "A1", "1.2", {"1", "2", ""}},
           Identity{",,,", "", "", "", "", {"", "", ""}},
           Identity{"LUMO,ZAN,A1", "", "", "", "", {"", "", ""}},
           Identity{"ZAN", "", "", "", "", {"", "", ""}},
           Identity{"", "", "", "", "", {"", "", ""}},
       }) {
    link::Identity identity;
    identity.setAnswer("old,old,old,old.old.old");
    identity.ParseIdentity();
    identity.setAnswer(row.answer);
    identity.ParseIdentity();
    const link::IdentityFields& fields = identity.fields();
    EXPECT_EQ(fields.maker, row.maker) << row.answer;
    EXPECT_EQ(fields.model, row.model) << row.answer;
    EXPECT_EQ(fields.serialNumber, row.serialNumber) << row.answer;
    EXPECT_EQ(fields.firmwareVersion, row.firmwareVersion) << row.answer;
    EXPECT_EQ(fields.versionParts, row.versionParts) << row.answer;
  }
}

/// A component that connects through VISA COM, whose answers may be of any length.
class ChannelScan : public testing::Test {
 protected:
  ChannelScan() {
    bench.stopReceivePoll();
    bench.visa.resources = {{kResource, "GPIB0", &bench.instrument}};
    bench.visaCom.instruments = {{kResource, &bench.instrument}};
    bench.instrument.on(":CHAN?", "99\n");
    bench.click("optVisa2");
  }
  Bench bench;
};

struct Slots {
  const char* answer;
  std::vector<std::string> channels;
  std::vector<std::string> groupCapable;
};

TEST_F(ChannelScan, listsTheOccupiedSlotsAndTheModulesThatCanBeGrouped) {
  for (const Slots& row : {
           Slots{"ZAN2040,0,ZAN6310,0\n", {"CH1-ZAN2040", "CH2-ZAN6310"}, {"CH1"}},
           Slots{"0,A,0,B\n", {"CH1-A", "CH2-B"}, {}},
           Slots{"0,0,0,0\n", {}, {}},
           Slots{"2040,X2041L,2041R,ZAN2042\n",
                 {"CH1-2040", "CH2-X2041L", "CH3-2041R", "CH4-ZAN2042"},
                 {"CH1", "CH2", "CH3"}},
           Slots{"A,,B\n", {"CH1-A", "CH2-", "CH3-B"}, {}},
           Slots{"00, 0,0 ,A\n", {"CH1-00", "CH2- 0", "CH3-0 ", "CH4-A"}, {}},
           Slots{"A\n", {"CH1-A"}, {}},
           Slots{"\xB5,\x80\n", {"CH1-\xB5", "CH2-\x80"}, {}},
       }) {
    bench.instrument.on("*RDT?", row.answer);
    bench.click("cmdAutoConnVISA");
    EXPECT_EQ(bench.items("cmbChannel"), lines(row.channels)) << row.answer;
    EXPECT_EQ(bench.items("List1"), lines(row.groupCapable)) << row.answer;
    EXPECT_EQ(bench.zan().ChCount(), static_cast<int>(row.channels.size()));
  }
}

TEST_F(ChannelScan, leavesNoGroupToBeMade) {
  bench.control<toolkit::CommandButton>("cmdParalle").setEnabled(true);
  bench.click("cmdAutoConnVISA");
  EXPECT_EQ(bench.read("cmdParalle", "Enabled"), "False");
  EXPECT_EQ(bench.read("List3", "Visible"), "False");
  EXPECT_EQ(bench.read("lblConcate(2)", "Visible"), "False");
}

TEST_F(ChannelScan, withoutAnAnswerTheListStaysEmptyAndTheGroupControlsAlone) {
  bench.control<toolkit::CommandButton>("cmdParalle").setEnabled(true);
  bench.instrument.on("*RDT?", silence());
  bench.click("cmdAutoConnVISA");
  EXPECT_EQ(bench.items("cmbChannel"), "");
  EXPECT_EQ(bench.read("cmdParalle", "Enabled"), "True");
  EXPECT_EQ(bench.read("List3", "Visible"), "True");
  EXPECT_TRUE(bench.zan().isConnected());
}

TEST_F(ChannelScan, withoutAChannelNumberTheChannelIsTheFirst) {
  bench.instrument.on("*RDT?", "0,0,0,0\n");
  bench.instrument.on(":CHAN?", silence());
  bench.click("cmdAutoConnVISA");
  EXPECT_EQ(bench.items("cmbChannel"), "");
  EXPECT_EQ(bench.text("cmbChannel"), "CH1");
}

TEST_F(ChannelScan, selectsThePresentChannelAndLeavesTheSelectionAloneForAnyOther) {
  struct Present {
    const char* answer;
    int index;
  };
  bench.instrument.on("*RDT?", "A,B,C\n");
  for (const auto& [answer, index] :
       {Present{"1\n", 0}, Present{"3\n", 2}, Present{" 2 \n", 1}, Present{"2,x\n", 1},
        Present{"1.6\n", 1}, Present{"0\n", -1}, Present{"4\n", -1}, Present{"-1\n", -1},
        Present{"none\n", -1}, Present{"99999999999\n", -1}, Present{"1E999\n", -1}}) {
    bench.instrument.on(":CHAN?", answer);
    bench.click("cmdAutoConnVISA");
    EXPECT_EQ(bench.read("cmbChannel", "ListIndex"), std::to_string(index)) << answer;
    EXPECT_TRUE(bench.zan().isConnected());
  }
}

TEST_F(ChannelScan, selectingTheChannelTellsTheInstrument) {
  bench.instrument.on(":CHAN?", "2\n");
  bench.click("cmdAutoConnVISA");
  EXPECT_EQ(bench.journal({"WriteString :CHAN 2"}), lines({"WriteString :CHAN 2\\n END"}));
}

TEST_F(ChannelScan, emptiesTheCommandBoxBeforeItAsksForThePresentChannel) {
  bench.watch({"TXT"});
  bench.zan().SendCmd(":CHAN?");
  bench.click("cmdAutoConnVISA");
  EXPECT_EQ(bench.journal({"TXT"}), lines({"TXT.Text :CHAN?", "TXT.Text ", "TXT.Text :CHAN?"}));
}

TEST_F(ChannelScan, asksForThePresentChannelEvenWhenThatWasTheLastCommand) {
  bench.click("cmdAutoConnVISA");
  bench.journal();
  bench.zan().SendCmd(":CHAN?");
  bench.click("cmdAutoConnVISA");
  EXPECT_EQ(bench.journal({"WriteString :CHAN?"}),
            lines({"WriteString :CHAN?\\n END", "WriteString :CHAN?\\n END"}));
}

std::string parts(int count, const std::string& part) {
  std::string text = part;
  for (int i = 1; i < count; ++i) {
    text += ',' + part;
  }
  return text + '\n';
}

TEST_F(ChannelScan, aListOfMoreChannelsThanCanBeCountedEndsTheScan) {
  bench.instrument.on("*RDT?", parts(40000, "A"));
  EXPECT_TRUE(bench.zan().AutoConnect());
  EXPECT_TRUE(bench.zan().isConnected());
  EXPECT_EQ(bench.zan().ChCount(), 32767);
  EXPECT_EQ(bench.journal({"WriteString :CHAN?"}), "");
  EXPECT_EQ(bench.read("ZANCtrl", "MousePointer"), "1");
}

TEST_F(ChannelScan, aListOfAMegabyteIsListed) {
  bench.instrument.on("*RDT?", parts(1000, std::string(1050, 'A')));
  EXPECT_TRUE(bench.zan().AutoConnect());
  EXPECT_EQ(bench.zan().ChCount(), 1000);
}

TEST(ChannelList, isRefreshedByTheGroupEditorWhenTheVersionHasAThirdPart) {
  for (const auto& [version, asked] : std::vector<std::pair<const char*, int>>{
           {"1.2", 0}, {"1.2.", 0}, {"1.2.3", 1}, {"1.2.3.4", 1}}) {
    LinkParts parts;
    int refreshed = 0;
    parts.channels.callbacks.refreshGroups = [&] { ++refreshed; };
    parts.identity.setAnswer(std::string("LUMO,ZAN,A1,") + version);
    parts.identity.ParseIdentity();
    parts.form.txtReturn.setText("ZAN");
    parts.channels.RefreshChannelList();
    EXPECT_EQ(refreshed, asked) << version;
    EXPECT_EQ(parts.form.Text2.text(), ":CHAN?");
  }
}

TEST(ChannelList, aThirdVersionPartIsScannedAsSingleChannelsWithoutAGroupEditor) {
  LinkParts parts;
  parts.identity.setAnswer("LUMO,ZAN,A1,1.2.3");
  parts.identity.ParseIdentity();
  parts.form.txtReturn.setText("ZAN");
  int forgotten = 0;
  parts.channels.callbacks.forgetFreeChannels = [&] { ++forgotten; };
  parts.channels.RefreshChannelList();
  EXPECT_EQ(forgotten, 1);
}

TEST(ChannelList, isOnlyEmptiedWhenTheAnswerIsNotOneOfOurs) {
  LinkParts parts;
  parts.form.cmbChannel.addItem("CH1-A");
  parts.form.txtReturn.setText("zan");
  parts.channels.RefreshChannelList();
  EXPECT_EQ(parts.form.cmbChannel.listCount(), 0);
  EXPECT_EQ(parts.state.panelState(), link::kConnected);
  EXPECT_EQ(parts.bench.journal(), "");
}

TEST(ConnectResult, aGoodOneEnablesTheConsoleAndRefreshesTheList) {
  LinkParts parts;
  int shown = 0;
  parts.channels.callbacks.showConnected = [&] { ++shown; };
  parts.form.txtReturn.setText("ZAN");
  parts.state.setLinkName(link::kGpib);
  parts.channels.ApplyConnectResult(true);
  EXPECT_TRUE(parts.form.cmdSendCmd.enabled());
  EXPECT_EQ(shown, 1);
  EXPECT_EQ(parts.state.panelState(), link::kConnected);
  EXPECT_EQ(parts.form.cmbChannel.text(), "CH1");
}

TEST(ConnectResult, aBadOneDisablesTheConsoleAndTakesTheUnconnectedLook) {
  LinkParts parts;
  int shown = 0;
  parts.channels.callbacks.showUnconnected = [&] { ++shown; };
  parts.form.cmdSendCmd.setEnabled(true);
  parts.channels.ApplyConnectResult(false);
  EXPECT_FALSE(parts.form.cmdSendCmd.enabled());
  EXPECT_EQ(shown, 1);
  EXPECT_EQ(parts.state.panelState(), link::kNotConnected);
  EXPECT_EQ(parts.bench.journal(), "");
}

TEST(UnconnectedLook, showsTheStaticCurrentFrameAndNothingElse) {
  Bench bench;
  bench.connectVisa();
  for (const char* frame :
       {"FrameCCStatic", "fraCCDynamic", "fraCRDynamic", "FrameCRStatic", "FrameCV"}) {
    bench.control<toolkit::Frame>(frame).setVisible(true);
  }
  bench.control<toolkit::Frame>("FrameCCStatic").moveTo(1, 2);
  for (const char* readOut : {"txtVoltage", "txtCurrent", "txtPower"}) {
    bench.control<toolkit::TextBox>(readOut, 0).setText("1.0");
  }
  bench.journal();
  bench.zan().NotConnect();
  EXPECT_EQ(bench.read("FrameCCStatic", "Visible"), "True");
  EXPECT_EQ(bench.read("FrameCCStatic", "Enabled"), "False");
  EXPECT_EQ(bench.read("FrameCCStatic", "Left"), "120");
  EXPECT_EQ(bench.read("FrameCCStatic", "Top"), "3000");
  for (const char* frame : {"fraCCDynamic", "fraCRDynamic", "FrameCRStatic", "FrameCV"}) {
    EXPECT_EQ(bench.read(frame, "Visible"), "False") << frame;
  }
  for (const char* readOut : {"txtVoltage(0)", "txtCurrent(0)", "txtPower(0)"}) {
    EXPECT_EQ(bench.text(readOut), "") << readOut;
  }
  EXPECT_EQ(bench.read("fraOverChk", "Enabled"), "False");
}

TEST(UnconnectedLook, closesNothingAndLeavesTheConsoleAsItIs) {
  Bench bench;
  bench.connectVisa();
  bench.zan().NotConnect();
  EXPECT_EQ(bench.journal(), "");
  EXPECT_TRUE(bench.zan().isConnected());
}

TEST(UnconnectedLook, endsWithTheNextConnect) {
  Bench bench;
  bench.zan().NotConnect();
  bench.connectVisa();
  EXPECT_EQ(bench.read("fraOverChk", "Enabled"), "True");
}

}  // namespace
}  // namespace lumodevice
