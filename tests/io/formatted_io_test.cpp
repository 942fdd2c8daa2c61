#include "lumodevice/io/formatted_io.hpp"

#include <gmock/gmock.h>
#include <random>

#include "lumodevice/io/visa_com_over_visa.hpp"
#include "tests/io/answering_visa.hpp"
#include "tests/io/fault_number.hpp"

namespace lumodevice::io {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Le;

constexpr auto kTimedOut = static_cast<int>(E_VISA_TMO);
constexpr auto kNoBlock = static_cast<int>(E_VISA_NSUP_FMT);
constexpr auto kTooLong = static_cast<int>(0x8004003CU);

struct FormattedIOTest : testing::Test {
  FormattedIOTest() {
    formatted->setIO(com.createResourceManager()->Open("USB0::1::INSTR", 0, 2000, ""));
    visa.calls.clear();
  }

  std::string readBlock(bool seek = false, bool flush = true) {
    const auto data = formatted->ReadIEEEBlock(seek, flush);
    return {data.begin(), data.end()};
  }
  int blockFault(bool seek = false, bool flush = true) {
    return faultNumber<VisaComFault>([&] { (void)readBlock(seek, flush); });
  }
  int stringFault() {
    return faultNumber<VisaComFault>([&] { (void)formatted->ReadString(); });
  }

