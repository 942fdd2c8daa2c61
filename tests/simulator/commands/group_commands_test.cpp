#include <chrono>
#include <gtest/gtest.h>
#include <random>

#include "tests/simulator/load_bench.hpp"

using namespace std::chrono_literals;
using zansim::tests::LoadBench;

namespace {

/// Channels 1 to 6; channel 1 hangs on 12 V behind 0.01 ohm.
class GroupCommands : public testing::Test {
 protected:
  void expectRefused(std::string_view message, int error) {
    const std::string before = bench_.ask(":CHAN? LIST;:CHAN?;:CONF:PAR:MODE?;UNIT?");
    EXPECT_EQ(bench_.ask(message), "") << message;
    EXPECT_EQ(bench_.error(), error) << message;
    EXPECT_EQ(bench_.ask(":CHAN? LIST;:CHAN?;:CONF:PAR:MODE?;UNIT?"), before) << message;
  }
  std::string list() { return bench_.ask(":CHAN? LIST"); }

  LoadBench bench_{"2040,2040,0,2041,2040,2030,2040", {12, 0.01}};
};

}  // namespace

TEST_F(GroupCommands, aZeroStandsForEachFurtherMember) {
  EXPECT_EQ(list(), "1,2,3,4,5,6");
  bench_.send(":CHAN 1;:CONF:PAR:UNIT 2");
  EXPECT_EQ(list(), "1,0,3,4,5,6");
  bench_.send(":CHAN 3;:CONFigure:PARallel:UNIT 2");
  EXPECT_EQ(list(), "1,0,3,0,5,6");
  EXPECT_EQ(bench_.ask("*RDT?"), "2040,2040,0,2041,2040,2030,2040");
  bench_.send(":CHAN 1;:CONF:PAR:UNIT 1");
  EXPECT_EQ(list(), "1,2,3,0,5,6");
  EXPECT_EQ(bench_.ask(":CONF:PAR:UNIT?"), "1");
  EXPECT_EQ(bench_.ask(":CHAN 3;:CONF:PAR:UNIT?"), "2");
  EXPECT_EQ(bench_.ask(":CHAN 4;:CONF:PAR:UNIT?"), "2");
}

TEST_F(GroupCommands, settingAChannelFreeTwiceIsNoMistake) {
  bench_.send(":CHAN 1;:CONF:PAR:UNIT 3");
  bench_.send(":CONF:PAR:UNIT 1");
  bench_.send(":CONF:PAR:UNIT 1");
  bench_.send(":CHAN 5;:CONF:PAR:UNIT 1");
  EXPECT_EQ(list(), "1,2,3,4,5,6");
}

TEST_F(GroupCommands, whatCannotBeIsRefusedAndChangesNothing) {
  bench_.send(":CHAN 1;:CONF:PAR:UNIT 2;MODE PARA;:CHAN 5");
  expectRefused(":CONF:PAR:UNIT 2", -221);
  bench_.send(":CHAN 4");
  expectRefused(":CONF:PAR:UNIT 2", -221);
  expectRefused(":CONF:PAR:UNIT 0", -222);
  expectRefused(":CONF:PAR:UNIT 7", -222);
  expectRefused(":CONF:PAR:UNIT X", -224);
  expectRefused(":CONF:PAR:UNIT", -109);
  expectRefused(":CONF:PAR:MODE PARA", -221);
  expectRefused(":CONF:PAR:MODE 0", -221);
  bench_.send(":CHAN 1");
  expectRefused(":CONF:PAR:UNIT 6", -221);
  expectRefused(":CONF:PAR:MODE 2", -222);
  expectRefused(":CONF:PAR:MODE BOTH", -224);
  EXPECT_EQ(list(), "1,0,3,4,5,6");
}

TEST_F(GroupCommands, aFurtherMemberHeadsNoGroup) {
  bench_.send(":CHAN 1;:CONF:PAR:UNIT 2;:CHAN 2");
  EXPECT_EQ(bench_.ask(":CHAN?"), "2");
  expectRefused(":CONF:PAR:UNIT 1", -221);
  expectRefused(":CONF:PAR:UNIT 2", -221);
}

TEST_F(GroupCommands, theModeIsThatOfTheSelectedGroup) {
  EXPECT_EQ(bench_.ask(":CONF:PAR:MODE?"), "SYNC");
  bench_.send(":CHAN 1;:CONF:PAR:UNIT 2;MODE 1;:CHAN 3;:CONF:PAR:UNIT 2");
  EXPECT_EQ(bench_.ask(":CONF:PAR:MODE?"), "SYNC");
  EXPECT_EQ(bench_.ask(":CHAN 1;:CONF:PAR:MODE?"), "PARA");
  for (const auto& [word, answer] :
       {std::pair{"0", "SYNC"}, {"1", "PARA"}, {"SYNC", "SYNC"}, {"para", "PARA"}}) {
    bench_.send(std::string(":CONF:PAR:MODE ") + word);
    EXPECT_EQ(bench_.ask(":CONF:PAR:MODE?"), answer);
  }
}

