#include <algorithm>
#include <gtest/gtest.h>
#include <string>

#include "tests/groups/group_bench.hpp"

namespace lumodevice::groups {
namespace {

using support::kLinks;
using support::linkName;
using support::Over;

/// Takes the link away in one event pass of what follows.
class LostLink {
 public:
  LostLink(GroupBench& bench, Over link, int pass) : bench_(bench), link_(link), left_(pass) {
    passes_ = bench_.loop.observePasses([this] {
      if (left_-- == 0) {
        before_ = bench_.journal({"viWrite", "WriteString", "COM3 write"});
        lists_ = bench_.lists();
        bench_.click(link_ == Over::Serial ? "optVISA" : "optConnRS232");
      }
    });
  }

  [[nodiscard]] bool lost() const { return left_ < 0; }
  [[nodiscard]] const std::string& lists() const { return lists_; }
  /// What went out before it, and after it the commands and the waits for channels to join.
  [[nodiscard]] const std::string& before() const { return before_; }
  [[nodiscard]] std::string after() {
    return bench_.journal({"viWrite", "WriteString", "COM3 write", "sleep 2000"});
  }

 private:
  GroupBench& bench_;
  Over link_;
  int left_;
  std::string before_;
  std::string lists_;
  toolkit::Subscription passes_;
};

/// The exchange under way may still try to write; nothing further may begin.
void expectNoFurtherCommand(const std::string& written) {
  EXPECT_LE(std::count(written.begin(), written.end(), '\n'), 1) << written;
  EXPECT_EQ(written.find("sleep 2000"), std::string::npos) << written;
}

TEST(LostLinkWhileSending, endsItAsItStandsWhereverThatIs) {
  for (const Over link : kLinks) {
    SCOPED_TRACE(linkName(link));
    int pass = 0;
    for (bool lost = true; lost; ++pass) {
      SCOPED_TRACE(pass);
      GroupBench bench;
      bench.answerLists("1,0,3,0\n", "2040,2040,2041,2041\n");
      bench.connectWith(link, {"CH1", "CH2"}, {"CH3", "CH4"});
      bench.control<toolkit::Frame>("fraParallel").setVisible(true);
      bench.type("Text5", "10");
      LostLink end(bench, link, pass);
      ASSERT_NO_THROW(bench.click("cmdParaOK"));
      lost = end.lost();
      if (lost && end.before().find("*RDT?") == std::string::npos) {
        expectNoFurtherCommand(end.after());
        EXPECT_EQ(bench.read("fraParallel", "Visible"), "True");
        EXPECT_EQ(bench.lists(), end.lists());
      }
      EXPECT_EQ(bench.zan().isConnected(), !lost);
    }
    EXPECT_GT(pass, 30);
  }
}

TEST(LostLinkWhileConnecting, leavesTheListsAsTheyStand) {
  for (const Over link : {Over::VisaLibrary, Over::VisaCom}) {
    SCOPED_TRACE(linkName(link));
    int pass = 0;
    for (bool lost = true; lost; ++pass) {
      SCOPED_TRACE(pass);
      GroupBench bench;
      bench.connect(link);
      bench.answerLists("1,0,3,0\n", "2040,2040,2041,2041\n");
      bench.type("Text5", "10");
      LostLink end(bench, link, pass);
      ASSERT_NO_THROW(bench.click("cmdAutoConnVISA"));
      lost = end.lost();
      const std::string lists = bench.lists();
      EXPECT_TRUE(lists == "||" || lists == "|CH1 CH2|CH3 CH4") << lists;
      EXPECT_EQ(bench.zan().isConnected(), !lost);
    }
    EXPECT_GT(pass, 20);
  }
}

TEST(LostLinkWhileOpening, takesTheDefaultModeAndShowsTheFrame) {
  for (const Over link : kLinks) {
    SCOPED_TRACE(linkName(link));
    GroupBench bench;
    bench.instrument.on(":CONF:PAR:MODE?", "SYNC\n");
    bench.connectWith(link, {"CH1", "CH2"});
    bench.click("optSync");
    LostLink end(bench, link, 1);
    bench.click("cmdParalle");
    EXPECT_TRUE(end.lost());
    EXPECT_EQ(bench.read("optPara", "Value"), "True");
    EXPECT_EQ(bench.read("fraParallel", "Visible"), "True");
  }
}

TEST(ConnectWithinARefresh, showsEachGroupOnce) {
  GroupBench bench;
  bench.answerLists("1,0,3,0\n", "2040,2040,2041,2041\n");
  bench.connect(Over::VisaLibrary);
  bench.actAfter(":CHAN? LIST", [&] { bench.click("cmdAutoConnVISA"); });
  bench.click("cmdAutoConnVISA");
  EXPECT_EQ(bench.lists(), "|CH1 CH2|CH3 CH4");
  EXPECT_EQ(bench.channels(), "CH1-2040-G1 CH3-2041-G2");
}

}  // namespace
}  // namespace lumodevice::groups
