#include "simulator/wire/framer.hpp"

#include <algorithm>
#include <cstdint>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

using zansim::Framer;

namespace {

/// Messages that come out, with "<overrun>" and "<bad block>" where they are reported.
std::vector<std::string> frame(Framer& framer, std::string_view bytes, bool end = false) {
  std::vector<std::string> messages;
  const auto note = [&](Framer::Result result) {
    switch (result) {
      case Framer::Result::Message:
        messages.emplace_back(framer.message());
        break;
      case Framer::Result::Overrun:
        messages.emplace_back("<overrun>");
        break;
      case Framer::Result::BadBlock:
        messages.emplace_back("<bad block>");
        break;
      case Framer::Result::More:
        break;
    }
  };
  for (const char byte : bytes) {
    note(framer.put(byte));
  }
  if (end) {
    note(framer.end());
  }
  return messages;
}

using Messages = std::vector<std::string>;

/// What a link brings; all of it follows from the seed.
class Traffic {
 public:
  explicit Traffic(std::uint32_t seed) : random_(seed) {}

  /// A message without what ends it: text that may end in quotes or in a block.
  std::string message() {
    std::string text = 'T' + bytes("ABC:? ,;1", below(30));
    switch (below(3)) {
      case 0: {
        const std::string data = bytes("#\r\n\"' x\xFF", below(200));
        const std::string length = std::to_string(data.size());
        return text + '#' + std::to_string(length.size()) + length + data;
      }
      case 1:
        return text + '"' + bytes("#123' x", below(20)) + '"';
      default:
        return text;
    }
  }

  std::string terminator() {
    static const std::string kTerminators[] = {"\r", "\n", "\r\n", "\n \n"};
    return kTerminators[below(4)];
  }

  std::string bytes(const std::string& of, std::size_t count) {
    std::string made;
    while (made.size() < count) {
      made += of[below(of.size())];
    }
    return made;
  }

  std::size_t below(std::size_t count) {
    return std::uniform_int_distribution<std::size_t>(0, count - 1)(random_);
  }

 private:
  std::mt19937 random_;
};

}  // namespace

TEST(Framer, everyTerminatorEndsAMessageOnce) {
  Framer framer;
  EXPECT_EQ(frame(framer, "*IDN?\r:CHAN?\n:CHAN 2\r\n\n \r\n*RDT?\r"),
            (Messages{"*IDN?", ":CHAN?", ":CHAN 2", "*RDT?"}));
}

TEST(Framer, theLinksEndMarkEndsAMessageWithoutTerminator) {
  Framer framer;
  EXPECT_EQ(frame(framer, "*IDN?", true), Messages{"*IDN?"});
  EXPECT_EQ(frame(framer, "*IDN?\n", true), Messages{"*IDN?"});
  EXPECT_EQ(frame(framer, "", true), Messages{});
}

TEST(Framer, terminatorsWithinABlockAreData) {
  Framer framer;
  EXPECT_EQ(frame(framer, ":SYST:SET #15a\n\r;#\n*IDN?\n"),
            (Messages{":SYST:SET #15a\n\r;#", "*IDN?"}));
}

TEST(Framer, aBlocksLastByteEndsTheMessageAsHostsSendNoTerminator) {
  Framer framer;
  EXPECT_EQ(frame(framer, ":SYST:SET #213" + std::string(13, '\0')),
            Messages{":SYST:SET #213" + std::string(13, '\0')});
  EXPECT_EQ(frame(framer, ":FETC:VOLT?\n"), Messages{":FETC:VOLT?"});
  EXPECT_EQ(frame(framer, "A #10"), Messages{"A #10"});
}

TEST(Framer, aNumberSignInQuotesOrBeforeALetterStartsNoBlock) {
  Framer framer;
  EXPECT_EQ(frame(framer, "A \"#15\"\nA '#15'\nA #H1F\nA #0\n"),
            (Messages{"A \"#15\"", "A '#15'", "A #H1F", "A #0"}));
}

