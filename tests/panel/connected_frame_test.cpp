#include <gtest/gtest.h>
#include <string>
#include <string_view>
#include <tuple>

#include "tests/support/panel_bench.hpp"

namespace lumodevice::panel {
namespace {

using support::kLinks;
using support::Over;
using support::PanelBench;

/// The frames that an operator sees, those that can be used marked.
std::string frames(PanelBench& bench) {
  std::string seen;
  for (const char* name :
       {"FrameCCStatic", "fraCCDynamic", "FrameCRStatic", "fraCRDynamic", "FrameCV"}) {
    const auto& frame = bench.control<toolkit::Frame>(name);
    seen += frame.visible() ? std::string(name) + (frame.enabled() ? "+ " : " ") : "";
  }
  return seen;
}

/// A second connect, after the panel has been put into its unconnected look.
class ConnectedFrame : public testing::TestWithParam<std::tuple<Over, Exchanges>> {
 protected:
  void connect(const char* modeAnswer) {
    bench.instrument.on(":Mode?", modeAnswer);
    bench.connect(std::get<Over>(GetParam()));
  }
  void reconnect() {
    const bool serial = std::get<Over>(GetParam()) == Over::Serial;
    bench.zan().NotConnect();
    EXPECT_EQ(frames(bench), "FrameCCStatic ");
    (void)bench.journal();
    bench.click(serial ? "Command2" : "cmdAutoConnVISA");
    ASSERT_TRUE(bench.zan().isConnected());
  }
  PanelBench bench{{.exchanges = std::get<Exchanges>(GetParam())}};
};

INSTANTIATE_TEST_SUITE_P(Links, ConnectedFrame,
                         testing::Combine(testing::ValuesIn(kLinks),
                                          testing::Values(Exchanges::Interleaved,
                                                          Exchanges::InTurn)));

TEST_P(ConnectedFrame, isThatOfTheChosenModeAfterEveryConnect) {
  constexpr std::pair<const char*, const char*> kModes[] = {
      {"CCH\n", "FrameCCStatic+ "}, {"CCL\n", "FrameCCStatic+ "}, {"CV\n", "FrameCV+ "},
      {"CRH\n", "FrameCRStatic+ "}, {"CRL\n", "FrameCRStatic+ "}, {"CCDH\n", "fraCCDynamic+ "},
      {"CRDL\n", "fraCRDynamic+ "}, {"what\n", "FrameCCStatic+ "}};
  for (const auto& [answer, frame] : kModes) {
    SCOPED_TRACE(answer);
    PanelBench fresh{{.exchanges = std::get<Exchanges>(GetParam())}};
    fresh.instrument.on(":Mode?", answer);
    fresh.connect(std::get<Over>(GetParam()));
    EXPECT_EQ(frames(fresh), frame);
  }
}

TEST_P(ConnectedFrame, isShownAgainToAnInstrumentInCv) {
  connect("CV\n");
  reconnect();
  EXPECT_EQ(frames(bench), "FrameCV+ ");
}

TEST_P(ConnectedFrame, isUsableWhereTheInstrumentDoesNotNameItsMode) {
  connect("CCH\n");
  bench.instrument.on(":Mode?", "what\n");
  reconnect();
  EXPECT_EQ(frames(bench), "FrameCCStatic+ ");
}

TEST_P(ConnectedFrame, isUsableWhereNoChannelCanBeRead) {
  connect("CV\n");
  bench.instrument.on(":CHAN?", support::silence());
  reconnect();
  EXPECT_EQ(frames(bench), "FrameCV+ ");
}

TEST_P(ConnectedFrame, costsNoCommand) {
  connect("CV\n");
  reconnect();
  const std::string sent = bench.journal({"viWrite", "WriteString", "COM3 write"});
  EXPECT_EQ(sent.find(":MODE "), std::string::npos) << sent;
}

}  // namespace
}  // namespace lumodevice::panel
