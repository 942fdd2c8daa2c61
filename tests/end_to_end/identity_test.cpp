#include <gtest/gtest.h>
#include <ostream>
#include <string>

#include "tests/end_to_end/serial_bench.hpp"
#include "tests/end_to_end/simulated_bench.hpp"
#include "tests/end_to_end/socket_bench.hpp"

namespace lumodevice::end_to_end {
namespace {

using namespace std::string_literals;

/// An identity as a load may send it by mistake.
struct Identity {
  const char* name;
  std::string text;
  bool oursOverVisa;  ///< what VISA reads of it ends after 72 bytes
  bool oursOverSerial;

  friend void PrintTo(const Identity& identity, std::ostream* out) { *out << identity.name; }
};

const Identity kIdentities[] = {
    {"empty", "", false, false},
    {"blank", "    ", false, false},
    {"withoutCommas", "ZAN 6300 without a comma", true, true},
    {"theProductAlone", "ZAN", true, true},
    {"smallLetters", "Ostbrook,zan63200,1,1.2.3", false, false},
    {"commasAlone", "ZAN,,,,,,,,,", true, true},
    {"seventyTwoBytes", "ZAN," + std::string(67, 'x'), true, true},
    {"seventyThreeBytes", "ZAN," + std::string(69, 'x'), true, true},
    {"long", "ZAN,1,2,3.4.5," + std::string(3000, 'x'), true, true},
    {"ourNameTooLate", std::string(80, 'x') + ",ZAN,1,1.2.3", false, true},
    {"withNul", "\0ZAN\0,63200,\0\0,1.2\0.3"s, true, true},
    {"withHighBytes", "\xFF\x80ZAN\xC3\xA9,\xE9,\xB5,1.\xB2.3", true, true},
};

class Identities : public testing::TestWithParam<Identity> {
 protected:
  [[nodiscard]] std::string fault() const { return "identity=" + GetParam().text; }

  static void expectState(RealPanel& panel, bool ours) {
    EXPECT_EQ(panel.zan().isConnected(), ours);
    EXPECT_EQ(panel.zan().bDevAvaliable(), ours);
    EXPECT_EQ(panel.zan().ChCount(), ours ? 7 : 0);
    if (ours) {
      EXPECT_EQ(panel.ask(":CHAN?"), "1") << "the rest of the identity is no answer";
    }
  }
};

INSTANTIATE_TEST_SUITE_P(Odd, Identities, testing::ValuesIn(kIdentities),
                         [](const auto& identity) { return identity.param.name; });

TEST_P(Identities, overASimulatedVisa) {
  for (const Variant variant : {Variant::VisaLibrary, Variant::VisaCom}) {
    SimulatedBench bench(variant);
    bench.instrument.faults.add(fault());
    bench.panel.zan().AutoConnect();
    expectState(bench.panel, GetParam().oursOverVisa);
    EXPECT_EQ(bench.panel.zan().IDN().empty(), !GetParam().oursOverVisa);
  }
}

TEST_P(Identities, overASocket) {
  LoadOnSocket load;
  load.fault(fault());
  SocketBench bench(Variant::VisaLibrary);
  bench.connect(load.resource());
  expectState(bench.panel, GetParam().oursOverVisa);
}

TEST_P(Identities, overASerialPort) {
  SerialBench bench({4});
  bench.load(4).instrument.faults.add(fault());
  if (GetParam().oursOverSerial) {
    bench.connectByHand(4);
    EXPECT_EQ(bench.panel().zan().IDN(), GetParam().text);
  } else {
    bench.panel().type("Text1", "4");
    bench.panel().type("Text5", "1000");
    bench.panel().click("Command2");
  }
  expectState(bench.panel(), GetParam().oursOverSerial);
}

}  // namespace
}  // namespace lumodevice::end_to_end
