#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "lumodevice/groups/group_lists.hpp"
#include "tests/groups/group_bench.hpp"

namespace lumodevice::groups {
namespace {

using support::kLinks;
using support::Over;

constexpr const char* kJoinTwo = ":CONF:PAR:UNIT 2\n:CONF:PAR:MODE 1\n";

class Overlap : public testing::TestWithParam<Over> {
 protected:
  /// What the instrument answers to each question for its channels, the last answer for ever.
  void answerInTurn(std::initializer_list<const char*> slots) {
    std::vector<support::Reply> replies;
    for (const char* answer : slots) {
      replies.push_back(support::answer(answer));
    }
    bench.instrument.on(":CHAN? LIST", replies);
  }
  GroupBench bench;
};

INSTANTIATE_TEST_SUITE_P(Links, Overlap, testing::ValuesIn(kLinks));

TEST_P(Overlap, isNotMadeByAChannelThatStoodAloneInAGroupList) {
  bench.connect(GetParam());
  bench.drag("List1", "CH2", "List2");
  (void)bench.sentByOk();
  bench.drag("List1", "CH2", "List3");
  bench.drag("List1", "CH3", "List3");
  bench.drag("List1", "CH1", "List2");
  EXPECT_EQ(bench.lists(), "CH5|CH1|CH2 CH3");
  const std::string sent = bench.sentByOk();
  EXPECT_TRUE(sent.starts_with(std::string(":CHAN? LIST\n:CHAN 2\n") + kJoinTwo + ":SHOW VI\n"))
      << sent;
}

TEST_P(Overlap, ofTwoListsFilledFromCodeIsNotSent) {
  for (const auto& [group1, group2] :
       {std::pair{std::vector<std::string>{"CH1", "CH2"}, std::vector<std::string>{"CH2", "CH3"}},
        {{"CH1", "CH2"}, {"CH1", "CH2"}},
        {{"CH2", "CH3", "CH4"}, {"CH1", "CH2"}}}) {
    GroupBench fresh;
    fresh.connectWith(GetParam(), group1, group2);
    fresh.control<toolkit::Frame>("fraParallel").setVisible(true);
    const std::string before = fresh.lists();
    EXPECT_EQ(fresh.sentByOk(), "") << before;
    EXPECT_EQ(fresh.lists(), before);
    EXPECT_EQ(fresh.read("fraParallel", "Visible"), "True") << before;
  }
}

TEST_P(Overlap, thatTheOperatorDragsTogetherMeanwhileIsNotSent) {
  bench.connectWith(GetParam(), {"CH1", "CH2", "CH3"}, {"CH4", "CH5"});
  bench.actAfter(":CONF:PAR:MODE 1", [&] { bench.drag("List2", "CH3", "List3"); });
  const std::string sent = bench.sentByOk();
  EXPECT_EQ(sent, ":CHAN? LIST\n:CHAN 1\n:CONF:PAR:UNIT 3\n:CONF:PAR:MODE 1\n");
  EXPECT_EQ(bench.lists(), "CH1 CH2|CH1 CH2|CH3 CH4 CH5");
}

TEST_P(Overlap, withAGroupOfTheInstrumentTakesThatOneApartFirst) {
  bench.connectWith(GetParam(), {"CH2", "CH3"});
  answerInTurn({"1,0,3,0\n", "1,2,3,0\n", "1,2,3,4\n"});
  const std::string single1 = ":CHAN 1\n:CONF:PAR:UNIT 1\n";
  const std::string single3 = ":CHAN 3\n:CONF:PAR:UNIT 1\n";
  EXPECT_TRUE(bench.sentByOk().starts_with(":CHAN? LIST\n" + single1 + single1 + ":CHAN? LIST\n" +
                                           single3 + ":CHAN 2\n" + kJoinTwo));
}

TEST_P(Overlap, withAGroupThatTheInstrumentKeepsIsNotSent) {
  bench.connectWith(GetParam(), {"CH2", "CH3"});
  bench.control<toolkit::Frame>("fraParallel").setVisible(true);
  answerInTurn({"1,0,3,0\n"});
  EXPECT_EQ(bench.sentByOk().find(":CONF:PAR:UNIT 2"), std::string::npos);
  EXPECT_EQ(bench.lists().substr(bench.lists().find('|')), "|CH2 CH3|");
  EXPECT_EQ(bench.read("fraParallel", "Visible"), "True");
}

TEST_P(Overlap, isNoneWhereAGroupIsGivenAnotherSize) {
  for (const std::vector<std::string>& group :
       {std::vector<std::string>{"CH3", "CH4"}, {"CH3", "CH4", "CH5"}}) {
    GroupBench fresh;
    fresh.connectWith(GetParam(), {}, group);
    fresh.answerLists("1,0,3,0,5\n", "2040\n");
    const std::string sent = fresh.sentByOk();
    const std::string size = std::to_string(group.size());
    EXPECT_NE(sent.find("UNIT 1\n:CHAN 3\n:CONF:PAR:UNIT " + size + '\n'), std::string::npos)
        << sent;
  }
}

/// An own model of an instrument with nine channels that can be joined. It takes every command and
/// keeps the mistakes.
class Model {
 public:
  static constexpr int kChannels = 9;

  Model() { sizes_.fill(1); }

  /// Channels `head` to `head + size - 1` work as one.
  void join(int head, int size) {
    for (int i = 1; i < size; ++i) {
      at(head + i) = 0;
    }
    at(head) = size;
  }

  void hear(std::string_view command) {
    constexpr std::string_view kChannel = ":CHAN ";
    constexpr std::string_view kUnit = ":CONF:PAR:UNIT ";
    if (command.starts_with(kChannel)) {
      channel_ = command.at(kChannel.size()) - '0';
    } else if (command.starts_with(kUnit)) {
      setSize(command.at(kUnit.size()) - '0');
    }
  }

