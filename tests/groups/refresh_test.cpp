#include <gtest/gtest.h>

#include "tests/groups/group_bench.hpp"

namespace lumodevice::groups {
namespace {

using support::kLinks;
using support::kNoAnswerBox;
using support::Over;

class Refresh : public testing::TestWithParam<Over> {
 protected:
  GroupBench bench;
};

INSTANTIATE_TEST_SUITE_P(Links, Refresh, testing::ValuesIn(kLinks));

TEST_P(Refresh, runsAfterAConnectToAVersionOfThreeParts) {
  for (const auto& [identity, asked] :
       {std::pair{"LUMO,ZAN,A1,1.2\n", false}, {"LUMO,ZAN,A1,1.2.3\n", true}}) {
    GroupBench fresh;
    fresh.instrument.on("*IDN?", identity);
    std::string query;
    fresh.actAfter(":CHAN? LIST", [&] { query = ":CHAN? LIST"; });
    fresh.connect(GetParam());
    EXPECT_EQ(query == ":CHAN? LIST", asked) << identity;
    EXPECT_EQ(fresh.channels(), "CH1-ZAN2040 CH2-ZAN2040 CH3-ZAN2041 CH4-ZAN6310 CH5-ZAN2041");
    EXPECT_EQ(fresh.lists(), "CH1 CH2 CH3 CH5||");
    EXPECT_EQ(fresh.read("cmdParalle", "Enabled"), asked ? "True" : "False");
  }
}

TEST_P(Refresh, showsTheFirstTwoGroups) {
  struct Slots {
    const char* answer;
    const char* group1;
    const char* group2;
  };
  for (const Slots& row : {Slots{"1,2,3,4\n", "", ""},
                           {"1,0,3,4\n", "CH1 CH2", ""},
                           {"1,2,0,0\n", "CH2 CH3 CH4", ""},
                           {"1,0,3,0\n", "CH1 CH2", "CH3 CH4"},
                           {"1,0,0,4,0\n", "CH1 CH2 CH3", "CH4 CH5"},
                           {"1,0,3,4,0,0\n", "CH1 CH2", "CH4 CH5 CH6"},
                           {"1,0,3,0,5,0\n", "CH1 CH2", "CH3 CH4"},
                           {"0,2,0\n", "CH2 CH3", ""},
                           {"0,0,0\n", "", ""},
                           {"1,0\n\n", "CH1 CH2", ""},
                           {"A,0\n,B\n", "CH1 CH2", ""},
                           {"garbage\n", "", ""},
                           {",0,,0\n", "CH1 CH2", "CH3 CH4"},
                           {"\xFF,0,-1,1e400\n", "CH1 CH2", ""}}) {
    GroupBench fresh;
    fresh.answerLists(row.answer, "A,B,C,D,E\n");
    fresh.connect(GetParam());
    EXPECT_EQ(fresh.lists(), std::string("|") + row.group1 + '|' + row.group2)
        << support::escaped(row.answer);
  }
}

TEST_P(Refresh, offersAGroupThroughItsFirstChannelAndNoOtherChannel) {
  bench.answerLists("1,2,0,4,0,6\n", "A,B,C,D,E,F\n");
  bench.connect(GetParam());
  EXPECT_EQ(bench.channels(), "CH2-B-G1 CH4-D-G2");
  EXPECT_EQ(bench.lists(), "|CH2 CH3|CH4 CH5");
}

TEST_P(Refresh, countsOccupiedSlotsOfTheModulesAlone) {
  bench.answerLists("1,2,3\n", "0,2040,0,2041L,0,X\n");
  bench.connect(GetParam());
  EXPECT_EQ(bench.channels(), "CH1-2040 CH2-2041L CH3-X");
  EXPECT_EQ(bench.lists(), "CH1 CH2||");
}

TEST_P(Refresh, dropsALineFeedBehindEachModule) {
  bench.answerLists("1,2\n", "A\n,B2040\n\n");
  bench.connect(GetParam());
  EXPECT_EQ(bench.channels(), "CH1-A CH2-B2040");
}

TEST_P(Refresh, withoutAnAnswerShowsNoChannels) {
  bench.instrument.on(":CHAN? LIST", support::silence());
  bench.instrument.on("*RDT?", support::silence());
  bench.connect(GetParam());
  EXPECT_EQ(bench.channels(), "");
  EXPECT_EQ(bench.lists(), "||");
}

TEST_P(Refresh, enablesTheEditorForAGroupThatCanBeDissolved) {
  for (const auto& [slots, enabled] : {std::pair{"1,0,3\n", "True"},
                                       {"1,0,0\n", "True"},
                                       {"1,0,3,0\n", "True"},
                                       {"1\n", "False"}}) {
    GroupBench fresh;
    fresh.answerLists(slots, "2040\n");
    fresh.connect(GetParam());
    EXPECT_EQ(fresh.read("cmdParalle", "Enabled"), enabled) << slots;
  }
}

TEST_P(Refresh, enablesTheEditorOnlyFromTwoFreeChannelsOn) {
  for (const auto& [modules, enabled] :
       {std::pair{"2040,A\n", "False"}, {"2040,2041\n", "True"}, {"A,B\n", "False"}}) {
    GroupBench fresh;
    fresh.answerLists("1,2\n", modules);
    fresh.connect(GetParam());
    EXPECT_EQ(fresh.read("cmdParalle", "Enabled"), enabled) << modules;
  }
}

TEST_P(Refresh, leavesAnEditorInUseEnabled) {
  bench.connectWith(GetParam(), {"CH1", "CH2"});
  (void)bench.sentByOk();
  EXPECT_EQ(bench.lists(), "|CH1 CH2|");
  EXPECT_EQ(bench.read("cmdParalle", "Enabled"), "True");
}

TEST_P(Refresh, makesTheControlsOfTheGroupsVisible) {
  for (const int i : {0, 1, 2}) {
    bench.control<toolkit::Label>("lblConcate", i).setVisible(false);
  }
  bench.control<toolkit::ListBox>("List3").setVisible(false);
  bench.connect(GetParam());
  for (const char* name : {"lblConcate(0)", "lblConcate(1)", "lblConcate(2)", "List3"}) {
    EXPECT_EQ(bench.read(name, "Visible"), "True") << name;
  }
}

TEST_P(Refresh, forgetsTheListsOfTheLastInstrument) {
  bench.fill("List1", {"CH7", "CH8"});
  bench.fill("List2", {"CH1", "CH2"});
  bench.fill("List3", {"CH3", "CH4"});
  std::string whileAsking;
  bench.actAfter(":CHAN? LIST", [&] { whileAsking = bench.lists(); });
  bench.connect(GetParam());
  EXPECT_EQ(whileAsking, "||");
  EXPECT_EQ(bench.lists(), "CH1 CH2 CH3 CH5||");
}

TEST_P(Refresh, listsEveryChannelWhenTheListsHoldNoGroup) {
  struct Singles {
    std::vector<std::string> group1;
    std::vector<std::string> group2;
    const char* lists;
  };
  const std::string all = "CH1-ZAN2040 CH2-ZAN2040 CH3-ZAN2041 CH4-ZAN6310 CH5-ZAN2041";
  for (const Singles& row :
       {Singles{{}, {}, "CH1 CH2 CH3 CH5||"}, Singles{{"CH1"}, {}, "CH1 CH2 CH3 CH5|CH1|"},
        Singles{{}, {"CH5"}, "CH1 CH2 CH3 CH5||CH5"}, Singles{{"CH1"}, {"CH5"}, "|CH1|CH5"}}) {
    GroupBench fresh;
    fresh.connectWith(GetParam(), row.group1, row.group2);
    (void)fresh.sentByOk();
    EXPECT_EQ(fresh.channels(), all);
    EXPECT_EQ(fresh.lists(), row.lists);
  }
}

TEST_P(Refresh, offersTheFirstChannelOfBothListsOnceOneIsAGroup) {
  struct Lists {
    std::vector<std::string> group1;
    std::vector<std::string> group2;
    const char* channels;
  };
  for (const Lists& row : {Lists{{"CH2", "CH3"}, {}, "CH2-ZAN2040-G1"},
                           Lists{{"CH2", "CH3"}, {"CH1"}, "CH2-ZAN2040-G1"},
                           Lists{{}, {"CH2", "CH3"}, "CH2-ZAN2040-G2"},
                           Lists{{"CH1"}, {"CH2", "CH3"}, "CH1-ZAN2040-G1 CH2-ZAN2040-G2"}}) {
    GroupBench fresh;
    fresh.connectWith(GetParam(), row.group1, row.group2);
    (void)fresh.sentByOk();
    EXPECT_EQ(fresh.channels(), row.channels);
  }
}

TEST(RefreshOnTheWire, asksForTheListTwiceThenForTheModulesAndThePresentChannel) {
  GroupBench bench;
  bench.visa.resources = {{"GPIB0::7::INSTR", "GPIB0", &bench.instrument}};
  bench.stopReceivePoll();
  bench.click("cmdAutoConnVISA");
  const std::string journal = bench.journal();
  const std::string expected =
      support::lines({"pass", "viWrite 4 :CHAN? LIST\\r", "viRead 4 80", "pass", "sleep 200",  //
                      "pass", "viWrite 4 :CHAN? LIST\\r", "viRead 4 80", "pass", "sleep 200",  //
                      "pass", "viWrite 4 *RDT?\\r",       "viRead 4 80", "pass", "sleep 200",  //
                      "pass", "viWrite 4 :CHAN?\\n",      "viRead 4 80", "pass", "sleep 200",  //
                      "pass", "viWrite 4 :CHAN 2\\n"});
  EXPECT_NE(journal.find(expected), std::string::npos) << journal;
}

TEST(RefreshOnTheWire, waitsFiveUnitsForEachListOverVisaCom) {
  GroupBench bench;
  bench.connectVisaCom();
  bench.click("cmdAutoConnVISA");
  const std::string journal = bench.journal();
  const std::string expected =
      support::lines({"pass", "Timeout 200", "WriteString :CHAN? LIST\\r END", "sleep 1000",
                      "ReadString", "pass", "sleep 200", "pass", "Timeout 200",
                      "WriteString *RDT?\\r END", "sleep 1000", "ReadString", "pass", "sleep 200"});
  EXPECT_NE(journal.find(expected), std::string::npos) << journal;
}

TEST(RefreshOnTheWire, reportsEachMissingAnswer) {
  GroupBench bench;
  bench.visa.resources = {{"GPIB0::7::INSTR", "GPIB0", &bench.instrument}};
  bench.instrument.on(":CHAN? LIST", support::silence());
  bench.instrument.on("*RDT?", support::silence());
  bench.click("cmdAutoConnVISA");
  EXPECT_EQ(bench.journal({"box"}), std::string(kNoAnswerBox) + kNoAnswerBox + kNoAnswerBox);
  EXPECT_TRUE(bench.zan().isConnected());
}

}  // namespace
}  // namespace lumodevice::groups
