#include <gmock/gmock.h>
#include <limits>

#include "tests/text/number_fault.hpp"

namespace lumodevice::text {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();

TEST(Trim, takesBlanksAloneFromBothEnds) {
  struct {
    const char* text;
    const char* trimmed;
  } const rows[] = {
      {"", ""},           {" ", ""},          {"     ", ""},      {"a", "a"},
      {"  a b  ", "a b"}, {"\ta\n", "\ta\n"}, {" \r\n ", "\r\n"}, {"\xC2\xA0 a", "\xC2\xA0 a"}};
  for (const auto& row : rows) EXPECT_EQ(Trim(row.text), row.trimmed) << '"' << row.text << '"';
}

TEST(LeftAndRight, giveUpToCountCharactersOfTheirEnd) {
  struct {
    const char* text;
    std::int64_t count;
    const char* left;
    const char* right;
  } const rows[] = {{"abc", 0, "", ""},       {"abc", 1, "a", "c"},
                    {"abc", 2, "ab", "bc"},   {"abc", 3, "abc", "abc"},
                    {"abc", 4, "abc", "abc"}, {"abc", kMost, "abc", "abc"},
                    {"", 0, "", ""},          {"", 5, "", ""}};
  for (const auto& row : rows) {
    EXPECT_EQ(Left(row.text, row.count), row.left) << row.text << ' ' << row.count;
    EXPECT_EQ(Right(row.text, row.count), row.right) << row.text << ' ' << row.count;
  }
}

TEST(LeftAndRight, refuseANegativeCount) {
  for (const std::int64_t count : {std::int64_t{-1}, kLeast}) {
    EXPECT_EQ(faultOf([=] { return Left("abc", count); }), kInvalidArgument) << count;
    EXPECT_EQ(faultOf([=] { return Right("abc", count); }), kInvalidArgument) << count;
  }
}

TEST(Mid, givesCharactersFromAPositionCountedFromOne) {
  struct {
    std::int64_t start;
    std::int64_t count;
    const char* part;
  } const rows[] = {{1, 1, "a"},    {1, 3, "abc"},     {2, 1, "b"}, {2, 0, ""},
                    {2, 5, "bc"},   {3, kMost, "c"},   {4, 1, ""},  {5, 1, ""},
                    {kMost, 1, ""}, {kMost, kMost, ""}};
  for (const auto& row : rows) {
    EXPECT_EQ(Mid("abc", row.start, row.count), row.part) << row.start << ' ' << row.count;
  }
}

TEST(Mid, refusesAStartBelowOneAndANegativeCount) {
  struct {
    std::int64_t start;
    std::int64_t count;
  } const rows[] = {{0, 1}, {-1, 1}, {kLeast, 1}, {1, -1}, {9, -1}, {1, kLeast}};
  for (const auto& row : rows) {
    EXPECT_EQ(faultOf([=] { return Mid("abc", row.start, row.count); }), kInvalidArgument)
        << row.start << ' ' << row.count;
  }
}

TEST(Split, cutsAtEverySeparator) {
  EXPECT_THAT(Split("a", ','), ElementsAre("a"));
  EXPECT_THAT(Split("a,b,c", ','), ElementsAre("a", "b", "c"));
  EXPECT_THAT(Split(",", ','), ElementsAre("", ""));
  EXPECT_THAT(Split("a,", ','), ElementsAre("a", ""));
  EXPECT_THAT(Split(",a", ','), ElementsAre("", "a"));
  EXPECT_THAT(Split("a,,b", ','), ElementsAre("a", "", "b"));
  EXPECT_THAT(Split(" a ,b;c", ','), ElementsAre(" a ", "b;c"));
}

TEST(Split, hasNoPartForAnEmptyText) {
  EXPECT_THAT(Split("", ','), IsEmpty());
}

TEST(Contains, looksForThePartAnywhereAndMindsTheCase) {
  EXPECT_TRUE(contains("MAKER,ZAN200", "ZAN"));
  EXPECT_TRUE(contains("ZAN", "ZAN"));
  EXPECT_TRUE(contains("a", ""));
  EXPECT_TRUE(contains("", ""));
  EXPECT_FALSE(contains("", "ZAN"));
  EXPECT_FALSE(contains("zan200", "ZAN"));
  EXPECT_FALSE(contains("ZA", "ZAN"));
}

}  // namespace
}  // namespace lumodevice::text