TEST_F(GroupCommands, aFurtherMemberOfAParallelGroupLeadsToTheHead) {
  bench_.send(":CHAN 1;:CONF:PAR:UNIT 3;:CHAN 3;:CONF:PAR:MODE 1");
  EXPECT_EQ(bench_.ask(":CHAN?"), "1");
  EXPECT_EQ(bench_.ask(":CHAN 2;:CHAN?"), "1");
  EXPECT_EQ(bench_.ask(":CONF:PAR:MODE 0;:CHAN 2;:CHAN?"), "2");
}

TEST_F(GroupCommands, aParallelGroupDrawsTheSumOfItsMembersShares) {
  bench_.send(":CHAN 1;:CONF:PAR:UNIT 2;MODE PARA");
  EXPECT_EQ(bench_.ask(":CURR:STAT:L1? MAX"), "140");
  bench_.send(":CURR:STAT:L1 50;:LOAD ON");
  bench_.pass(1ms);
  EXPECT_EQ(bench_.ask(":FETC:CURR?"), "50.0000");
  EXPECT_EQ(bench_.ask(":FETC:VOLT?"), "11.5000");
  EXPECT_EQ(bench_.ask(":FETC:POW?"), "575.0000");
  EXPECT_FALSE(bench_.channel(2).isOn());
  EXPECT_EQ(bench_.channel(2).terminals().amps, 0);
  bench_.send(":LOAD OFF");
  EXPECT_EQ(bench_.ask(":FETC:CURR?"), "0.0000");
}

TEST_F(GroupCommands, aParallelGroupTakesNoMoreThanItsMembersTogether) {
  bench_.channel().connect({60, 0});
  bench_.send(":CHAN 1;:CONF:PAR:UNIT 2;MODE PARA;:CURR:STAT:L1 MAX;:LOAD ON");
  bench_.pass(1ms);
  EXPECT_NEAR(bench_.terminals().watts(), 700, 1e-9);
}

TEST_F(GroupCommands, settingsStayWithinTheRangesOfTheGroup) {
  bench_.send(":CHAN 1;:CURR:STAT:L1 60;:CONF:PAR:UNIT 2;MODE PARA");
  EXPECT_EQ(bench_.ask(":CURR:STAT:L1?"), "60");
  EXPECT_EQ(bench_.ask(":RES:L1?"), "2000");
  bench_.send(":CURR:STAT:L1 130;:CONF:PAR:UNIT 1");
  EXPECT_EQ(bench_.ask(":CURR:STAT:L1?"), "70");
  EXPECT_EQ(bench_.ask(":CURR:STAT:L1? MAX"), "70");
}

TEST_F(GroupCommands, aSynchronisedGroupIsSwitchedTogetherEachWithItsLevel) {
  bench_.send(":CHAN 1;:CONF:PAR:UNIT 2;:CURR:STAT:L1 3;:CHAN 2;:CURR:STAT:L1 5");
  bench_.send(":CHAN 1;:LOAD ON");
  bench_.pass(1ms);
  EXPECT_EQ(bench_.ask(":FETC:CURR?"), "3.0000");
  EXPECT_EQ(bench_.ask(":CHAN 2;:FETC:CURR?"), "5.0000");
  EXPECT_FALSE(bench_.channel(3).isOn());
  bench_.send(":LOAD OFF");
  EXPECT_FALSE(bench_.channel(1).isOn());
  EXPECT_FALSE(bench_.channel(2).isOn());
}

TEST_F(GroupCommands, whileOneIsTrippedNoneIsSwitchedOn) {
  bench_.send(":CHAN 2;:CURR:STAT:L1 5;:CONF:PROT:CURR:LEV 2;STAT ON;:LOAD ON");
  bench_.pass(1ms);
  bench_.send(":CHAN 1;:CONF:PAR:UNIT 2");
  expectRefused(":LOAD ON", -300);
  EXPECT_FALSE(bench_.channel(1).isOn());
  bench_.send(":CHAN 2;:CONF:PROT:CLE;:CHAN 1;:LOAD ON");
  EXPECT_TRUE(bench_.channel(1).isOn());
  EXPECT_TRUE(bench_.channel(2).isOn());
}

