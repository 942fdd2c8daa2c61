#include <gmock/gmock.h>

#include "tests/end_to_end/line_peer.hpp"
#include "tests/end_to_end/socket_bench.hpp"
#include "tests/support/script.hpp"

namespace lumodevice::end_to_end {
namespace {

using std::chrono::milliseconds;
using support::lines;

constexpr const char* kIdentity = "Ostbrook Instruments,ZAN63200,SIM00001,1.02.3";
constexpr const char* kChannels =
    "CH1-2021L\nCH2-2021R\nCH3-2040\nCH4-2040\nCH5-2041\nCH6-2050\nCH7-2030\n";

/// In each variant, connected to a load at the typed address.
class Socket : public testing::TestWithParam<Variant> {
 protected:
  Socket() {
    bench.connect(load.resource());
    panel.boxes();
  }

  LoadOnSocket load;
  SocketBench bench{GetParam()};
  RealPanel& panel = bench.panel;
};

INSTANTIATE_TEST_SUITE_P(BothVariants, Socket,
                         testing::Values(Variant::VisaLibrary, Variant::VisaCom),
                         [](const auto& variant) {
                           return variant.param == Variant::VisaCom ? "VisaCom" : "VisaLibrary";
                         });

TEST_P(Socket, connectsAndAsks) {
  EXPECT_EQ(panel.state(), "VISA, 7 channels");
  EXPECT_EQ(panel.items("cmbVISARes"), lines({load.resource()}));
  EXPECT_EQ(panel.items("cmbChannel"), kChannels);
  EXPECT_EQ(panel.ask("*IDN?"), kIdentity);
  panel.zan().SendCmd("*CLS;:CHAN 6");
  EXPECT_EQ(panel.ask(":CHAN?"), "6");
  EXPECT_EQ(panel.ask(":CHAN? LIST"), "1,2,3,4,5,6,7");
  EXPECT_EQ(panel.zan().ErrMessage(), "0,\"No error\"");
  EXPECT_EQ(panel.boxes(), "");
}

TEST_P(Socket, anAnswerInPiecesIsPutTogether) {
  load.fault("pieces=4 gap=1");
  EXPECT_EQ(panel.ask("*IDN?"), kIdentity);
  EXPECT_EQ(panel.ask(":CHAN?"), "1");
}

TEST_P(Socket, anInstrumentThatFallsSilentIsReportedAndHeardAgain) {
  load.fault("silent");
  EXPECT_EQ(panel.ask(":CHAN?"), "");
  EXPECT_EQ(panel.boxes(), lines({kUnanswered}));
  load.healthy();
  EXPECT_EQ(panel.ask("*IDN?"), kIdentity);
}

TEST_P(Socket, aLateAnswerIsNeverTakenForTheNextOne) {
  // Two reads of VISA COM take 400 ms in vain.
  load.fault("late=600");
  EXPECT_EQ(panel.ask("*IDN?"), "");
  load.healthy();
  std::this_thread::sleep_for(milliseconds(700));
  EXPECT_EQ(panel.ask(":CHAN?"), "1");
  EXPECT_EQ(panel.ask("*IDN?"), kIdentity);
}

TEST_P(Socket, aLinkThatVanishesIsReportedAndAnotherOneCanBeOpened) {
  load.vanish();
  EXPECT_EQ(panel.ask(":CHAN?"), "");
  EXPECT_EQ(panel.boxes(), lines({kUnanswered}));
  panel.zan().SendCmd(":CHAN 2");
  bench.connect(load.resource());
  EXPECT_EQ(panel.state(), "not connected") << "the session was lost";

  LoadOnSocket other;
  other.with([](zansim::Instrument& instrument) { instrument.mainframe.selectChannel(4); });
  bench.connect(other.resource());
  EXPECT_EQ(panel.ask(":CHAN?"), "4");
}

TEST(SocketOverTheLibrary, aPeerThatIsNotThereIsNotFound) {
  SocketBench bench(Variant::VisaLibrary);
  for (const char* resource : {"TCPIP0::127.0.0.1::1::SOCKET", "TCPIP0::", ""}) {
    bench.connect(resource);
    EXPECT_EQ(bench.panel.state(), "not connected");
    EXPECT_EQ(bench.panel.items("cmbVISARes"), "");
  }
}

TEST(SocketOverTheLibrary, anAnswerIsCutAtSeventyNineCharacters) {
  LoadOnSocket load;
  SocketBench bench(Variant::VisaLibrary);
  bench.connect(load.resource());
  load.fault("long=500");
  EXPECT_EQ(bench.panel.ask(":CHAN?"), "1" + std::string(78, 'X'));
  load.healthy();
  EXPECT_EQ(bench.panel.ask("*IDN?"), kIdentity) << "the rest is not taken for the next answer";
}

TEST(SocketOverVisaCom, anAnswerOfSixtyKilobytesComesWhole) {
  LoadOnSocket load;
  SocketBench bench(Variant::VisaCom);
  bench.connect(load.resource());
  load.fault("long=61440");
  EXPECT_EQ(bench.panel.ask(":CHAN?"), "1" + std::string(61438, 'X'));
  load.healthy();
  EXPECT_EQ(bench.panel.ask("*IDN?"), kIdentity);
}

/// 1 MB: more channels than there are numbers for.
std::string endlessSlots() {
  std::string slots;
  while (slots.size() < 1'000'000) {
    slots += "2040,0,2030,";
  }
  return slots + "2050";
}

TEST(ChannelListOfAMegabyte, overTheLibraryIsCut) {
  LineServer server(loadWithSlots(endlessSlots()));
  SocketBench bench(Variant::VisaLibrary);
  bench.connect(server.resource());
  EXPECT_EQ(bench.panel.state(), "VISA, 14 channels");
  EXPECT_EQ(bench.panel.ask("*IDN?"), "LUMO,ZAN-1,1,1.2.3");
}

TEST(ChannelListOfAMegabyte, overVisaComEndsAtTheLastNumber) {
  LineServer server(loadWithSlots(endlessSlots()));
  SocketBench bench(Variant::VisaCom);
  bench.connect(server.resource());
  EXPECT_EQ(bench.panel.state(), "VISA, 32767 channels");
  EXPECT_EQ(bench.panel.ask("*IDN?"), "LUMO,ZAN-1,1,1.2.3");
}

}  // namespace
}  // namespace lumodevice::end_to_end
