#include <gmock/gmock.h>

#include "platform/posix/serial_devices.hpp"
#include "platform/visa_library.hpp"
#include "tests/end_to_end/real_panel.hpp"
#include "tests/platform/recorded_calls.hpp"

namespace lumodevice::end_to_end {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

/// The search over two resources, both of which answer; the library hands out a resource manager
/// F0000001, a find list F0000002 and an instrument F0000003.
constexpr const char* kProbe =
    "viOpenDefaultRM\n"
    "viFindRsrc F0000001 ?*INSTR\n"
    "viOpen F0000001 USB0::0x1::0x2::ZAN1::INSTR 1 1\n"
    "viGetAttribute F0000003 BFFF00E9\n"
    "viSetAttribute F0000003 3FFF0018 000000000000000D\n"
    "viSetAttribute F0000003 3FFF0038 00000000FFFFFFFF\n"
    "viSetAttribute F0000003 3FFF001A 00000000000000C8\n"
    "viSetAttribute F0000003 3FFF0016 0000000000000000\n"
    "viWrite F0000003 2A49444E3F0D 6\n"
    "viRead F0000003 72\n"
    "viClose F0000003\n"
    "viFindNext F0000002\n"
    "viOpen F0000001 GPIB0::5::INSTR 1 1\n"
    "viGetAttribute F0000003 BFFF00E9\n"
    "viSetAttribute F0000003 3FFF0018 000000000000000D\n"
    "viSetAttribute F0000003 3FFF0038 00000000FFFFFFFF\n"
    "viSetAttribute F0000003 3FFF001A 00000000000000C8\n"
    "viSetAttribute F0000003 3FFF0016 0000000000000000\n"
    "viWrite F0000003 2A49444E3F0D 6\n"
    "viRead F0000003 72\n"
    "viClose F0000003\n"
    "viFindNext F0000002\n";

constexpr const char* kLibraryLink =
    "viOpen F0000001 GPIB0::5::INSTR 1 1\n"
    "viGetAttribute F0000003 BFFF00E9\n"
    "viSetAttribute F0000003 3FFF0018 000000000000000D\n"
    "viSetAttribute F0000003 3FFF0038 00000000FFFFFFFF\n"
    "viSetAttribute F0000003 3FFF001A 0000000000000096\n"
    "viWrite F0000003 2A49444E3F0D 6\n"
    "viRead F0000003 72\n"
    "viWrite F0000003 2A5244543F0D 6\n"
    "viRead F0000003 80\n"
    "viWrite F0000003 3A4348414E3F0A 7\n"
    "viRead F0000003 80\n";

constexpr const char* kLibraryEnd =
    "viClose F0000003\n"
    "viClose F0000002\n"
    "viClose F0000001\n";

/// Each unanswered read is tried a second time.
constexpr const char* kComLink =
    "viClose F0000002\n"
    "viClose F0000001\n"
    "viOpenDefaultRM\n"
    "viOpen F0000001 GPIB0::5::INSTR 0 2000\n"
    "viWrite F0000003 2A49444E3F0D 6\n"
    "viRead F0000003 4096\n"
    "viSetAttribute F0000003 3FFF001A 00000000000000C8\n"
    "viWrite F0000003 2A5244543F0D 6\n"
    "viRead F0000003 4096\n"
    "viRead F0000003 4096\n"
    "viSetAttribute F0000003 3FFF001A 00000000000000C8\n"
    "viWrite F0000003 3A4348414E3F0A 7\n"
    "viRead F0000003 4096\n"
    "viRead F0000003 4096\n";

constexpr const char* kComEnd =
    "viClose F0000003\n"
    "viClose F0000001\n";

/// A component over a library that answers the identity query and nothing else, so that no channel
/// is selected.
class RecordedVisa : public testing::Test {
 protected:
  RecordedVisa() { calls_.answerOnly("*IDN?\r"); }

  void endComponent() { panel_.reset(); }
  RealPanel& panel() { return *panel_; }
  std::string calls() { return calls_.take(); }