  AnsweringVisa visa;
  VisaComOverVisa com{visa};
  std::shared_ptr<FormattedIO488> formatted = com.createFormattedIO488();
};

TEST_F(FormattedIOTest, aStringIsOneWriteWithEndAndNoTerminatorOfItsOwn) {
  formatted->WriteString("*IDN?\r", true);
  EXPECT_EQ(visa.written, "*IDN?\r|");
  EXPECT_THAT(visa.calls, ElementsAre("write 6"));
}

TEST_F(FormattedIOTest, stringsWithoutFlushAreKeptUntilTheFlush) {
  formatted->WriteString(":CURR ", false);
  formatted->WriteString("1.5", false);
  EXPECT_THAT(visa.calls, IsEmpty());
  formatted->WriteString("\n", true);
  EXPECT_EQ(visa.written, ":CURR 1.5\n|");
}

TEST_F(FormattedIOTest, aFlushWithoutEndSwitchesEndOffAndTheNextOneOnAgain) {
  formatted->WriteString("AB", false);
  formatted->FlushWrite(false);
  formatted->WriteString("CD", true);
  EXPECT_EQ(visa.written, "ABCD|");
  EXPECT_THAT(visa.calls, ElementsAre("set 3FFF0016 0", "write 2", "set 3FFF0016 1", "write 2"));
}

TEST_F(FormattedIOTest, anEmptyFlushTouchesNothing) {
  formatted->FlushWrite(false);
  formatted->FlushWrite(true);
  EXPECT_THAT(visa.calls, IsEmpty());
}

TEST_F(FormattedIOTest, aBufferThatFillsGoesOutWithoutEnd) {
  formatted->SetBufferSize(kOutputBuffer, 4);
  formatted->WriteString("0123456789", true);
  EXPECT_EQ(visa.written, "0123456789|");
  EXPECT_THAT(visa.calls,
              ElementsAre("set 3FFF0016 0", "write 4", "write 4", "set 3FFF0016 1", "write 2"));
}

TEST_F(FormattedIOTest, aLibraryThatTakesTheBytesInPiecesGetsTheRest) {
  visa.mostPerWrite = 4;
  formatted->WriteString("0123456789", true);
  EXPECT_EQ(visa.written, "0123456789|");
}

TEST_F(FormattedIOTest, aLibraryThatTakesNothingIsAnErrorAndNoEndlessLoop) {
  visa.mostPerWrite = 0;
  EXPECT_NE(faultNumber<VisaComFault>([&] { formatted->WriteString("A", true); }), 0);
}

TEST_F(FormattedIOTest, aFailedWriteIsNotGluedToTheNext) {
  visa.writeStatus = VI_ERROR_TMO;
  EXPECT_EQ(faultNumber<VisaComFault>([&] { formatted->WriteString("OLD", true); }), kTimedOut);
  visa.writeStatus = VI_SUCCESS;
  formatted->WriteString("NEW", true);
  EXPECT_EQ(visa.written, "NEW|");
}

TEST_F(FormattedIOTest, aBlockIsWrittenWithTheFewestLengthDigits) {
  const std::vector<std::uint8_t> data{1, 0, '\n', 255};
  formatted->WriteIEEEBlock(":MEM:FILE:PRES", data, true);
  EXPECT_EQ(visa.written, std::string(":MEM:FILE:PRES#14\x01\0\n\xFF|", 22));
}

TEST_F(FormattedIOTest, anEnlargedBufferTakesTheWholeSettingsBlockInOneWrite) {
  formatted->SetBufferSize(kInputBuffer | kOutputBuffer, 6000);
  formatted->WriteIEEEBlock(":SYST:SET ", std::vector<std::uint8_t>(5580), true);
  EXPECT_THAT(visa.calls, ElementsAre("write 5596"));
  EXPECT_TRUE(visa.written.starts_with(":SYST:SET #45580"));
}

TEST_F(FormattedIOTest, anEmptyBlockHasLengthZero) {
  formatted->WriteIEEEBlock("", {}, true);
  EXPECT_EQ(visa.written, "#10|");
}

TEST_F(FormattedIOTest, eachBufferHasASizeOfItsOwn) {
  formatted->SetBufferSize(kInputBuffer, 4);
  formatted->WriteString("0123456789", true);
  visa.answer("0123456789\n");
  EXPECT_EQ(formatted->ReadString(), "0123456789\n");
  formatted->SetBufferSize(kOutputBuffer, 6);
  formatted->WriteString("0123456789", true);
  visa.answer("abc\n");
  EXPECT_EQ(formatted->ReadString(), "abc\n");
  EXPECT_THAT(visa.calls,
              ElementsAre("write 10", "set 3FFF0016 0", "write 6", "set 3FFF0016 1", "write 4"));
  EXPECT_THAT(visa.asked, ElementsAre(4U, 8U, 4U));
}

/// Of the 32 bits of a mask two name a buffer, alone or both; any other, also beside one that does,
/// names nothing.
TEST_F(FormattedIOTest, buffersThatDoNotExistAreRefused) {
  const auto fault = [&](unsigned mask) {
    return faultNumber<VisaComFault>([&] { formatted->SetBufferSize(static_cast<int>(mask), 64); });
  };
  EXPECT_NE(fault(0), 0);
  for (const unsigned known : {0x10U, 0x20U, 0x30U}) {
    EXPECT_EQ(fault(known), 0) << known;
    for (unsigned bit = 0; bit < 32; ++bit) {
      const unsigned other = 1U << bit;
      if ((other & 0x30U) == 0) {
        EXPECT_NE(fault(other), 0) << other;
        EXPECT_NE(fault(known | other), 0) << (known | other);
      }
    }
  }
}

TEST_F(FormattedIOTest, sizesThatDoNotExistAreRefused) {
  for (const std::int32_t size : {0, -1, 0x7FFFFFFF}) {
    EXPECT_NE(faultNumber<VisaComFault>([&] { formatted->SetBufferSize(kInputBuffer, size); }), 0)
        << size;
  }
}

TEST_F(FormattedIOTest, aMessageKeepsItsTerminator) {
  visa.answer("1.5\r\n");
  EXPECT_EQ(formatted->ReadString(), "1.5\r\n");
  EXPECT_THAT(visa.asked, ElementsAre(4096U));
}

TEST_F(FormattedIOTest, aTerminationCharacterEndsAMessageToo) {
  visa.answers = {{"A\r", VI_SUCCESS_TERM_CHAR}, {"B\r", VI_SUCCESS_TERM_CHAR}};
  EXPECT_EQ(formatted->ReadString(), "A\r");
  EXPECT_EQ(formatted->ReadString(), "B\r");
}

TEST_F(FormattedIOTest, aLongMessageIsReadInGrowingPieces) {
  const std::string message(100000, 'x');
  visa.answer(message);
  EXPECT_EQ(formatted->ReadString(), message);
  EXPECT_THAT(visa.asked, ElementsAre(4096U, 8192U, 16384U, 32768U, 65536U));
}

TEST_F(FormattedIOTest, anAnswerInPiecesIsCompletedByASecondRead) {
  visa.answers = {{"12", VI_ERROR_TMO}, {"34", VI_ERROR_TMO}, {"5\n", VI_SUCCESS}};
  EXPECT_EQ(stringFault(), kTimedOut);
  EXPECT_EQ(stringFault(), kTimedOut);
  EXPECT_EQ(formatted->ReadString(), "12345\n");
}

TEST_F(FormattedIOTest, aNewMessageDropsWhatWasLeftUnread) {
  visa.answers = {{"old", VI_ERROR_TMO}, {"new\n", VI_SUCCESS}};
  EXPECT_EQ(stringFault(), kTimedOut);
  formatted->WriteString("X?\n", true);
  EXPECT_EQ(formatted->ReadString(), "new\n");
}

TEST_F(FormattedIOTest, anotherSessionDropsWhatIsBuffered) {
  visa.answers = {{"old", VI_ERROR_TMO}, {"new\n", VI_SUCCESS}};
  EXPECT_EQ(stringFault(), kTimedOut);
  formatted->WriteString("unsent", false);
  formatted->setIO(com.createResourceManager()->Open("B", 0, 0, ""));
  formatted->FlushWrite(true);
  EXPECT_EQ(visa.written, "");
  EXPECT_EQ(formatted->ReadString(), "new\n");
}

TEST_F(FormattedIOTest, anEmptyMessageIsAnEmptyText) {
  visa.answer("");
  EXPECT_EQ(formatted->ReadString(), "");
}

TEST_F(FormattedIOTest, aMessageWithoutEndIsGivenUpAtSixteenMebibytes) {
  visa.answer(std::string(FormattedIO::kLargestMessage + 1, 'x'));
  EXPECT_EQ(stringFault(), kTooLong);
  EXPECT_THAT(visa.asked, Each(Le(std::size_t{1} << 20)));
}

TEST_F(FormattedIOTest, aLibraryThatClaimsMoreThanItWasAskedForIsNotBelieved) {
  visa.claimsTooMuch = true;
  visa.answer("abc");
  EXPECT_EQ(formatted->ReadString().size(), 4096U);
  formatted->WriteString("xyz", true);
  EXPECT_EQ(visa.written, "xyz|");
}

TEST_F(FormattedIOTest, aLibraryThatReadsNothingForEverIsAnError) {
  visa.answers = {{"", VI_SUCCESS_MAX_CNT}};
  EXPECT_NE(stringFault(), 0);
}

/// A library whose reads bring no byte and call it that, time after time.
struct EmptyReads : AnsweringVisa {
  explicit EmptyReads(ViStatus what) : status(what) {}
  ViStatus viRead(ViSession, std::span<char>, std::uint32_t& count) override {
    count = 0;
    ++reads;
    // Nobody waits for the end of an endless loop.
    return reads < 100 ? status : VI_ERROR_CONN_LOST;
  }
  ViStatus status;
  int reads = 0;
};

TEST(FormattedIOReads, thatBringNothingAreAnErrorAndNoEndlessLoop) {
  for (const std::uint32_t status : {0U, 0x3FFF0005U, 0x3FFF0006U, 0x3FFF0001U, 0x3FFF0085U}) {
    for (const bool seek : {false, true}) {
      EmptyReads library(viStatus(status));
      VisaComOverVisa com(library);
      const auto device = com.createFormattedIO488();
      device->setIO(com.createResourceManager()->Open("USB0::1::INSTR", 0, 0, ""));
      EXPECT_THROW((void)device->ReadIEEEBlock(seek, true), VisaComFault);
      EXPECT_EQ(library.reads, 1) << status;
    }
    if (status == 0) continue;
    EmptyReads library(viStatus(status));
    VisaComOverVisa com(library);
    const auto device = com.createFormattedIO488();
    device->setIO(com.createResourceManager()->Open("USB0::1::INSTR", 0, 0, ""));
    EXPECT_THROW((void)device->ReadString(), VisaComFault);
    EXPECT_EQ(library.reads, 1);
  }
}

/// A device that sends a byte a second; none of its reads takes too long.
struct Drip : AnsweringVisa, Clock {
  explicit Drip(std::string bytes) : message(std::move(bytes)) {}
  [[nodiscard]] Duration now() const override { return time; }
  void wait(Duration span) override { time += span; }
  ViStatus viRead(ViSession, std::span<char> buffer, std::uint32_t& count) override {
    wait(std::chrono::seconds(1));
    buffer[0] = message[std::min(reads, message.size() - 1)];
    ++reads;
    count = 1;
    return buffer[0] == '\n' ? VI_SUCCESS_TERM_CHAR : VI_SUCCESS_MAX_CNT;
  }
  const std::string message;  ///< the last byte of which is repeated
  Duration time{};
  std::size_t reads = 0;
};

TEST(FormattedIOReads, haveATimeForTheWhole) {
  const auto ends = [](std::chrono::seconds longest, const std::string& message, auto read) {
    Drip drip(message);
    VisaComOverVisa com(drip, &drip);
    const auto device = com.createFormattedIO488();
    device->setIO(com.createResourceManager()->Open("USB0::1::INSTR", 0, 0, ""));
    read(*device);
    EXPECT_LE(drip.time, longest + std::chrono::seconds(1));
    EXPECT_GE(drip.time, longest);
  };
  ends(FormattedIO::kLongestText, "x",
       [](auto& device) { EXPECT_THROW((void)device.ReadString(), VisaComFault); });
  ends(FormattedIO::kLongestBlock, "#800100000x",
       [](auto& device) { EXPECT_THROW((void)device.ReadIEEEBlock(false, true), VisaComFault); });
  ends(FormattedIO::kLongestBlock, "#800100000\n",
       [](auto& device) { EXPECT_THROW((void)device.ReadIEEEBlock(false, true), VisaComFault); });
  ends(FormattedIO::kLongestBlock, "x",
       [](auto& device) { EXPECT_THROW((void)device.ReadIEEEBlock(true, true), VisaComFault); });
  ends(FormattedIO::kLongestBlock, "#15hellox",
       [](auto& device) { EXPECT_EQ(device.ReadIEEEBlock(false, true).size(), 5U); });
}

TEST_F(FormattedIOTest, aBlockComesWithoutHeaderAndTerminator) {
  visa.answer(std::string("#15a\n#\0z\n", 9));
  EXPECT_EQ(readBlock(), std::string("a\n#\0z", 5));
  visa.answer("next\n");
  EXPECT_EQ(formatted->ReadString(), "next\n");
}

TEST_F(FormattedIOTest, aBlockIsAskedForByteByByteOfItsHeaderAndThenWhole) {
  visa.answer("#3892" + std::string(892, 'p') + "\n");
  EXPECT_EQ(readBlock().size(), 892U);
  EXPECT_THAT(visa.asked, ElementsAre(1U, 1U, 3U, 892U, 1U));
}

TEST_F(FormattedIOTest, anEmptyBlockIsNoData) {
  visa.answer("#10\n");
  EXPECT_EQ(readBlock(), "");
}

TEST_F(FormattedIOTest, aBlockThatEndsWithItsDataNeedsNoFlush) {
  visa.answer("#12ab");
  EXPECT_EQ(readBlock(), "ab");
  EXPECT_EQ(visa.asked.back(), 2U);
}

TEST_F(FormattedIOTest, terminationCharactersInsideABlockEndNothing) {
  visa.answers = {{"#15a\r", VI_SUCCESS_TERM_CHAR},
                  {"b\r", VI_SUCCESS_TERM_CHAR},
                  {"\r", VI_SUCCESS_TERM_CHAR},
                  {"\n", VI_SUCCESS}};
  EXPECT_EQ(readBlock(), "a\rb\r\r");
  EXPECT_THAT(visa.answers, IsEmpty());
}

TEST_F(FormattedIOTest, theFlushGoesOnToTheMessagesEnd) {
  visa.answers = {{"#12ab", VI_SUCCESS_MAX_CNT},
                  {" and more", VI_SUCCESS_MAX_CNT},
                  {std::string(5000, '.'), VI_SUCCESS},
                  {"next\n", VI_SUCCESS}};
  EXPECT_EQ(readBlock(), "ab");
  EXPECT_EQ(formatted->ReadString(), "next\n");
}

TEST_F(FormattedIOTest, onALinkWithoutEndALoneLineFeedIsTakenAndItsAbsenceIsNoError) {
  visa.answers = {
      {"#12ab", VI_SUCCESS_MAX_CNT}, {"\n", VI_SUCCESS_MAX_CNT}, {"#12cd", VI_SUCCESS_MAX_CNT}};
  EXPECT_EQ(readBlock(), "ab");
  EXPECT_EQ(readBlock(), "cd");
  EXPECT_THAT(visa.answers, IsEmpty());
}

TEST_F(FormattedIOTest, aFlushThatNeverEndsIsGivenUp) {
  visa.answers = {{"#12ab", VI_SUCCESS_MAX_CNT},
                  {std::string(2 * FormattedIO::kLargestMessage, 'x'), VI_SUCCESS}};
  EXPECT_EQ(blockFault(), kTooLong);
}

TEST_F(FormattedIOTest, aLinkThatBreaksDuringTheFlushIsAnError) {
  visa.answers = {{"#12ab", VI_SUCCESS_MAX_CNT}, {"", VI_ERROR_CONN_LOST}};
  EXPECT_EQ(blockFault(), static_cast<int>(0x800400A6U));
}

TEST_F(FormattedIOTest, withoutTheFlushTheRestOfTheMessageStaysToBeRead) {
  visa.answer("#12ab;tail\n");
  EXPECT_EQ(readBlock(false, false), "ab");
  EXPECT_EQ(formatted->ReadString(), ";tail\n");
}

TEST_F(FormattedIOTest, aBlockThatTimesOutKeepsWhatArrivedForAnotherTry) {
  visa.answers = {{"#15ab", VI_ERROR_TMO}, {"cde", VI_SUCCESS_MAX_CNT}, {"\n", VI_SUCCESS}};
  EXPECT_EQ(blockFault(), kTimedOut);
  EXPECT_EQ(readBlock(), "abcde");
}

TEST_F(FormattedIOTest, aLongBlockThatTimesOutTwiceIsCompletedByTheThirdTry) {
  std::string data;
  for (int i = 0; i < 300'000; ++i) data += static_cast<char>(i * 7);
  visa.answers = {{"#6300000" + data.substr(0, 100'000), VI_ERROR_TMO},
                  {data.substr(100'000, 150'000), VI_ERROR_TMO},
                  {data.substr(250'000) + "\n", VI_SUCCESS}};
  EXPECT_EQ(blockFault(), kTimedOut);
  EXPECT_EQ(blockFault(), kTimedOut);
  EXPECT_TRUE(readBlock(false, false) == data);
  EXPECT_EQ(formatted->ReadString(), "\n") << "only the rest of the message is left";
}

TEST_F(FormattedIOTest, aBlockBeyondSixteenMebibytesIsGivenUpAndForgotten) {
  visa.answers = {{"#820000000" + std::string(20'000'000, 'x'), VI_SUCCESS}};
  EXPECT_EQ(blockFault(), kTooLong);
  EXPECT_THAT(visa.asked, Each(Le(std::size_t{1} << 20)));
  visa.answers.clear();
  visa.answer("next\n");
  EXPECT_EQ(formatted->ReadString(), "next\n");
}

TEST_F(FormattedIOTest, seekingSkipsToTheBlockThroughWholeMessages) {
  visa.answers = {{"junk\n", VI_SUCCESS}, {"more #12ab\n", VI_SUCCESS}};
  EXPECT_EQ(readBlock(true), "ab");
}

TEST_F(FormattedIOTest, seekingWithoutABlockTimesOut) {
  visa.answer("junk\n");
  EXPECT_EQ(blockFault(true), kTimedOut);
}

TEST_F(FormattedIOTest, malformedHeadersAreRefused) {
  for (const char* header :
       {"x", " #12ab", "", "\n", "#", "#x", "#0", "#0abc\n", "# 12ab", "##12ab", "#2", "#21",
        "#2x1ab", "#21x", "#2-1", "#3 12", "#1", "#9"}) {
    visa.answers.clear();
    visa.answer(header);
    formatted->WriteString("?", true);
    EXPECT_EQ(blockFault(), kNoBlock) << '"' << header << '"';
  }
}

TEST_F(FormattedIOTest, aBlockCutAtAnyByteIsRefusedWhenItEndsAndTimesOutWhenItStalls) {
  const std::string whole = "#3012abcdefghijkl";
  for (std::size_t cut = 0; cut < whole.size(); ++cut) {
    for (const auto& [status, fault] :
         {std::pair{VI_SUCCESS, kNoBlock}, {VI_ERROR_TMO, kTimedOut}}) {
      visa.answers = {{whole.substr(0, cut), status}};
      formatted->WriteString("?", true);
      EXPECT_EQ(blockFault(), fault) << cut;
    }
  }
}

TEST_F(FormattedIOTest, aClaimedLengthAloneSetsNoMemoryAside) {
  visa.answers = {{"#9999999999ab", VI_ERROR_TMO}};
  EXPECT_EQ(blockFault(), kTimedOut);
  EXPECT_THAT(visa.asked, Each(Le(std::size_t{128} << 10)));
}

/// A device that drips justifies no larger pieces, however often it is read.
TEST_F(FormattedIOTest, piecesGrowOnlyWhereTheyAreFilled) {
  visa.answers = {{"#9999999999", VI_SUCCESS_MAX_CNT}};
  visa.answers.insert(visa.answers.end(), 20, {"drip", VI_SUCCESS_MAX_CNT});
  EXPECT_EQ(blockFault(), kTimedOut);
  EXPECT_THAT(visa.asked, Each(Le(std::size_t{128} << 10)));

  visa.asked.clear();
  formatted->WriteString("?", true);
  visa.answers = {20, {"drip", VI_SUCCESS_MAX_CNT}};
  EXPECT_EQ(stringFault(), kTimedOut);
  EXPECT_THAT(visa.asked, Each(Le(4096U)));

  visa.asked.clear();
  formatted->WriteString("?", true);
  visa.answers = {{"#12ab", VI_SUCCESS_MAX_CNT}};
  visa.answers.insert(visa.answers.end(), 20, {"drip", VI_SUCCESS_MAX_CNT});
  EXPECT_EQ(readBlock(), "ab");
  EXPECT_THAT(visa.asked, Each(Le(4096U)));
}

/// Random bytes that lean towards headers: whatever comes, the reader returns or throws its own
/// fault and has never asked for more than its reserve.
TEST_F(FormattedIOTest, randomAnswersNeverBreakTheBlockReader) {
  std::mt19937 random(20240607);
  const std::string alphabet = "#0123456789\r\nxyz";
  const std::array statuses{VI_SUCCESS, VI_SUCCESS_MAX_CNT, VI_SUCCESS_TERM_CHAR, VI_ERROR_TMO,
                            VI_ERROR_CONN_LOST};
  int blocks = 0;
  for (int round = 0; round < 3000; ++round) {
    visa.answers.clear();
    visa.asked.clear();
    for (unsigned piece = random() % 4; piece > 0; --piece) {
      std::string bytes(random() % 24, ' ');
      for (char& c : bytes) c = alphabet[random() % alphabet.size()];
      if (random() % 3 == 0) bytes.insert(0, "#1" + std::to_string(random() % 10));
      visa.answers.emplace_back(bytes, statuses[random() % statuses.size()]);
    }
    formatted->WriteString("?", true);
    if (blockFault(random() % 2 == 0, random() % 2 == 0) == 0) ++blocks;
    EXPECT_THAT(visa.asked, Each(Le(std::size_t{1} << 20)));
  }
  EXPECT_GT(blocks, 100);
}

}  // namespace
}  // namespace lumodevice::io
