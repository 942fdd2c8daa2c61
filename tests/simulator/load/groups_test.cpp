#include "simulator/load/groups.hpp"

#include <gtest/gtest.h>

#include "simulator/configuration.hpp"

using zansim::Configuration;
using zansim::Groups;
using zansim::Module;

namespace {

std::vector<const Module*> modules(std::string_view slots) {
  Configuration configuration;
  configuration.setSlots(slots);
  return configuration.channels();
}

/// Sizes and modes of the groups that the channels are in: "1 2p 2p".
std::string shown(const Groups& groups, std::size_t channels) {
  std::string text;
  for (std::size_t channel = 1; channel <= channels; ++channel) {
    const zansim::Group group = groups.of(channel);
    text += (channel == 1 ? "" : " ") + std::to_string(group.size) + (group.parallel ? "p" : "");
  }
  return text;
}

class GroupsOfNine : public testing::Test {
 protected:
  bool resize(std::size_t head, std::size_t size) { return groups_.resize(head, size, modules_); }
  [[nodiscard]] std::string shown() const { return ::shown(groups_, modules_.size()); }

  std::vector<const Module*> modules_ = modules("2040,2040,2040,2041,2041,2040,0,2040,2041,2030");
  Groups groups_;
};

}  // namespace

TEST_F(GroupsOfNine, neighboursAreJoinedAndFreed) {
  EXPECT_TRUE(resize(2, 3));
  EXPECT_EQ(shown(), "1 3 3 3 1 1 1 1 1");
  EXPECT_FALSE(groups_.isFurtherMember(1));
  EXPECT_FALSE(groups_.isFurtherMember(2));
  EXPECT_TRUE(groups_.isFurtherMember(3));
  EXPECT_TRUE(groups_.isFurtherMember(4));
  EXPECT_FALSE(groups_.isFurtherMember(5));
  EXPECT_TRUE(resize(2, 1));
  EXPECT_EQ(shown(), "1 1 1 1 1 1 1 1 1");
  EXPECT_TRUE(resize(9, 1));
}

TEST_F(GroupsOfNine, aGroupCanBeResizedAndKeepsItsMode) {
  EXPECT_TRUE(resize(1, 2));
  EXPECT_TRUE(groups_.setParallel(2, true));
  EXPECT_TRUE(resize(1, 4));
  EXPECT_EQ(shown(), "4p 4p 4p 4p 1 1 1 1 1");
  EXPECT_TRUE(resize(1, 1));
  EXPECT_TRUE(resize(1, 2));
  EXPECT_EQ(shown(), "2 2 1 1 1 1 1 1 1");
}

TEST_F(GroupsOfNine, thereAreAtMostTwo) {
  EXPECT_TRUE(resize(1, 2));
  EXPECT_TRUE(resize(5, 2));
  EXPECT_FALSE(resize(7, 2));
  EXPECT_EQ(shown(), "2 2 1 1 2 2 1 1 1");
  EXPECT_TRUE(resize(1, 3));
  EXPECT_TRUE(resize(5, 1));
  EXPECT_TRUE(resize(7, 2));
  EXPECT_EQ(shown(), "3 3 3 1 1 1 2 2 1");
}

TEST_F(GroupsOfNine, theyNeverOverlap) {
  EXPECT_TRUE(resize(4, 2));
  for (const auto& [head, size] : {std::pair{3, 2}, {3, 3}, {2, 4}, {5, 2}, {5, 1}, {1, 8}}) {
    EXPECT_FALSE(resize(static_cast<std::size_t>(head), static_cast<std::size_t>(size)))
        << head << " " << size;
  }
  EXPECT_TRUE(resize(2, 2));
  EXPECT_FALSE(resize(2, 3));
  EXPECT_EQ(shown(), "1 2 2 2 2 1 1 1 1");
}

TEST_F(GroupsOfNine, onlyModulesForItCanBeInOne) {
  EXPECT_FALSE(resize(9, 2));
  EXPECT_FALSE(resize(8, 2));
  EXPECT_FALSE(resize(7, 3));
  EXPECT_FALSE(resize(7, 4));
  EXPECT_EQ(shown(), "1 1 1 1 1 1 1 1 1");
  EXPECT_TRUE(resize(1, 8));
  EXPECT_EQ(shown(), "8 8 8 8 8 8 8 8 1");
}

TEST_F(GroupsOfNine, aModeNeedsAGroup) {
  EXPECT_FALSE(groups_.setParallel(1, true));
  EXPECT_TRUE(resize(1, 2));
  EXPECT_TRUE(resize(3, 2));
  EXPECT_FALSE(groups_.setParallel(5, true));
  EXPECT_TRUE(groups_.setParallel(4, true));
  EXPECT_EQ(shown(), "2 2 2p 2p 1 1 1 1 1");
  EXPECT_TRUE(groups_.setParallel(3, false));
  groups_.dissolve();
  EXPECT_EQ(shown(), "1 1 1 1 1 1 1 1 1");
}

TEST(InParallel, likeModulesAddUp) {
  const Module three = zansim::inParallel(modules("2040,2040,2040"));
  EXPECT_EQ(three.highAmps, 210);
  EXPECT_EQ(three.lowAmps, 21);
  EXPECT_EQ(three.watts, 1050);
  EXPECT_EQ(three.highVolts, 80);
  EXPECT_EQ(three.lowVolts, 16);
  EXPECT_DOUBLE_EQ(three.lowOhms.least, 0.02 / 3);
  EXPECT_DOUBLE_EQ(three.highOhms.most, 4000.0 / 3);
  EXPECT_DOUBLE_EQ(three.slew.most, 9);
  EXPECT_EQ(three.text, "2040");
}

TEST(InParallel, theWeakestOfUnlikeModulesSetsTheEqualShares) {
  const Module two = zansim::inParallel(modules("2041,2040"));
  EXPECT_EQ(two.highAmps, 140);
  EXPECT_EQ(two.watts, 700);
  EXPECT_DOUBLE_EQ(two.lowOhms.least, 0.01);
  EXPECT_DOUBLE_EQ(two.lowOhms.most, 20);
  EXPECT_DOUBLE_EQ(two.slew.most, 6);
}

TEST(InParallel, aModuleOnItsOwnIsAsItWas) {
  for (const Module& module : zansim::moduleCatalogue()) {
    const Module* const alone[] = {&module};
    const Module same = zansim::inParallel(alone);
    EXPECT_EQ(same.highAmps, module.highAmps);
    EXPECT_EQ(same.lowOhms.least, module.lowOhms.least);
    EXPECT_EQ(same.highOhms.most, module.highOhms.most);
    EXPECT_EQ(same.slew.least, module.slew.least);
  }
}
