#include <gtest/gtest.h>

#include "tests/support/bench.hpp"

namespace lumodevice {
namespace {

using std::chrono::milliseconds;
using support::Bench;
using support::MemoryDrive;

constexpr std::string_view kUpload = "c:\\temp\\ZANProgUpload.b";
constexpr std::string_view kPreset = "c:\\temp\\zanbank.dev";
constexpr std::string_view kMarker = "c:\\temp\\test.dev";

struct Case {
  const char* name;
  void (*connect)(Bench&);
  LinkKind kind;
  bool carriesFiles;
  /// What a written command begins with in the journal.
  const char* write;
};

const Case kCases[] = {
    {"NoLink", [](Bench&) {}, LinkKind::NotConnected, false, "nothing"},
    {"VisaLibrary", [](Bench& bench) { bench.connectVisa(); }, LinkKind::Visa, false, "viWrite"},
    {"VisaCom", [](Bench& bench) { bench.connectVisaCom(); }, LinkKind::Visa, true, "WriteString"},
    {"SerialPort", [](Bench& bench) { bench.connectSerial(); }, LinkKind::Serial, true,
     "COM3 write"},
};

class MembersOnEveryLink : public testing::TestWithParam<Case> {
 protected:
  MembersOnEveryLink() {
    GetParam().connect(bench);
    bench.journal();
  }

  [[nodiscard]] bool connected() const { return GetParam().kind != LinkKind::NotConnected; }
  [[nodiscard]] bool serial() const { return GetParam().kind == LinkKind::Serial; }

  /// How often the instrument got the command.
  int sent(std::string_view command) {
    int count = 0;
    const std::string written = bench.journal({GetParam().write});
    for (std::size_t at = written.find(command); at != std::string::npos;
         at = written.find(command, at + 1)) {
      ++count;
    }
    return count;
  }

