#include "platform/builtin/message_end.hpp"

#include <cstdint>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

namespace lumodevice::platform {
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

TEST(MessageEnd, knowsWhatABlockStillHas) {
  MessageEnd end;
  EXPECT_EQ(end.blockBytesLeft(), 0U);
  end.take("#1");
  EXPECT_EQ(end.blockBytesLeft(), 0U);
  end.take("5");
  EXPECT_EQ(end.blockBytesLeft(), 5U);
  end.take("\n\n");
  EXPECT_EQ(end.blockBytesLeft(), 3U);
  end.take("abc");
  EXPECT_EQ(end.blockBytesLeft(), 0U);
  end.take("#15");
  EXPECT_EQ(end.blockBytesLeft(), 0U) << "behind the block stands text";
  end.take("\n#15x");
  EXPECT_EQ(end.blockBytesLeft(), 0U) << "a message goes on at the next call";
  end.take("#15x");
  EXPECT_EQ(end.blockBytesLeft(), 4U);
  end.restart();
  EXPECT_EQ(end.blockBytesLeft(), 0U);
}

/// Messages, bytes without any order, and the pieces in which they arrive; all follow from the
/// seed.
class Stream {
 public:
  explicit Stream(std::uint32_t seed) : random_(seed) {}

  /// A block with text behind it, or text alone.
  std::string message() {
    std::string text;
    if (below(2) == 0) {
      const std::string data = bytes(below(300));
      const std::string length = std::to_string(data.size());
      text = '#' + std::to_string(length.size()) + length + data;
    } else {
      text = 'T';
    }
    for (const char c : bytes(below(20))) {
      text += c == '\n' ? ' ' : c;
    }
    return text + '\n';
  }

  std::string bytes(std::size_t count) {
    static const std::string kBytes("#0123456789\n\r\0 \xFFx", 17);
    std::string made;
    while (made.size() < count) {
      made += kBytes[below(kBytes.size())];
    }
    return made;
  }

  /// Cuts the bytes where messages end, the rest being the last one; they arrive in pieces of up to
  /// `longest` bytes.
  std::vector<std::string> cut(std::string_view stream, std::size_t longest) {
    std::vector<std::string> messages(1);
    MessageEnd end;
    while (!stream.empty()) {
      const std::string_view piece = stream.substr(0, 1 + below(longest));
      const auto taken = end.take(piece);
      EXPECT_GT(taken.length, 0U);
      EXPECT_LE(taken.length, piece.size());
      EXPECT_TRUE(taken.ended || taken.length == piece.size());
      EXPECT_NE(taken.ended, end.insideMessage());
      if (taken.length == 0 || taken.length > piece.size()) {
        break;
      }
      messages.back() += stream.substr(0, taken.length);
      stream.remove_prefix(taken.length);
      if (taken.ended) {
        messages.emplace_back();
      }
    }
    return messages;
  }

  std::size_t below(std::size_t count) {
    return std::uniform_int_distribution<std::size_t>(0, count - 1)(random_);
  }

 private:
  std::mt19937 random_;
};

TEST(MessageEnd, cutsWhatWasSentIntoTheMessagesThatItWas) {
  for (std::uint32_t seed = 1; seed <= 200; ++seed) {
    Stream stream(seed);
    std::vector<std::string> messages;
    std::string sent;
    for (int i = 0; i < 20; ++i) {
      messages.push_back(stream.message());
      sent += messages.back();
    }
    messages.emplace_back();
    EXPECT_EQ(stream.cut(sent, 1 + stream.below(400)), messages) << "seed " << seed;
  }
}

TEST(MessageEnd, ofBytesWithoutOrderDoesNotDependOnTheirPieces) {
  for (std::uint32_t seed = 1; seed <= 200; ++seed) {
    Stream stream(seed);
    const std::string bytes = stream.bytes(1 + stream.below(2000));
    EXPECT_EQ(stream.cut(bytes, 1 + stream.below(100)), stream.cut(bytes, 1)) << "seed " << seed;
  }
}

}  // namespace
}  // namespace lumodevice::platform
