#include <gtest/gtest.h>

#include "tests/support/bench.hpp"

namespace lumodevice {
namespace {

using support::Bench;
using support::kIdentity;
using support::lines;
using support::silence;

TEST(NewComponent, touchesNothingOutside) {
  Bench bench;
  EXPECT_EQ(bench.journal(), "");
}

TEST(NewComponent, isUnconnectedInEveryMember) {
  Bench bench;
  EXPECT_FALSE(bench.zan().isConnected());
  EXPECT_FALSE(bench.zan().bDevAvaliable());
  EXPECT_EQ(bench.zan().ChCount(), 0);
  EXPECT_EQ(bench.zan().ConnStyle(), LinkKind::NotConnected);
  EXPECT_EQ(bench.zan().ErrMessage(), "");
  EXPECT_EQ(bench.zan().ResultStr(), "");
  EXPECT_EQ(bench.zan().IDN(), "");
  EXPECT_EQ(bench.zan().devZAN(), nullptr);
  EXPECT_EQ(bench.journal(), "");
}

struct Start {
  const char* control;
  const char* property;
  const char* value;
};

TEST(NewComponent, startsWithTheseValues) {
  Bench bench;
  for (const auto& [control, property, value] : {
           Start{"optVISA", "Value", "True"},
           Start{"optConnRS232", "Value", "False"},
           Start{"optVisa1", "Value", "True"},
           Start{"optVisa2", "Value", "False"},
           Start{"Text1", "Text", "2"},
           Start{"Text2", "Text", "*IDN?"},
           Start{"Text3", "Text", ""},
           Start{"Text4", "Text", "Text4"},
           Start{"Text5", "Text", "200"},
           Start{"Text6", "Text", "35"},
           Start{"TXT", "Text", ""},
           Start{"txtReturn", "Text", ""},
           Start{"txtSetCmd", "Text", ""},
           Start{"txtVISATimeout", "Text", "200"},
           Start{"Timer1", "Interval", "200"},
           Start{"Timer1", "Enabled", "False"},
           Start{"Timer2", "Interval", "35"},
           Start{"Timer2", "Enabled", "True"},
           Start{"cmdSendCmd", "Enabled", "False"},
       }) {
    EXPECT_EQ(bench.read(control, property), value) << control << '.' << property;
  }
  EXPECT_EQ(bench.items("Combo2"), lines({"38400", "19200", "9600", "4800"}));
  EXPECT_EQ(bench.items("Combo1"), "");
  EXPECT_EQ(bench.items("cmbChannel"), "");
}

TEST(Members, countsChannelsOnlyWhileConnected) {
  Bench bench;
  bench.connectSerial();
  EXPECT_EQ(bench.zan().ChCount(), 2);
  bench.click("optVISA");
  EXPECT_EQ(bench.zan().ChCount(), 0);
}

TEST(Members, tellTheKindOfLink) {
  Bench library;
  library.connectVisa();
  EXPECT_EQ(library.zan().ConnStyle(), LinkKind::Visa);
  Bench com;
  com.connectVisaCom();
  EXPECT_EQ(com.zan().ConnStyle(), LinkKind::Visa);
  Bench serial;
  serial.connectSerial();
  EXPECT_EQ(serial.zan().ConnStyle(), LinkKind::Serial);
}

TEST(Members, theHostMayWriteTheDataMembers) {
  Bench bench;
  bench.zan().bDevAvaliable(true);
  bench.zan().IDN("mine");
  const auto device = bench.visaCom.createFormattedIO488();
  bench.zan().devZAN(device);
  EXPECT_TRUE(bench.zan().bDevAvaliable());
  EXPECT_EQ(bench.zan().IDN(), "mine");
  EXPECT_EQ(bench.zan().devZAN(), device);
}

TEST(AutoConnect, showsTheConnectionPanelAndSearchesTheVisaLinkUnlessSerialIsChosen) {
  Bench bench;
  bench.zan().ShowControl();
  bench.visa.resources = {{"GPIB0::7::INSTR", "GPIB0", &bench.instrument}};
  EXPECT_TRUE(bench.zan().AutoConnect());
  EXPECT_EQ(bench.read("frmSetting", "Visible"), "True");
  EXPECT_EQ(bench.zan().IDN(), std::string(kIdentity) + "\n");
  EXPECT_EQ(bench.journal({"COM"}), "");
}

TEST(AutoConnect, searchesTheSerialPortsWhenTheyAreChosen) {
  Bench bench;
  bench.serial.ports[3].instrument = &bench.instrument;
  bench.click("optConnRS232");
  EXPECT_TRUE(bench.zan().AutoConnect());
  EXPECT_EQ(bench.zan().ConnStyle(), LinkKind::Serial);
  EXPECT_EQ(bench.journal({"vi"}), "");
}

TEST(AutoConnect, isFalseWhenNothingWasFoundWhateverWasThereBefore) {
  Bench bench;
  bench.connectVisa();
  EXPECT_TRUE(bench.zan().bDevAvaliable());
  bench.instrument.on("*IDN?", silence());
  EXPECT_FALSE(bench.zan().AutoConnect());
  EXPECT_FALSE(bench.zan().bDevAvaliable());
}

TEST(ConnectionPanel, comesToTheFrontAndHidesTheInstrumentsScreenForGood) {
  Bench bench;
  auto& screen = bench.control<toolkit::PictureBox>("Picture1");
  auto& frame = bench.control<toolkit::Frame>("frmSetting");
  bench.zan().ShowControl();
  EXPECT_FALSE(frame.visible());
  screen.setVisible(true);
  screen.bringToFront();
  bench.zan().ShowConnect();
  EXPECT_TRUE(frame.visible());
  EXPECT_FALSE(screen.visible());
  for (const auto& control : bench.zan().surface().controls()) {
    if (control->container() == frame.container() && control.get() != &frame) {
      EXPECT_LT(control->zOrder(), frame.zOrder()) << control->fullName();
    }
  }
  bench.zan().ShowControl();
  EXPECT_FALSE(frame.visible());
  EXPECT_FALSE(screen.visible());
}

TEST(CapturedScreen, isPutAwayByAClickOnIt) {
  Bench bench;
  auto& image = bench.control<toolkit::Image>("Image1");
  image.setVisible(true);
  bench.click("Image1");
  EXPECT_FALSE(image.visible());
}

TEST(ConnectionPanel, itsButtonsDoWhatTheMembersDo) {
  Bench bench;
  bench.click("cmdConnectOK");
  EXPECT_EQ(bench.read("frmSetting", "Visible"), "False");
  bench.click("cmdConnect");
  EXPECT_EQ(bench.read("frmSetting", "Visible"), "True");
}

TEST(DisplayCmd, showsAndHidesTheCommandBoxAndTheButtonsInOrder) {
  const std::vector<std::string> names = {
      "TXT",          "cmdGetCTRLScrn", "cmdGetBMPFile",    "cmdGetPresetFile",  "cmdSetPresetFile",
      "cmdWork",      "cmdConnect",     "cmdGetSystemFile", "cmdSendSystemFile", "cmdConnectOK",
      "cmdGetSeqFile"};
  Bench bench;
  bench.zan().DisplayCmd(false);
  for (const std::string& name : names) {
    EXPECT_EQ(bench.read(name, "Visible"), "False") << name;
    bench.watch({name});
  }
  bench.zan().DisplayCmd(true);
  std::vector<std::string> shown;
  shown.reserve(names.size());
  for (const std::string& name : names) {
    shown.push_back(name + ".Visible True");
  }
  EXPECT_EQ(bench.journal(), lines(shown));
}

}  // namespace
}  // namespace lumodevice