TEST_F(GroupCommands, aChangeOfAGroupSwitchesItsChannelsOffAndNoOthers) {
  for (const char* const change : {"UNIT 1", "UNIT 3", "MODE 1"}) {
    bench_.send("*RST;:CHAN 4;:LOAD ON;:CHAN 1;:CONF:PAR:UNIT 2;:LOAD ON");
    EXPECT_TRUE(bench_.channel(1).isOn()) << change;
    bench_.send(":CONF:PAR:UNIT 2;MODE 0");
    EXPECT_TRUE(bench_.channel(1).isOn()) << change;
    bench_.send(std::string(":CONF:PAR:") + change);
    for (const std::size_t number : {1U, 2U, 3U}) {
      EXPECT_FALSE(bench_.channel(number).isOn()) << change << " " << number;
    }
    EXPECT_TRUE(bench_.channel(4).isOn()) << change;
  }
}

TEST_F(GroupCommands, aResetDissolvesThem) {
  bench_.send(":CHAN 1;:CONF:PAR:UNIT 2;MODE 1;:CHAN 3;:CONF:PAR:UNIT 2;:SHOW IW;*RST");
  EXPECT_EQ(list(), "1,2,3,4,5,6");
  EXPECT_EQ(bench_.ask(":CONF:PAR:MODE?;UNIT?;:SHOW?;:CHAN?"), "SYNC;1;VI;1");
  EXPECT_EQ(bench_.ask(":CURR:STAT:L1? MAX;:CURR:STAT:RISE?"), "70;3");
}

TEST_F(GroupCommands, theStyleOfTheScreen) {
  for (const char* const style : {"VW", "IW", "S", "VI"}) {
    bench_.send(std::string(":SHOW ") + style);
    EXPECT_EQ(bench_.ask(":SHOW?"), style);
  }
  bench_.send(":show vw");
  for (const auto& [message, error] :
       {std::pair{":SHOW", -109}, {":SHOW VA", -224}, {":SHOW 1", -104}}) {
    EXPECT_EQ(bench_.ask(message), "");
    EXPECT_EQ(bench_.error(), error) << message;
  }
  EXPECT_EQ(bench_.ask(":SHOW?"), "VW");
}

TEST(GroupsWithoutModules, thereAreNone) {
  zansim::Configuration configuration;
  configuration.setSlots("0,0");
  zansim::Mainframe mainframe(configuration);
  for (const char* const message : {":CONF:PAR:UNIT 2", ":CONF:PAR:UNIT?", ":CONF:PAR:MODE 1",
                                    ":CONF:PAR:MODE?", ":KEYB:CODE 112,1", ":KEYB:CODE 111,1"}) {
    std::string answer;
    zansim::execute(mainframe, message, {}, answer);
    EXPECT_EQ(answer, "");
    EXPECT_EQ(mainframe.status().take(), zansim::Error::HardwareMissing) << message;
  }
}

TEST_F(GroupCommands, whateverIsAskedForTheGroupsStaySoundAndTheListTellsThem) {
  std::mt19937 random(2041);
  const auto below = [&](std::size_t count) {
    return std::to_string(std::uniform_int_distribution<std::size_t>(0, count - 1)(random));
  };
  std::size_t made = 0;
  std::size_t refused = 0;
  for (int round = 0; round < 5000; ++round) {
    bench_.ask(":CHAN " + below(8) + ";:CONF:PAR:UNIT " + below(5) + ";MODE " + below(2) +
               ";:LOAD " + below(2) + ";:KEYB:CODE 11" + below(5) + ",1");
    while (bench_.error() != 0) {
      ++refused;
    }
    bench_.pass(1ms);
    const zansim::Groups& groups = bench_.mainframe().groups();
    const std::size_t channels = bench_.mainframe().channelCount();
    std::string expected;
    std::size_t joined = 0;
    for (std::size_t head = 1; head <= channels;) {
      const zansim::Group group = groups.of(head);
      ASSERT_EQ(group.head, head) << round;
      ASSERT_LE(group.end(), channels + 1) << round;
      joined += group.size > 1 ? 1 : 0;
      ASSERT_TRUE(group.size > 1 || !group.parallel) << round;
      expected += (head == 1 ? "" : ",") + std::to_string(head);
      for (std::size_t number = head; number < group.end(); ++number) {
        ASSERT_EQ(groups.of(number).head, head) << round;
        ASSERT_TRUE(group.size == 1 || bench_.mainframe().module(number).groupable) << round;
        const bool rests = group.parallel && number > head;
        ASSERT_EQ(bench_.channel(number).isOn(), !rests && bench_.channel(head).isOn()) << round;
        expected += number == head ? "" : ",0";
      }
      ASSERT_EQ(bench_.mainframe().module(head).watts >= 700, group.parallel) << round;
      head = group.end();
    }
    ASSERT_LE(joined, zansim::Groups::kMost) << round;
    ASSERT_EQ(list(), expected) << round;
    made += joined;
  }
  EXPECT_GT(made, 1000U);
  EXPECT_GT(refused, 1000U);
}