  platform::VisaLibraryResult loaded_ = platform::loadVisaLibrary(RECORDING_VISA);
  posix::RecordedCalls calls_{RECORDING_VISA};
  toolkit::VirtualLoop loop_;
  posix::TermiosDevices devices_{{{1, "/nowhere"}}};
  std::optional<RealPanel> panel_{std::in_place, loop_, *loaded_.library, devices_};
};

TEST_F(RecordedVisa, autoConnectOverTheLibrary) {
  EXPECT_TRUE(panel().zan().AutoConnect());
  EXPECT_EQ(calls(), std::string(kProbe) + kLibraryLink);
  EXPECT_EQ(panel().items("cmbVISARes"), "USB0::0x1::0x2::ZAN1::INSTR\nGPIB0::5::INSTR\n");
  EXPECT_EQ(panel().zan().IDN(), "ZAN,1\r\n");
  EXPECT_EQ(panel().text("cmbChannel"), "CH1");
  endComponent();
  EXPECT_EQ(calls(), kLibraryEnd);
}

TEST_F(RecordedVisa, autoConnectOverVisaCom) {
  panel().click("optVisa2");
  EXPECT_TRUE(panel().zan().AutoConnect());
  EXPECT_EQ(calls(), std::string(kProbe) + kComLink);
  EXPECT_EQ(panel().state(), "VISA, 0 channels");
  endComponent();
  EXPECT_EQ(calls(), kComEnd);
}

std::string replaced(std::string text, const std::string& from, const std::string& to) {
  return text.replace(text.find(from), from.size(), to);
}

TEST_F(RecordedVisa, connectSearchesWithTheTypedExpression) {
  panel().type("cmbVISARes", "USB?*");
  panel().click("cmdConnVISA");
  EXPECT_EQ(calls(), replaced(kProbe, "?*INSTR", "USB?*") + kLibraryLink);
  EXPECT_EQ(panel().zan().IDN(), "");
  EXPECT_EQ(panel().state(), "VISA, 0 channels");
  // Once more in the other variant: the first link is closed before the new one is opened.
  panel().click("optVisa2");
  panel().type("cmbVISARes", "?*");
  panel().click("cmdConnVISA");
  EXPECT_THAT(calls(), EndsWith(std::string(kLibraryEnd) + kComLink));
}

TEST_F(RecordedVisa, theSerialLinkClosesAllThreeObjects) {
  panel().zan().AutoConnect();
  calls();
  panel().click("optConnRS232");
  EXPECT_EQ(calls(), kLibraryEnd);
  EXPECT_EQ(panel().state(), "not connected");
  endComponent();
  EXPECT_EQ(calls(), "");
}

struct Failure {
  const char* function;
  int before;
  const char* state;
  const char* callsEndWith;
};

constexpr const char* kConnected = "VISA, 0 channels";
constexpr const char* kUnconnected = "not connected";
constexpr const char* kNothingFound = "viClose F0000002\nviClose F0000001\n";
constexpr const char* kFinalReadInVain = "viWrite F0000003 2A49444E3F0D 6\nviRead F0000003 72\n";

constexpr Failure kFailures[] = {
    {"viOpenDefaultRM", 0, kUnconnected, "viOpenDefaultRM\n"},
    {"viFindRsrc", 0, kUnconnected, "viFindRsrc F0000001 ?*INSTR\nviClose F0000001\n"},
    {"viFindNext", 0, kConnected, "viRead F0000003 80\n"},
    {"viOpen", 0, kUnconnected, kNothingFound},
    {"viOpen", 2, kUnconnected, "viWrite 00000000 2A49444E3F0D 6\nviRead 00000000 72\n"},
    {"viGetAttribute", 0, kUnconnected, kNothingFound},
    {"viGetAttribute", 2, kConnected, "viRead F0000003 80\n"},
    {"viSetAttribute", 0, kConnected, "viRead F0000003 80\n"},
    {"viWrite", 0, kUnconnected, kNothingFound},
    {"viWrite", 3, kConnected, "viRead F0000003 80\n"},
    {"viRead", 0, kUnconnected, kNothingFound},
    {"viRead", 2, kUnconnected, kFinalReadInVain},
    {"viClose", 0, kConnected, "viRead F0000003 80\n"},
};

TEST_F(RecordedVisa, anyCallMayFailAndTheNextConnectWorks) {
  for (const Failure& failure : kFailures) {
    SCOPED_TRACE(std::string(failure.function) + " after " + std::to_string(failure.before));
    panel_.reset();
    panel_.emplace(loop_, *loaded_.library, devices_);
    calls();
    calls_.fail(failure.function, failure.before);
    panel().zan().AutoConnect();
    EXPECT_EQ(panel().state(), failure.state);
    EXPECT_EQ(panel().zan().bDevAvaliable(), panel().zan().isConnected());
    EXPECT_EQ(panel().read("ZANCtrl", "MousePointer"), "1");
    EXPECT_THAT(calls(), EndsWith(failure.callsEndWith));
    calls_.fail("");
    EXPECT_TRUE(panel().zan().AutoConnect());
    EXPECT_THAT(calls(), EndsWith(kLibraryLink));
    EXPECT_EQ(panel().state(), kConnected);
  }
}

struct ComFailure {
  const char* function;
  int before;
  const char* state;
};

constexpr ComFailure kComFailures[] = {
    {"viOpenDefaultRM", 1, kUnconnected}, {"viOpen", 2, kUnconnected},
    {"viWrite", 2, kUnconnected},         {"viRead", 2, kUnconnected},
    {"viSetAttribute", 8, kConnected},    {"viWrite", 3, kConnected},
    {"viClose", 0, kConnected},
};

TEST_F(RecordedVisa, anyCallOfTheObjectsMayFailAndTheNextConnectWorks) {
  for (const ComFailure& failure : kComFailures) {
    SCOPED_TRACE(std::string(failure.function) + " after " + std::to_string(failure.before));
    panel_.reset();
    panel_.emplace(loop_, *loaded_.library, devices_);
    panel().click("optVisa2");
    calls();
    calls_.fail(failure.function, failure.before);
    panel().zan().AutoConnect();
    EXPECT_EQ(panel().state(), failure.state);
    EXPECT_EQ(panel().read("ZANCtrl", "MousePointer"), "1");
    calls_.fail("");
    EXPECT_TRUE(panel().zan().AutoConnect());
    EXPECT_THAT(calls(), HasSubstr(kProbe));
    EXPECT_EQ(panel().state(), kConnected);
  }
}

TEST_F(RecordedVisa, aQueryThatFailsIsReportedAndHarmsNoLaterOne) {
  panel().zan().AutoConnect();
  panel().boxes();
  calls_.answerOnly("");
  for (const char* function : {"viRead", "viWrite"}) {
    calls_.fail(function);
    panel().ask("*IDN?");
    calls_.fail("");
    EXPECT_EQ(panel().ask("*IDN?"), "ZAN,1\r");
  }
  EXPECT_EQ(panel().boxes(), std::string(kUnanswered) + '\n')
      << "after the failed write the library still had an answer to read";
}

TEST(BrokenVisa, aLibraryThatFailsEveryCallFindsNothing) {
  const platform::VisaLibraryResult loaded = platform::loadVisaLibrary(FAILING_VISA);
  toolkit::VirtualLoop loop;
  posix::TermiosDevices devices({{1, "/nowhere"}});
  for (const bool com : {false, true}) {
    RealPanel panel(loop, *loaded.library, devices);
    if (com) {
      panel.click("optVisa2");
    }
    EXPECT_FALSE(panel.zan().AutoConnect());
    panel.type("cmbVISARes", "?*");
    panel.click("cmdConnVISA");
    EXPECT_EQ(panel.state(), "not connected");
    EXPECT_EQ(panel.boxes(), "");
  }
}

TEST(BrokenVisa, aLibraryThatWritesBeyondItsBuffersFindsNothing) {
  const platform::VisaLibraryResult loaded = platform::loadVisaLibrary(WILD_VISA);
  toolkit::VirtualLoop loop;
  posix::TermiosDevices devices({{1, "/nowhere"}});
  RealPanel panel(loop, *loaded.library, devices);
  EXPECT_FALSE(panel.zan().AutoConnect());
  EXPECT_EQ(panel.state(), "not connected");
}

}  // namespace
}  // namespace lumodevice::end_to_end