TEST(Framer, anOpenQuoteEndsWithItsLine) {
  Framer framer;
  EXPECT_EQ(frame(framer, "A \"open\nB\n"), (Messages{"A \"open", "B"}));
}

TEST(Framer, aBlockHeaderThatIsNoneIsDroppedWithItsLine) {
  Framer framer;
  EXPECT_EQ(frame(framer, "A #3x12 rest\nB\nA #2\nC\n"),
            (Messages{"<bad block>", "B", "<bad block>", "C"}));
}

TEST(Framer, aBlockCutShortByTheLinksEndIsReported) {
  Framer framer;
  EXPECT_EQ(frame(framer, "A #15abc", true), Messages{"<bad block>"});
  EXPECT_EQ(frame(framer, "A #3", true), Messages{"<bad block>"});
  EXPECT_EQ(frame(framer, "B", true), Messages{"B"});
}

TEST(Framer, anEndlessLineIsDroppedAndTheNextOneRead) {
  Framer framer;
  const std::string longest(Framer::kLongestText, 'x');
  EXPECT_EQ(frame(framer, longest + "\n"), Messages{longest});
  EXPECT_EQ(frame(framer, longest + "y" + std::string(1'000'000, 'z') + "\nB\n"),
            (Messages{"<overrun>", "B"}));
  EXPECT_EQ(frame(framer, longest + "y", true), Messages{"<overrun>"});
  EXPECT_EQ(frame(framer, "C\n"), Messages{"C"});
}

TEST(Framer, aBlockThatClaimsTooMuchIsDroppedWithItsLine) {
  Framer framer;
  EXPECT_EQ(frame(framer, "A #9999999999abc\nB\n"), (Messages{"<overrun>", "B"}));
  const std::string largest = "A #565536" + std::string(Framer::kLongestBlock, '\n');
  EXPECT_EQ(frame(framer, largest), Messages{largest});
}

TEST(Framer, itIsIdleBetweenMessages) {
  Framer framer;
  EXPECT_TRUE(framer.idle());
  framer.put('A');
  EXPECT_FALSE(framer.idle());
  framer.put('\r');
  EXPECT_TRUE(framer.idle());
  framer.put('\n');
  EXPECT_TRUE(framer.idle());
}

TEST(Framer, cutsWhatWasSentIntoTheMessagesThatItWas) {
  for (std::uint32_t seed = 1; seed <= 200; ++seed) {
    Traffic traffic(seed);
    Messages messages;
    std::string sent;
    for (int i = 0; i < 20; ++i) {
      messages.push_back(traffic.message());
      sent += messages.back() + traffic.terminator();
    }
    Framer framer;
    EXPECT_EQ(frame(framer, sent), messages) << "seed " << seed;
    EXPECT_TRUE(framer.idle());
  }
}

TEST(Framer, ofAnyBytesHoldsNoMoreThanItsLimitsAndReadsTheNextMessage) {
  constexpr std::size_t kLongestHeader = 11;
  std::string every;
  for (int i = 0; i < 256; ++i) {
    every += static_cast<char>(i);
  }
  for (std::uint32_t seed = 1; seed <= 100; ++seed) {
    Traffic traffic(seed);
    const std::string bytes = traffic.bytes(seed % 2 == 0 ? every : "#0123456789\"' x\n", 20'000);
    Framer framer;
    std::size_t longest = 0;
    for (const char byte : bytes) {
      static_cast<void>(framer.put(byte));
      longest = std::max(longest, framer.message().size());
    }
    EXPECT_LE(longest, Framer::kLongestText + kLongestHeader + Framer::kLongestBlock);
    static_cast<void>(framer.end());
    EXPECT_EQ(frame(framer, "*IDN?\n"), Messages{"*IDN?"}) << "seed " << seed;
  }
}
