#include "lumodevice/transfer/block.hpp"

#include <gtest/gtest.h>
#include <random>
#include <string>
#include <utility>

#include "lumodevice/text/text.hpp"
#include "tests/transfer/blocks.hpp"

namespace lumodevice::transfer {
namespace {

struct HeaderCase {
  const char* answer;
  int digits;
  int length;
};

TEST(BlockHeader, isReadFromItsPlacesWhateverStandsThere) {
  for (const auto& [answer, digits, length] : {
           HeaderCase{"#45580", 4, 5580},
           HeaderCase{"#3892", 3, 892},
           HeaderCase{"#15hello", 1, 5},
           HeaderCase{"#532767", 5, 32767},
           HeaderCase{"", 0, 0},
           HeaderCase{"#", 0, 0},
           HeaderCase{"#0", 0, 0},
           HeaderCase{"#A", 0, 0},
           HeaderCase{"#4", 4, 0},
           HeaderCase{"#455", 4, 55},
           HeaderCase{"#212x", 2, 12},
           HeaderCase{"#3x12", 3, 0},
           HeaderCase{"x3892", 3, 892},
           HeaderCase{"\n#3892", 0, 0},
       }) {
    const BlockHeader header = parseBlockHeader(answer);
    EXPECT_EQ(header.lengthDigits, digits) << answer;
    EXPECT_EQ(header.dataLength, length) << answer;
  }
}

TEST(BlockHeader, ofALengthBeyond16BitsIsAnOverflow) {
  EXPECT_THROW((void)parseBlockHeader("#532768"), text::NumberFault);
  EXPECT_THROW((void)parseBlockHeader("#9999999999"), text::NumberFault);
}

TEST(BlockData, isWhatTheHeaderPromises) {
  EXPECT_EQ(blockData("#15hello\n", {1, 5}), "hello");
  EXPECT_EQ(blockData("#15hello", {1, 5}), "hello");
}

TEST(BlockData, mustBeThereAsAWhole) {
  EXPECT_THROW((void)blockData("#15hell", {1, 5}), BlockFault);
  EXPECT_THROW((void)blockData("", {1, 5}), BlockFault);
}

TEST(BlockData, isNeverNothing) {
  EXPECT_THROW((void)blockData("#10", {1, 0}), BlockFault);
  EXPECT_THROW((void)blockData("#2-5", {2, -5}), BlockFault);
}

TEST(BlockData, beginsWithTheMark) {
  EXPECT_THROW((void)blockData("x15hello", {1, 5}), BlockFault);
}

TEST(BlockData, thatEndsBeyond16BitsIsAnOverflow) {
  EXPECT_EQ(blockData("#532761" + pattern(32761), {5, 32761}), pattern(32761));
  EXPECT_THROW((void)blockData("#532762" + pattern(32762), {5, 32762}), text::NumberFault);
  EXPECT_THROW((void)blockData("#532767" + pattern(32767), {5, 32767}), text::NumberFault);
}

using Assembly = BlockAssembler::State;

TEST(BlockAssembler, putsABlockTogetherFromPiecesCutAnywhere) {
  const std::string data = pattern(300);
  const std::string answer = "-113,\"late\"\n" + blockOf(data);
  for (std::size_t cut = 0; cut <= answer.size(); ++cut) {
    BlockAssembler block;
    block.add(std::string_view(answer).substr(0, cut));
    EXPECT_EQ(block.add(std::string_view(answer).substr(cut)), Assembly::Complete) << cut;
    EXPECT_EQ(block.data(), data) << cut;
  }
}

TEST(BlockAssembler, isIncompleteUntilTheLastByteOfData) {
  const std::string answer = blockOf("hello");
  for (std::size_t size = 0; size < answer.size() - 1; ++size) {
    BlockAssembler block;
    EXPECT_EQ(block.add(answer.substr(0, size)), Assembly::Incomplete) << size;
    EXPECT_EQ(block.data(), std::nullopt);
  }
}

TEST(BlockAssembler, goesOnBehindAMarkThatBeginsNoBlock) {
  for (const char* stale : {"#", "##", "#0", "#A", "#3x12", "#10", "#9999999999", "#816777217",
                            "A#1,#B#2\n", "-113,\"#x\"\n#0\n"}) {
    const std::string answer = stale + blockOf("hello #1 world");
    for (std::size_t cut = 0; cut <= answer.size(); ++cut) {
      BlockAssembler block;
      block.add(std::string_view(answer).substr(0, cut));
      EXPECT_EQ(block.add(std::string_view(answer).substr(cut)), Assembly::Complete) << answer;
      EXPECT_EQ(block.data(), "hello #1 world") << answer << ' ' << cut;
    }
  }
}

TEST(BlockAssembler, takesNoMoreDataThanAPictureHas) {
  BlockAssembler block;
  EXPECT_EQ(block.add("#816777217"), Assembly::Incomplete);
  EXPECT_EQ(block.add("#15hello"), Assembly::Complete);
  BlockAssembler largest;
  EXPECT_EQ(largest.add("#816777216"), Assembly::Incomplete);
  EXPECT_EQ(largest.add("#15hello"), Assembly::Incomplete);
}

TEST(BlockAssembler, givesUpOnWhatNeverBeginsABlock) {
  for (const char* filling : {"xxxx", "#0x#"}) {
    BlockAssembler block;
    for (int i = 0; i < 1024; ++i) {
      ASSERT_EQ(block.add(filling), Assembly::Incomplete);
    }
    EXPECT_EQ(block.add("#0xx"), Assembly::Broken);
    EXPECT_EQ(block.add("#15hello"), Assembly::Broken) << "for good";
  }
}

TEST(BlockAssembler, keepsTheLineEndThatFollowsAndNothingElse) {
  for (const auto& [behind, end] :
       {std::pair("\n", "\n"), std::pair("\r\n", "\r\n"), std::pair("\r", "\r"),
        std::pair("\n\n", "\n"), std::pair("x\n", ""), std::pair("", "")}) {
    BlockAssembler together;
    together.add(std::string("#15hello") + behind);
    ASSERT_TRUE(together.block());
    EXPECT_EQ(together.block()->bytes, std::string("#15hello") + end);
    EXPECT_EQ(together.block()->data, "hello");
    BlockAssembler apart;
    EXPECT_EQ(apart.add("#15hello"), Assembly::Complete);
    EXPECT_FALSE(apart.block()->hasLineEnd());
    apart.add(behind);
    EXPECT_EQ(apart.block()->bytes, together.block()->bytes);
  }
}

TEST(BlocksIn, findsTheLastCompleteOneWhateverStandsAroundIt) {
  for (const auto& [bytes, last] :
       {std::pair("", ""), std::pair("1.5\n", ""), std::pair("#15hell", ""), std::pair("#10\n", ""),
        std::pair("#15hello", "#15hello"), std::pair("1.5\n#15hello\n", "#15hello\n"),
        std::pair("#15hello\n#15world\n", "#15world\n"),
        std::pair("#15hello\n\n#15world", "#15world"),
        std::pair("#15hello#0,2\n#15worl", "#15hello"),
        std::pair("1.5\n#15hello\n2.5\n", "#15hello\n")}) {
    const auto block = blocksIn(bytes).last;
    EXPECT_EQ(block ? block->bytes : "", last) << bytes;
  }
}

TEST(BlocksIn, countsTheCompleteOnesAndSeesOneThatHasBegun) {
  EXPECT_EQ(blocksIn("1.5\n#15hello\n#15world").complete, 2);
  EXPECT_FALSE(blocksIn("1.5\n#15hello\n#15world").unfinished);
  for (const char* begun : {"#", "#1", "#15hell", "1.5\n#3", "#15hello\n#", "#15hello\n#15"}) {
    EXPECT_TRUE(blocksIn(begun).unfinished) << begun;
  }
  for (const char* none : {"", "\r\n", "1.5\n", "#0", "#10", "#x#15hello\n"}) {
    EXPECT_FALSE(blocksIn(none).unfinished) << none;
  }
}

TEST(BlockAssembler, agreesWithItselfOverRandomBlocksInRandomPieces) {
  std::mt19937 random(5);
  for (int round = 0; round < 1000; ++round) {
    std::string data(1 + random() % 2000, '\0');
    for (char& byte : data) {
      byte = static_cast<char>(random());
    }
    const std::string answer = blockOf(data);
    BlockAssembler block;
    auto state = Assembly::Incomplete;
    for (std::size_t at = 0; at < answer.size();) {
      const std::size_t piece = 1 + random() % 700;
      state = block.add(std::string_view(answer).substr(at, piece));
      at += piece;
    }
    ASSERT_EQ(state, Assembly::Complete);
    ASSERT_EQ(block.data(), data);
  }
}

}  // namespace
}  // namespace lumodevice::transfer