  Bench bench;
};

TEST_P(MembersOnEveryLink, isConnectedAndItsKin) {
  EXPECT_EQ(bench.zan().isConnected(), connected());
  EXPECT_EQ(bench.zan().bDevAvaliable(), connected());
  EXPECT_EQ(bench.zan().ConnStyle(), GetParam().kind);
  EXPECT_EQ(bench.zan().ChCount(), connected() ? 2 : 0);
  EXPECT_EQ(bench.zan().IDN().empty(), !connected());
  EXPECT_EQ(bench.journal(), "");
}

TEST_P(MembersOnEveryLink, devZANIsThereOverVisaComAlone) {
  EXPECT_EQ(bench.zan().devZAN() != nullptr, GetParam().write == std::string("WriteString"));
}

TEST_P(MembersOnEveryLink, SendCmdSendsTheSameCommandAgain) {
  bench.zan().SendCmd(":CURR:STAT:L1 1");
  bench.zan().SendCmd(":CURR:STAT:L1 1");
  EXPECT_EQ(sent(":CURR:STAT:L1 1"), connected() ? 2 : 0);
}

TEST_P(MembersOnEveryLink, SendCmdPassesOverABlankCommand) {
  bench.zan().SendCmd("");
  bench.zan().SendCmd("   ");
  EXPECT_EQ(bench.journal(), "");
}

TEST_P(MembersOnEveryLink, ResultStrIsTheLastAnswer) {
  bench.instrument.on(":Q?", "12.5\n");
  bench.zan().SendCmd(":Q?");
  EXPECT_EQ(bench.zan().ResultStr(), connected() ? "12.5" : "");
}

TEST_P(MembersOnEveryLink, ErrMessageAsksTheInstrumentWhereThereIsOne) {
  bench.instrument.on(":SYST:ERR?", "-113,\"Undefined header\"\n");
  EXPECT_EQ(bench.zan().ErrMessage(), connected() ? "-113,\"Undefined header\"" : "");
  EXPECT_EQ(sent(":SYST:ERR?"), connected() ? 1 : 0);
}

TEST_P(MembersOnEveryLink, AutoQueryAsksForReadingsUntilItIsSwitchedOff) {
  EXPECT_FALSE(bench.zan().AutoQuery());
  bench.zan().AutoQuery(true);
  EXPECT_TRUE(bench.zan().AutoQuery());
  bench.run(milliseconds(1100));
  EXPECT_EQ(sent(":FETC:VOLT?") > 0, connected());
  bench.zan().AutoQuery(false);
  EXPECT_FALSE(bench.zan().AutoQuery());
  bench.run(milliseconds(1000));
  bench.journal();
  bench.run(milliseconds(1000));
  EXPECT_EQ(sent(":FETC"), 0);
}

TEST_P(MembersOnEveryLink, nextCmdWalksTheCommandsAndSendsNothing) {
  const std::string first = bench.zan().nextCmd();
  EXPECT_NE(first, "");
  EXPECT_NE(bench.zan().nextCmd(), first);
  EXPECT_EQ(bench.journal(), "");
}

TEST_P(MembersOnEveryLink, ShowControlShowConnectAndDisplayCmdTouchThePanelAlone) {
  bench.zan().ShowControl();
  EXPECT_EQ(bench.read("frmSetting", "Visible"), "False");
  bench.zan().ShowConnect();
  EXPECT_EQ(bench.read("frmSetting", "Visible"), "True");
  bench.zan().DisplayCmd(false);
  EXPECT_EQ(bench.read("TXT", "Visible"), "False");
  bench.zan().DisplayCmd(true);
  EXPECT_EQ(bench.read("TXT", "Visible"), "True");
  EXPECT_EQ(bench.journal(), "");
}

TEST_P(MembersOnEveryLink, NotConnectResetsThePanelAndLeavesTheLinkOpen) {
  bench.zan().NotConnect();
  EXPECT_EQ(bench.read("FrameCCStatic", "Enabled"), "False");
  EXPECT_EQ(bench.read("fraOverChk", "Enabled"), "False");
  EXPECT_EQ(bench.zan().isConnected(), connected());
  EXPECT_EQ(bench.journal(), "");
}

TEST_P(MembersOnEveryLink, AutoConnectFindsTheInstrumentOfTheChosenLink) {
  EXPECT_EQ(bench.zan().AutoConnect(), connected());
  EXPECT_EQ(bench.zan().isConnected(), connected());
  EXPECT_EQ(bench.read("frmSetting", "Visible"), "True");
}

TEST_P(MembersOnEveryLink, GetSeqFileAndGetSysFileAreTrueWhateverCame) {
  const std::string answer = serial() ? "#15hello\n" : "hello";
  bench.instrument.on(":MEM:FILE:SEQ?", answer);
  bench.instrument.on(":SYST:SET?", answer);
  EXPECT_TRUE(bench.zan().GetSeqFile());
  EXPECT_TRUE(bench.zan().GetSysFile());
  EXPECT_EQ(bench.drive.fileExists("c:\\temp\\ZANSeq.a"), GetParam().carriesFiles);
  EXPECT_EQ(bench.drive.fileExists("c:\\temp\\ZANProg.b"), GetParam().carriesFiles);
}

TEST_P(MembersOnEveryLink, SendSysFileIsTrueWhereThereIsAFile) {
  EXPECT_FALSE(bench.zan().SendSysFile());
  EXPECT_EQ(bench.journal(), "");
  bench.drive.content(kUpload) = MemoryDrive::Bytes(100, 7);
  EXPECT_TRUE(bench.zan().SendSysFile());
}

TEST_P(MembersOnEveryLink, GetPresetFileKeepsItsFixedName) {
  bench.instrument.on(":MEM:FILE:PRES?", serial() ? "#15hello\n" : "hello");
  EXPECT_EQ(bench.zan().GetPresetFile("c:\\mine.dev"), GetParam().carriesFiles);
  EXPECT_EQ(bench.drive.fileExists(kPreset), GetParam().carriesFiles);
  EXPECT_FALSE(bench.drive.fileExists("c:\\mine.dev"));
  EXPECT_TRUE(bench.drive.folderExists("C:\\temp"));
}

TEST_P(MembersOnEveryLink, SetPresetFileNeedsTheMarkerAndSendsThePreset) {
  const bool serial = bench.zan().ConnStyle() == LinkKind::Serial;
  const std::string preset = (serial ? "#3892" : "") + std::string(892, 'p') + (serial ? "\n" : "");
  bench.drive.content(kPreset).assign(preset.begin(), preset.end());
  EXPECT_FALSE(bench.zan().SetPresetFile());
  EXPECT_TRUE(bench.drive.folderExists("C:\\temp"));
  bench.drive.content(kMarker).clear();
  EXPECT_EQ(bench.zan().SetPresetFile(), GetParam().carriesFiles);
}

TEST_P(MembersOnEveryLink, GetBMPFileIsFalseWhereNothingCanBeCaptured) {
  bench.instrument.on(":DISP:COL?", "#15hello\n");
  bench.instrument.on(":DISP:OUTP?", std::string(122880, '\0'));
  EXPECT_EQ(bench.zan().GetBMPFile(), GetParam().carriesFiles);
  EXPECT_EQ(bench.drive.fileExists("c:\\temp\\ZAN.bmp"), GetParam().carriesFiles);
  EXPECT_EQ(bench.drive.folderExists("C:\\temp"), GetParam().carriesFiles);
}

INSTANTIATE_TEST_SUITE_P(Links, MembersOnEveryLink, testing::ValuesIn(kCases),
                         [](const auto& each) { return std::string(each.param.name); });

}  // namespace
}  // namespace lumodevice
