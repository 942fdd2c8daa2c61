#include "platform/posix/message_end.hpp"

#include <gtest/gtest.h>
#include <string>

namespace lumodevice::posix {
namespace {

/// The length of the first message of `stream` when it arrives in pieces of `piece` bytes; 0 when
/// it does not end.
std::size_t lengthOf(const std::string& stream, std::size_t piece) {
  MessageEnd end;
  for (std::size_t at = 0; at < stream.size();) {
    const auto taken = end.take(std::string_view(stream).substr(at, piece));
    at += taken.length;
    if (taken.ended) return at;
  }
  return 0;
}

TEST(MessageEnd, isALineFeedOutsideOfABlockHoweverTheBytesArrive) {
  struct Case {
    std::string stream;
    std::size_t length;
  };
  const Case cases[] = {
      {"1.5\nrest", 4},
      {"\n", 1},
      {"1.5", 0},
      {"#13a\nb\nrest", 7},
      {"#13\n\n\n\n", 7},
      {"#10\nrest", 4},
      {"#213" + std::string(13, '\n') + "\n", 18},
      {"#13a\nb", 0},
      {"#13a\nb tail\nrest", 12},
      {"#0a\nb\n", 4},
      {"#x\n#13\n\n\n\n", 3},
      {"#2x\n", 4},
      {"#\n", 2},
      {"a#13\n\n\n\n", 5},
      {"#9000000001\n\n", 13},
  };
  for (const auto& [stream, length] : cases) {
    for (const std::size_t piece : {1UL, 2UL, 3UL, 100UL}) {
      EXPECT_EQ(lengthOf(stream, piece), length) << stream << " by " << piece;
    }
  }
}

TEST(MessageEnd, knowsWhetherAMessageIsUnderWay) {
  MessageEnd end;
  EXPECT_FALSE(end.insideMessage());
  end.take("#12a");
  EXPECT_TRUE(end.insideMessage());
  EXPECT_TRUE(end.insideBlock());
  end.take("b");
  EXPECT_TRUE(end.insideMessage());
  EXPECT_FALSE(end.insideBlock());
  end.take("\n");
  EXPECT_FALSE(end.insideMessage());
  end.take("abc");
  end.restart();
  EXPECT_FALSE(end.insideMessage());
}

}  // namespace
}  // namespace lumodevice::posix
