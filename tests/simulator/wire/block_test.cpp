#include "simulator/wire/block.hpp"

#include <gtest/gtest.h>
#include <random>
#include <string>

using zansim::appendBlock;
using zansim::blockData;
using zansim::blockHeader;

TEST(Block, itsHeaderHasNoMoreDigitsThanItsLengthNeeds) {
  for (const auto& [length, header] : {std::pair<std::size_t, std::string>{0, "#10"},
                                       {9, "#19"},
                                       {10, "#210"},
                                       {892, "#3892"},
                                       {5580, "#45580"}}) {
    std::string text = "x";
    appendBlock(text, std::string(length, '\0'));
    EXPECT_EQ(text, "x" + header + std::string(length, '\0'));
  }
}

TEST(Block, anyLengthOfHeaderIsRead) {
  EXPECT_EQ(blockData("#13abc"), "abc");
  EXPECT_EQ(blockData("#800000003abc"), "abc");
  EXPECT_EQ(blockData("#10"), "");
  EXPECT_EQ(blockHeader("#213x")->size, 4U);
  EXPECT_EQ(blockHeader("#213x")->length, 13U);
}

TEST(Block, whatIsNotExactlyOneBlockHasNoData) {
  for (const char* const text : {"", "#", "#0", "#0abc", "#1", "#1x", "#2", "#21", "#2-1", "#13ab",
                                 "#13abcd", "13abc", " #13abc", "#:3abc"}) {
    EXPECT_FALSE(blockData(text)) << text;
  }
}

TEST(Block, anyBytesComeBackAsTheyWere) {
  std::mt19937 random(7);
  std::uniform_int_distribution<int> byte(0, 255);
  for (std::size_t size = 0; size < 300; ++size) {
    std::string bytes;
    while (bytes.size() < size) {
      bytes += static_cast<char>(byte(random));
    }
    std::string text;
    appendBlock(text, bytes);
    ASSERT_EQ(blockData(text), bytes);
  }
}
