#include <chrono>
#include <gtest/gtest.h>

#include "tests/simulator/load_bench.hpp"

using namespace std::chrono_literals;
using zansim::Mainframe;
using zansim::tests::LoadBench;

namespace {

class Keyboard : public testing::Test {
 protected:
  void press(int code) { bench_.send(":KEYB:CODE " + std::to_string(code) + ",1"); }

  LoadBench bench_{"2040,2040,2040,2030"};
};

}  // namespace

TEST_F(Keyboard, loadSwitchesTheSelectedChannelOnAndOff) {
  bench_.send(":CHAN 2");
  press(111);
  EXPECT_EQ(bench_.ask(":LOAD?"), "1");
  EXPECT_FALSE(bench_.channel(1).isOn());
  press(111);
  EXPECT_EQ(bench_.ask(":LOAD?"), "0");
}

TEST_F(Keyboard, loadSwitchesAGroupTogether) {
  bench_.send(":CONF:PAR:UNIT 2");
  press(111);
  EXPECT_TRUE(bench_.channel(1).isOn());
  EXPECT_TRUE(bench_.channel(2).isOn());
}

TEST_F(Keyboard, loadIsRefusedWhileTripped) {
  bench_.send(":CURR:STAT:L1 5;:CONF:PROT:CURR:LEV 2;STAT ON;:LOAD ON");
  bench_.pass(1ms);
  EXPECT_EQ(bench_.ask(":KEYB:CODE 111,1"), "");
  EXPECT_EQ(bench_.error(), -300);
}

TEST_F(Keyboard, chanSelectsTheNextChannelAndAfterTheLastTheFirst) {
  for (const char* const next : {"2", "3", "4", "1", "2"}) {
    press(112);
    EXPECT_EQ(bench_.ask(":CHAN?"), next);
  }
}

TEST_F(Keyboard, chanPassesOverFurtherMembersOfGroups) {
  for (const char* const mode : {"SYNC", "PARA"}) {
    bench_.send(std::string("*RST;:CHAN 2;:CONF:PAR:UNIT 2;MODE ") + mode);
    for (const char* const next : {"4", "1", "2", "4"}) {
      press(112);
      EXPECT_EQ(bench_.ask(":CHAN?"), next) << mode;
    }
  }
}

TEST_F(Keyboard, f1TurnsThePage) {
  press(113);
  EXPECT_EQ(bench_.mainframe().page(), Mainframe::Page::Settings);
  press(113);
  EXPECT_EQ(bench_.mainframe().page(), Mainframe::Page::Readings);
}

TEST_F(Keyboard, lettingGoOfAKeyDoesNothing) {
  bench_.send(":KEYBoard:CODE 111,0;CODE 112,0;CODE 113,0");
  EXPECT_FALSE(bench_.channel(1).isOn());
  EXPECT_EQ(bench_.ask(":CHAN?"), "1");
  EXPECT_EQ(bench_.mainframe().page(), Mainframe::Page::Readings);
}

TEST_F(Keyboard, otherKeysThereAreNot) {
  for (const auto& [message, error] : {std::pair{":KEYB:CODE 110,1", -222},
                                       {":KEYB:CODE 114,1", -222},
                                       {":KEYB:CODE 114,0", -222},
                                       {":KEYB:CODE 112.5,1", -222},
                                       {":KEYB:CODE 112,2", -222},
                                       {":KEYB:CODE LOAD,1", -224},
                                       {":KEYB:CODE 112", -109},
                                       {":KEYB:CODE 112,1,1", -108},
                                       {":KEYB:CODE?", -113}}) {
    EXPECT_EQ(bench_.ask(message), "");
    EXPECT_EQ(bench_.error(), error) << message;
  }
  EXPECT_EQ(bench_.ask(":CHAN?"), "1");
}
