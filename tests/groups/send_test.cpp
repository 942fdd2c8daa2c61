#include <gtest/gtest.h>

#include "tests/groups/group_bench.hpp"

namespace lumodevice::groups {
namespace {

using support::kLinks;
using support::kNoAnswerBox;
using support::Over;

constexpr const char* kListsAsked = ":CHAN? LIST\n*RDT?\n";
/// Behind the configuration: the channel list, and the selection of its first entry.
constexpr const char* kEnd = ":CHAN? LIST\n*RDT?\n:CHAN 1\n";

std::string times(int count, const std::string& commands) {
  std::string all;
  for (int i = 0; i < count; ++i) {
    all += commands;
  }
  return all;
}

class Send : public testing::TestWithParam<Over> {
 protected:
  GroupBench bench;
};

INSTANTIATE_TEST_SUITE_P(Links, Send, testing::ValuesIn(kLinks));

TEST_P(Send, makesNoGroupOfLessThanTwoChannels) {
  for (const auto& group : {std::vector<std::string>{}, {"CH1"}}) {
    GroupBench fresh;
    fresh.connectWith(GetParam(), group, group);
    EXPECT_EQ(fresh.sentByOk(), std::string(":CHAN? LIST\n") + kEnd);
  }
}

TEST_P(Send, makesEachGroupOfTheLists) {
  struct Lists {
    std::vector<std::string> group1;
    std::vector<std::string> group2;
    std::string sent;
  };
  const std::string one = ":CHAN 1\n:CONF:PAR:UNIT 2\n:CONF:PAR:MODE 1\n";
  const std::string two = ":CHAN 3\n:CONF:PAR:UNIT 3\n:CONF:PAR:MODE 1\n";
  for (const Lists& row :
       {Lists{{"CH1", "CH2"}, {}, one}, Lists{{}, {"CH3", "CH4", "CH5"}, two},
        Lists{{"CH1"}, {"CH3", "CH4", "CH5"}, two}, Lists{{"CH1", "CH2"}, {"CH5"}, one},
        Lists{{"CH1", "CH2"}, {"CH3", "CH4", "CH5"}, one + two}}) {
    GroupBench fresh;
    fresh.connectWith(GetParam(), row.group1, row.group2);
    const std::string sent = fresh.sentByOk();
    const std::string expected = ":CHAN? LIST\n" + row.sent + ":SHOW VI\n" + kListsAsked;
    EXPECT_TRUE(sent.starts_with(expected)) << sent;
  }
}

TEST_P(Send, endsEachGroupOfSynchronisedChannelsWithModeZero) {
  bench.connectWith(GetParam(), {"CH1", "CH2"}, {"CH4", "CH5"});
  bench.click("optSync");
  EXPECT_TRUE(
      bench.sentByOk().starts_with(":CHAN? LIST\n"
                                   ":CHAN 1\n:CONF:PAR:UNIT 2\n:CONF:PAR:MODE 0\n"
                                   ":CHAN 4\n:CONF:PAR:UNIT 2\n:CONF:PAR:MODE 0\n"
                                   ":SHOW VI\n"));
}

TEST_P(Send, showsTheGroupInTheChosenStyle) {
  for (const char* style : {"VI", "VW", "IW", "S"}) {
    GroupBench fresh;
    fresh.connectWith(GetParam(), {"CH1", "CH2"});
    fresh.type("cmbParaDisp", style);
    const std::string sent = fresh.sentByOk();
    EXPECT_NE(sent.find(std::string("\n:SHOW ") + style + "\n"), std::string::npos) << sent;
  }
}

TEST_P(Send, makesTheChannelBeforeTheFirstEmptySlotSingleOnceForEachLaterChannelAndOnceMore) {
  struct Slots {
    const char* answer;
    int channel;
    int repeated;
  };
  for (const Slots& row : {Slots{"1,2,3\n", 0, 0},
                           {"1,0\n", 1, 1},
                           {"1,0,3\n", 1, 2},
                           {"1,0,0,4,5,0\n", 1, 3},
                           {"1,2,0,0,5,6,0\n", 2, 3},
                           {"1,2,3,0,5,0,7\n", 3, 3},
                           {"0\n", 0, 1},
                           {"0,2,3\n", 0, 3},
                           {"1,0\n\n", 1, 1},
                           {"1,2\n,0\n\n", 2, 1},
                           {"garbage\n", 0, 0},
                           {",,\n", 0, 0},
                           {"a,0,b\xFF\n", 1, 2},
                           {"00, 0,0 \n", 0, 0}}) {
    GroupBench fresh;
    fresh.connectWith(GetParam(), {});
    fresh.answerLists(row.answer, "ZAN2040,ZAN2040\n");
    const std::string single = ":CHAN " + std::to_string(row.channel) + "\n:CONF:PAR:UNIT 1\n";
    EXPECT_EQ(fresh.sentByOk(), ":CHAN? LIST\n" + times(row.repeated, single) + kEnd)
        << support::escaped(row.answer);
  }
}

TEST_P(Send, takesTheOldGroupsApartBeforeItMakesTheNewOnes) {
  bench.connectWith(GetParam(), {"CH1", "CH2"});
  bench.answerLists("1,0,3,0\n", "A2040,B2041,C2040,D2041\n");
  EXPECT_EQ(bench.sentByOk(), ":CHAN? LIST\n" + times(2, ":CHAN 1\n:CONF:PAR:UNIT 1\n") +
                                  ":CHAN 1\n:CONF:PAR:UNIT 2\n:CONF:PAR:MODE 1\n:SHOW VI\n" + kEnd);
}

TEST_P(Send, withoutAnAnswerToTheListsGoesOn) {
  bench.connectWith(GetParam(), {"CH1", "CH2"});
  bench.instrument.on(":CHAN? LIST", support::silence());
  bench.instrument.on("*RDT?", support::silence());
  const std::string noList = std::string(":CHAN? LIST\n") + kNoAnswerBox;
  EXPECT_EQ(bench.sentByOk(), noList + ":CHAN 1\n:CONF:PAR:UNIT 2\n:CONF:PAR:MODE 1\n:SHOW VI\n" +
                                  noList + "*RDT?\n" + kNoAnswerBox);
  EXPECT_EQ(bench.channels(), "");
  EXPECT_EQ(bench.read("fraParallel", "Visible"), "False");
}

TEST_P(Send, hidesTheFrameAndSelectsTheFirstChannel) {
  bench.connectWith(GetParam(), {"CH2", "CH3"});
  bench.control<toolkit::Frame>("fraParallel").setVisible(true);
  (void)bench.journal();
  bench.click("cmdParaOK");
  const std::string sent = bench.sent();
  EXPECT_EQ(bench.read("fraParallel", "Visible"), "False");
  EXPECT_EQ(bench.channels(), "CH2-ZAN2040-G1");
  EXPECT_EQ(bench.read("cmbChannel", "ListIndex"), "0");
  EXPECT_NE(sent.find("*RDT?\n:CHAN 2\n:Mode?\n"), std::string::npos) << sent;
  EXPECT_TRUE(sent.ends_with(":FETC:POW?\n")) << sent;
  EXPECT_EQ(sent.find("\n:MODE "), std::string::npos) << "a group is given no mode";
}

TEST_P(Send, againSendsTheSame) {
  bench.connectWith(GetParam(), {"CH1", "CH2"});
  const std::string first = bench.sentByOk();
  EXPECT_EQ(bench.sentByOk(), first);
}

TEST_P(Send, survivesMoreChannelsThanCanBeCounted) {
  bench.connectWith(GetParam(), {});
  std::string modules = "A";
  for (int i = 0; i < 40'000; ++i) {
    modules += ",A";
  }
  bench.instrument.on("*RDT?", modules + "\n");
  (void)bench.sentByOk();
  EXPECT_EQ(bench.read("cmbChannel", "ListIndex"), "0");
  // The read of the library link ends after 79 characters.
  EXPECT_EQ(bench.zan().ChCount(), GetParam() == Over::VisaLibrary ? 40 : 32767);
}

TEST_P(Send, survivesListsThatTheOperatorEmptiesMeanwhile) {
  bench.connectWith(GetParam(), {"CH1", "CH2"}, {"CH4", "CH5"});
  bench.actAfter(":CHAN 1", [&] {
    bench.drag("List3", "CH5", "List1");
    bench.drag("List3", "CH4", "List1");
  });
  const std::string sent = bench.sentByOk();
  EXPECT_NE(sent.find(":CONF:PAR:UNIT 2\n:CONF:PAR:MODE 1\n:SHOW VI\n"), std::string::npos) << sent;
}

TEST(SendOnTheWire, waitsTwoSecondsWithoutAPassBetweenUnitAndMode) {
  GroupBench bench;
  bench.connectWith(Over::VisaLibrary, {"CH1", "CH2"});
  (void)bench.journal();
  bench.click("cmdParaOK");
  const std::string journal = bench.journal();
  EXPECT_TRUE(journal.starts_with(support::lines({"pass",        "viWrite 4 :CHAN? LIST\\r",
                                                  "viRead 4 80", "pass",
                                                  "sleep 200",  //
                                                  "pass",        "viWrite 4 :CHAN 1\\n",
                                                  "pass",        "sleep 200",  //
                                                  "pass",        "viWrite 4 :CONF:PAR:UNIT 2\\n",
                                                  "pass",        "sleep 200",
                                                  "sleep 2000",  //
                                                  "pass",        "viWrite 4 :CONF:PAR:MODE 1\\n",
                                                  "pass",        "sleep 200",  //
                                                  "pass",        "viWrite 4 :SHOW VI\\n",
                                                  "pass",        "sleep 200",  //
                                                  "pass",        "viWrite 4 :CHAN? LIST\\r",
                                                  "viRead 4 80", "pass",
                                                  "sleep 200",  //
                                                  "pass",        "viWrite 4 *RDT?\\r",
                                                  "viRead 4 80", "pass",
                                                  "sleep 200",  //
                                                  "pass",        "viWrite 4 :CHAN 1\\n"})))
      << journal;
}

TEST(SendOnTheWire, emptiesTheCommandBoxBeforeItAsksForTheList) {
  GroupBench bench;
  bench.connectWith(Over::VisaLibrary, {});
  bench.watch({"TXT"});
  (void)bench.journal();
  bench.click("cmdParaOK");
  EXPECT_TRUE(bench.journal({"TXT"}).starts_with(support::lines(
      {"TXT.Text :CHAN? LIST", "TXT.Text ", "TXT.Text :CHAN? LIST", "TXT.Text *RDT?"})));
}

}  // namespace
}  // namespace lumodevice::groups