  /// The answer to ":CHAN? LIST": a channel that another one leads is "0".
  [[nodiscard]] std::string slots() const {
    std::string text;
    for (int channel = 1; channel <= kChannels; ++channel) {
      text += (channel == 1 ? "" : ",") + std::to_string(of(channel) == 0 ? 0 : channel);
    }
    return text + '\n';
  }

  /// The number of channels that the channel leads, itself among them; 0 where another one leads.
  [[nodiscard]] int of(int channel) const { return sizes_.at(static_cast<std::size_t>(channel)); }

  std::string mistakes;
  int joined = 0;

 private:
  int& at(int channel) { return sizes_.at(static_cast<std::size_t>(channel)); }

  void setSize(int size) {
    const std::string what = std::to_string(channel_) + " with size " + std::to_string(size);
    if (channel_ < 1 || channel_ + size - 1 > kChannels || of(channel_) == 0) {
      mistakes += what + " cannot lead\n";
      return;
    }
    const int before = of(channel_);
    for (int member = channel_ + before; member < channel_ + size; ++member) {
      mistakes += of(member) == 1 ? "" : what + " takes " + std::to_string(member) + '\n';
    }
    join(channel_, 1);
    for (int member = channel_; member < channel_ + before; ++member) {
      at(member) = 1;
    }
    join(channel_, size);
    joined += size > 1 ? 1 : 0;
  }

  std::array<int, kChannels + 1> sizes_{};
  int channel_ = 1;
};

/// An operator who drags and sends without a plan.
class Operator {
 public:
  explicit Operator(unsigned seed) : random_(seed) {
    joinSome();
    answer();
    bench_.instrument.otherwise = [this,
                                   before = bench_.instrument.otherwise](std::string_view sent) {
      model_.hear(sent);
      answer();
      return before(sent);
    };
    bench_.connect(Over::VisaLibrary);
  }

  void act() {
    const int what = below(20);
    if (what == 0) {
      bench_.click("cmdAutoConnVISA");
    } else if (what < 4) {
      send();
    } else {
      drag();
    }
    EXPECT_EQ(model_.mistakes, "") << bench_.lists();
  }

  [[nodiscard]] int joined() const { return model_.joined; }
  [[nodiscard]] int kept() const { return kept_; }

 private:
  int below(int count) { return std::uniform_int_distribution(0, count - 1)(random_); }

  /// Groups that somebody else has made.
  void joinSome() {
    for (int channel = 1; channel < Model::kChannels; ++channel) {
      if (below(3) == 0) {
        const int size = std::min(2 + below(3), Model::kChannels - channel + 1);
        model_.join(channel, size);
        channel += size - 1;
      }
    }
  }

  void answer() {
    std::string modules;
    for (int channel = 1; channel <= Model::kChannels; ++channel) {
      modules += channel == 1 ? "2040" : ",2041";
    }
    bench_.answerLists(model_.slots(), modules + '\n');
  }

  void drag() {
    constexpr std::array kLists = {"List1", "List2", "List3"};
    const char* from = kLists.at(static_cast<std::size_t>(below(3)));
    const auto& source = bench_.control<toolkit::ListBox>(from);
    if (source.listCount() > 0) {
      const std::string channel = source.list(below(source.listCount()));
      bench_.drag(from, channel, kLists.at(static_cast<std::size_t>(below(3))));
      expectNoChannelTwice();
    }
  }

  [[nodiscard]] std::vector<int> channels(std::string_view list) {
    const auto& box = bench_.control<toolkit::ListBox>(list);
    std::vector<int> found;
    for (int i = 0; i < box.listCount(); ++i) {
      found.push_back(channelNumber(box.list(i)));
    }
    return found;
  }

  /// A channel that stands alone is free too; what is a group is nowhere else.
  void expectNoChannelTwice() {
    std::set<int> seen;
    for (const char* list : {"List2", "List3"}) {
      int before = 0;
      for (const int channel : channels(list)) {
        EXPECT_TRUE(seen.insert(channel).second) << bench_.lists();
        EXPECT_TRUE(before == 0 || channel == before + 1) << bench_.lists();
        before = channel;
      }
    }
    for (const int channel : channels("List1")) {
      const bool alone =
          channels("List2") == std::vector{channel} || channels("List3") == std::vector{channel};
      EXPECT_TRUE(alone || seen.insert(channel).second) << bench_.lists();
    }
  }

  /// The instrument has what the lists show, unless the editor stayed open.
  void send() {
    bench_.control<toolkit::Frame>("fraParallel").setVisible(true);
    bench_.click("cmdParaOK");
    if (bench_.control<toolkit::Frame>("fraParallel").visible()) {
      ++kept_;
      return;
    }
    for (const char* list : {"List2", "List3"}) {
      const std::vector<int> group = channels(list);
      if (group.size() > 1) {
        EXPECT_EQ(model_.of(group.front()), static_cast<int>(group.size())) << bench_.lists();
      }
    }
  }

  std::mt19937 random_;
  Model model_;
  GroupBench bench_;
  int kept_ = 0;
};

TEST(RandomGroups, neverHaveAChannelTwice) {
  int joined = 0;
  int kept = 0;
  for (unsigned seed = 1; seed <= 40; ++seed) {
    SCOPED_TRACE(seed);
    Operator hand(seed);
    for (int act = 0; act < 150 && !testing::Test::HasFailure(); ++act) {
      hand.act();
    }
    joined += hand.joined();
    kept += hand.kept();
  }
  EXPECT_GT(joined, 200);
  EXPECT_EQ(kept, 0) << "what an operator drags can always be sent";
}

}  // namespace
}  // namespace lumodevice::groups
