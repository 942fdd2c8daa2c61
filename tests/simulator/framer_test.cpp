#include "simulator/framer.hpp"

#include <gtest/gtest.h>
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
