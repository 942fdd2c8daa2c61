#include <algorithm>
#include <gtest/gtest.h>
#include <random>

#include "lumodevice/groups/group_lists.hpp"
#include "tests/groups/group_bench.hpp"

namespace lumodevice::groups {
namespace {

using toolkit::DragData;
using toolkit::ListBox;

class Drag : public testing::Test {
 protected:
  void have(const std::vector<std::string>& free, const std::vector<std::string>& group1,
            const std::vector<std::string>& group2 = {}) {
    bench.fill("List1", free);
    bench.fill("List2", group1);
    bench.fill("List3", group2);
  }
  GroupBench bench;
};

TEST_F(Drag, movesAChannelIntoAnEmptyGroup) {
  have({"CH1", "CH3", "CH5"}, {});
  bench.drag("List1", "CH3", "List2");
  EXPECT_EQ(bench.lists(), "CH1 CH5|CH3|");
  bench.drag("List1", "CH1", "List3");
  EXPECT_EQ(bench.lists(), "CH5|CH3|CH1");
}

TEST_F(Drag, takesOnlyTheNeighboursOfAGroup) {
  have({"CH1", "CH4", "CH5"}, {"CH2", "CH3"});
  bench.drag("List1", "CH5", "List2");
  EXPECT_EQ(bench.lists(), "CH1 CH4 CH5|CH2 CH3|");
  bench.drag("List1", "CH4", "List2");
  EXPECT_EQ(bench.lists(), "CH1 CH5|CH2 CH3 CH4|");
  bench.drag("List1", "CH1", "List2");
  EXPECT_EQ(bench.lists(), "CH5|CH1 CH2 CH3 CH4|") << "the first channel stands first";
}

TEST_F(Drag, takesOnlyAnEndOutOfAGroupOfThree) {
  for (const auto& [channel, after] :
       {std::pair{"CH3", "|CH2 CH3 CH4|"}, {"CH2", "CH2|CH3 CH4|"}, {"CH4", "CH4|CH2 CH3|"}}) {
    have({}, {"CH2", "CH3", "CH4"});
    bench.drag("List2", channel, "List1");
    EXPECT_EQ(bench.lists(), after);
  }
}

TEST_F(Drag, takesEitherChannelOutOfAGroupOfTwo) {
  for (const auto& [channel, after] : {std::pair{"CH2", "CH2|CH3|"}, {"CH3", "CH3|CH2|"}}) {
    have({}, {"CH2", "CH3"});
    bench.drag("List2", channel, "List1");
    EXPECT_EQ(bench.lists(), after);
  }
}

TEST_F(Drag, movesAChannelFromGroupToGroupWhenBothAllowIt) {
  have({}, {"CH1", "CH2", "CH3"}, {"CH4", "CH5"});
  bench.drag("List2", "CH3", "List3");
  EXPECT_EQ(bench.lists(), "|CH1 CH2|CH3 CH4 CH5");
  bench.drag("List3", "CH4", "List2");
  EXPECT_EQ(bench.lists(), "|CH1 CH2|CH3 CH4 CH5") << "from the middle";
  bench.drag("List3", "CH5", "List2");
  EXPECT_EQ(bench.lists(), "|CH1 CH2|CH3 CH4 CH5") << "no neighbour";
}

TEST_F(Drag, keepsTheFreeChannelsSorted) {
  have({"CH2", "CH6"}, {"CH4"}, {"CH1"});
  bench.drag("List2", "CH4", "List1");
  bench.drag("List3", "CH1", "List1");
  EXPECT_EQ(bench.lists(), "CH1 CH2 CH4 CH6||");
}

TEST_F(Drag, ontoItsOwnListChangesNothing) {
  have({"CH1", "CH2"}, {"CH4", "CH5"});
  bench.drag("List1", "CH1", "List1");
  bench.drag("List2", "CH5", "List2");
  EXPECT_EQ(bench.lists(), "CH1 CH2|CH4 CH5|");
  // The same with the selection moved on between drag and drop.
  for (const char* name : {"List1", "List2"}) {
    auto& list = bench.control<ListBox>(name);
    list.setListIndex(0);
    DragData data;
    list.startDrag.raise(data);
    list.setListIndex(1);
    list.drop.raise(data);
    EXPECT_EQ(bench.lists(), "CH1 CH2|CH4 CH5|") << name;
  }
}

TEST_F(Drag, ofWhatAGroupShowsAsSelectedChangesNothing) {
  have({"CH1", "CH2"}, {"CH1"});
  bench.select("List2", 0);
  bench.drag("List1", "CH1", "List2");
  EXPECT_EQ(bench.lists(), "CH1 CH2|CH1|");
}

TEST_F(Drag, backToTheFreeChannelsIsTakenWhateverIsSelectedThere) {
  have({"CH1", "CH2"}, {"CH1"});
  bench.select("List1", 0);
  bench.drag("List2", "CH1", "List1");
  EXPECT_EQ(bench.lists(), "CH1 CH2||");
}

TEST_F(Drag, takesAFreeChannelOutOfTheGroupWhereItStandsAlone) {
  have({"CH1", "CH2", "CH3"}, {"CH2"});
  bench.drag("List1", "CH2", "List3");
  EXPECT_EQ(bench.lists(), "CH1 CH3||CH2");
}

TEST_F(Drag, takesAChannelThatStandsAloneOutOfTheFreeOnes) {
  have({"CH1", "CH2", "CH3"}, {"CH2"});
  bench.drag("List2", "CH2", "List3");
  EXPECT_EQ(bench.lists(), "CH1 CH3||CH2");
}

TEST_F(Drag, toAChannelThatStandsAloneTakesThatOneOutOfTheFreeOnes) {
  have({"CH1", "CH2", "CH3"}, {"CH2"});
  bench.drag("List1", "CH1", "List2");
  EXPECT_EQ(bench.lists(), "CH3|CH1 CH2|");
}

TEST_F(Drag, ofAFreeChannelFromTheMiddleOfAGroupChangesNothing) {
  have({"CH2"}, {"CH1", "CH2", "CH3"});
  bench.drag("List1", "CH2", "List3");
  EXPECT_EQ(bench.lists(), "CH2|CH1 CH2 CH3|");
}

TEST_F(Drag, ofAChannelThatIsFreeAlreadyLeavesItThereOnce) {
  have({"CH1", "CH2"}, {"CH1"});
  bench.drag("List2", "CH1", "List1");
  EXPECT_EQ(bench.lists(), "CH1 CH2||");
}

TEST_F(Drag, offersTheSelectedItemAsTextToMove) {
  have({"CH1", "CH2"}, {});
  auto& free = bench.control<ListBox>("List1");
  free.setListIndex(1);
  DragData data;
  free.startDrag.raise(data);
  EXPECT_EQ(data.text, "CH2");
  EXPECT_EQ(data.allowedEffects, toolkit::kDropEffectMove);
}

TEST_F(Drag, withoutABeginningChangesNothing) {
  have({"CH1", "CH2"}, {});
  bench.control<ListBox>("List2").drop.raise({"CH1", toolkit::kDropEffectMove});
  EXPECT_EQ(bench.lists(), "CH1 CH2||");
}

TEST_F(Drag, ofWhatIsNoLongerInItsListChangesNothing) {
  have({"CH1"}, {});
  auto& free = bench.control<ListBox>("List1");
  free.setListIndex(0);
  DragData data;
  free.startDrag.raise(data);
  free.clear();
  bench.control<ListBox>("List2").drop.raise(data);
  EXPECT_EQ(bench.lists(), "||");
}

TEST_F(Drag, knowsAChannelByItsLastCharacter) {
  EXPECT_EQ(channelNumber("CH7"), 7);
  EXPECT_EQ(channelNumber("CH12"), 2);
  EXPECT_EQ(channelNumber("CH1-ZAN2040"), 0);
  EXPECT_EQ(channelNumber("CH1L"), 0);
  EXPECT_EQ(channelNumber("&"), 0);
  EXPECT_EQ(channelNumber(""), 0);
  auto& group = bench.control<ListBox>("List2");
  have({}, {"CH8", "CH9"});
  EXPECT_FALSE(GroupLists::CanAddToGroup(group, "CH10"));
  EXPECT_TRUE(GroupLists::CanAddToGroup(group, "CH17"));
}

TEST_F(Drag, sendsNothing) {
  bench.connectWith(support::Over::VisaLibrary, {"CH2", "CH3"});
  bench.drag("List1", "CH1", "List2");
  EXPECT_EQ(bench.sent(), "");
}

/// The channels of a list, which must be sorted.
std::vector<int> numbers(const ListBox& list) {
  std::vector<int> found;
  found.reserve(static_cast<std::size_t>(list.listCount()));
  for (int i = 0; i < list.listCount(); ++i) {
    found.push_back(channelNumber(list.list(i)));
  }
  EXPECT_TRUE(std::ranges::is_sorted(found));
  return found;
}

TEST_F(Drag, whateverTheOperatorDragsKeepsEveryChannelOnceAndGroupsWithoutGaps) {
  constexpr const char* kLists[] = {"List1", "List2", "List3"};
  have({"CH1", "CH2", "CH3", "CH4", "CH5", "CH6", "CH7", "CH8", "CH9"}, {});
  std::mt19937 random(1);
  const auto below = [&](int count) { return std::uniform_int_distribution(0, count - 1)(random); };
  int moved = 0;
  int largest = 0;
  for (int act = 0; act < 4000; ++act) {
    const char* from = kLists[below(3)];
    const auto& source = bench.control<ListBox>(from);
    if (source.listCount() == 0) {
      continue;
    }
    const std::string before = bench.lists();
    bench.drag(from, source.list(below(source.listCount())), kLists[below(3)]);
    moved += bench.lists() == before ? 0 : 1;
    std::vector<int> all;
    for (const char* name : kLists) {
      const std::vector<int> channels = numbers(bench.control<ListBox>(name));
      all.insert(all.end(), channels.begin(), channels.end());
      if (name != kLists[0] && !channels.empty()) {
        EXPECT_EQ(channels.back() - channels.front() + 1, static_cast<int>(channels.size()));
        largest = std::max(largest, static_cast<int>(channels.size()));
      }
    }
    std::ranges::sort(all);
    ASSERT_EQ(all, (std::vector{1, 2, 3, 4, 5, 6, 7, 8, 9})) << bench.lists();
  }
  EXPECT_GT(moved, 500);
  EXPECT_GT(largest, 3);
}

}  // namespace
}  // namespace lumodevice::groups
