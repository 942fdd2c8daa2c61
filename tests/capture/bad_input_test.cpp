#include <deque>
#include <gtest/gtest.h>
#include <random>

#include "lumodevice/io/visa_com_over_visa.hpp"
#include "tests/capture/capture_parts.hpp"
#include "tests/io/answering_visa.hpp"
#include "tests/support/measured_memory.hpp"

namespace lumodevice::capture {
namespace {

using std::chrono::milliseconds;
using std::chrono::minutes;
using support::Piece;
using support::Reply;

constexpr std::string_view kBitmap = "c:\\temp\\Screen.bmp";
constexpr std::size_t kReserve = std::size_t{256} << 10;

/// Answers that hold no whole block.
const char* const kNoBlocks[] = {"",        "\n",     "#",           "#0",   "#0abc\n",
                                 "#A",      "#A12\n", "# 12ab\n",    "##12", "#10\n",
                                 "#3000\n", "#21x",   "#9999999999", "#1",   "#9"};

// ---- serial port

struct BadSerialAnswers : testing::Test {
  /// The bitmap's file after a capture that must report whether there is one.
  std::string captured(const Reply& reply) {
    CaptureParts parts;
    parts.useSerial();
    parts.putFile("other", "");
    parts.bench.instrument.on(":DISP:COL?", reply);
    const bool done = parts.capture.CaptureScreenSerial(kBitmap, ScreenCapture::kColourBitmap);
    std::string file = parts.file("Screen.bmp");
    EXPECT_EQ(done, file != "missing");
    EXPECT_EQ(parts.binary(), !done);
    took = parts.bench.loop.now();
    return file;
  }
  std::string captured(const std::string& answer) { return captured(support::answer(answer)); }

  toolkit::EventLoop::Duration took{};
};

TEST_F(BadSerialAnswers, WhatIsNoBlockIsNoBitmap) {
  for (const char* const answer : kNoBlocks) {
    EXPECT_EQ(captured(answer), "missing") << answer;
    EXPECT_LE(took, milliseconds(2500)) << answer;
  }
  EXPECT_EQ(captured(support::silence()), "missing");
}

TEST_F(BadSerialAnswers, ABlockThatIsCutAtAnyByteIsNoBitmap) {
  const std::string whole = "#3012abcdef#\nijkl";
  for (std::size_t size = 0; size < whole.size(); ++size) {
    EXPECT_EQ(captured(whole.substr(0, size)), "missing") << size;
  }
  EXPECT_EQ(captured(whole), "abcdef#\nijkl");
}

TEST_F(BadSerialAnswers, BytesBehindTheBlockAreLeftOut) {
  EXPECT_EQ(captured("#13abcdefgh\n"), "abc");
}

TEST_F(BadSerialAnswers, ALateTextInFrontOfTheBlockIsLeftOut) {
  EXPECT_EQ(captured("+1.2345\n#13abc\n"), "abc");
  EXPECT_EQ(captured(std::string(4096, 'x') + "#13abc\n"), "abc");
}

TEST_F(BadSerialAnswers, GarbageIsGivenUpAfterFourThousandBytes) {
  Reply garbage;
  for (int piece = 0; piece < 2000; ++piece) {
    garbage.pieces.push_back({milliseconds(100 * piece), std::string(100, 'x')});
  }
  EXPECT_EQ(captured(garbage), "missing");
  EXPECT_LT(took, milliseconds(10'000));
}

TEST_F(BadSerialAnswers, AnEndlessDripIsGivenUp) {
  for (const char* const header : {"", "#6230454", "#9016000000"}) {
    Reply drip{{{milliseconds(0), header}}};
    for (int piece = 0; piece < 5000; ++piece) {
      drip.pieces.push_back({milliseconds(900 * piece), "x"});
    }
    EXPECT_EQ(captured(drip), "missing");
    EXPECT_LE(took, minutes(11)) << header;
  }
}

TEST_F(BadSerialAnswers, AWholeScreenAtTheSlowestRateStillArrives) {
  const std::string screen = block(std::string(230454, 's'));
  Reply slow;
  for (std::size_t at = 0; at < screen.size(); at += 48) {
    slow.pieces.push_back({milliseconds(100 * (at / 48 + 1)), screen.substr(at, 48)});
  }
  EXPECT_EQ(captured(slow).size(), 230454U) << "480 bytes a second";
}

TEST_F(BadSerialAnswers, AClaimedLengthAloneSetsNoMemoryAside) {
  for (const char* const answer : {"#816777216ab", "#9016777216ab", "#9999999999ab"}) {
    (void)support::takeLargestRequest();
    EXPECT_EQ(captured(answer), "missing");
    EXPECT_LT(support::takeLargestRequest(), kReserve) << answer;
  }
}

// ---- VISA COM

struct BadVisaAnswers : testing::Test {
  BadVisaAnswers() {
    parts.form.optVisa2.setValue(true);
    parts.form.cmbVISARes.setText("USB0::1::INSTR");
    parts.links.visaCom.setDevZAN(com.createFormattedIO488());
    parts.links.visaCom.devZAN()->setIO(
        com.createResourceManager()->Open("USB0::1::INSTR", 0, 2000, ""));
    parts.putFile("other", "");
  }

  /// The bitmap's file after a capture that must report whether there is one.
  std::string captured(std::deque<io::AnsweringVisa::Piece> answers) {
    parts.files.removeIfThere(kBitmap);
    visa.answers = std::move(answers);
    const bool done = parts.capture.CaptureScreenVisa(kBitmap, ScreenCapture::kColourBitmap);
    std::string file = parts.file("Screen.bmp");
    EXPECT_EQ(done, file != "missing");
    return file;
  }
  std::string captured(const std::string& message) {
    return captured(std::deque<io::AnsweringVisa::Piece>{{message, io::VI_SUCCESS}});
  }

  io::AnsweringVisa visa;
  io::VisaComOverVisa com{visa};
  CaptureParts parts;
};

TEST_F(BadVisaAnswers, WhatIsNoBlockIsNoBitmap) {
  for (const char* const answer : kNoBlocks) {
    EXPECT_EQ(captured(answer), "missing") << answer;
  }
  EXPECT_EQ(captured(std::deque<io::AnsweringVisa::Piece>()), "missing");
  EXPECT_EQ(captured("+1.23\n#13abc\n"), "missing");
}

TEST_F(BadVisaAnswers, ABlockThatIsCutAtAnyByteIsNoBitmap) {
  const std::string whole = "#3012abcdef#\nijkl";
  for (std::size_t size = 0; size < whole.size(); ++size) {
    for (const io::ViStatus end : {io::VI_SUCCESS, io::VI_ERROR_TMO, io::VI_ERROR_CONN_LOST}) {
      EXPECT_EQ(captured({{whole.substr(0, size), end}}), "missing") << size;
    }
  }
  EXPECT_EQ(captured(whole), "abcdef#\nijkl");
}

TEST_F(BadVisaAnswers, BytesBehindTheBlockAreLeftOut) {
  EXPECT_EQ(captured("#13abcdefgh\n"), "abc");
}

TEST_F(BadVisaAnswers, ADripIsPutTogetherAndAnEndlessOneGivenUp) {
  std::deque<io::AnsweringVisa::Piece> drip;
  for (const char byte : std::string("#13abc\n")) {
    drip.emplace_back(std::string(1, byte), io::VI_SUCCESS_MAX_CNT);
  }
  EXPECT_EQ(captured(drip), "abc");
  drip.pop_back();
  drip.insert(drip.end(), 20, {std::string(std::size_t{1} << 20, 'x'), io::VI_SUCCESS_MAX_CNT});
  EXPECT_EQ(captured(drip), "missing") << "16 MiB behind the block";
}

TEST_F(BadVisaAnswers, AClaimedLengthAloneSetsNoMemoryAside) {
  for (const char* const answer : {"#816777216ab", "#9999999999ab"}) {
    (void)support::takeLargestRequest();
    EXPECT_EQ(captured({{answer, io::VI_ERROR_TMO}}), "missing");
    EXPECT_LT(support::takeLargestRequest(), std::size_t{2} << 20) << answer;
  }
}

TEST_F(BadVisaAnswers, RandomAnswersEndInABitmapOrInNone) {
  std::mt19937 random(7);
  int bitmaps = 0;
  for (int round = 0; round < 1000; ++round) {
    std::string answer =
        "#2" + std::to_string(10 + random() % 20) + std::string(random() % 40, 'x');
    for (auto change = random() % 3; change > 0; --change) {
      answer[random() % answer.size()] = static_cast<char>(random());
    }
    bitmaps += captured({{answer, io::VI_SUCCESS}}) == "missing" ? 0 : 1;
  }
  EXPECT_GT(bitmaps, 100);
}

// ---- files

TEST(BadBitmapFiles, AClaimedSizeAloneSetsNoMemoryAside) {
  const toolkit::Picture small = pattern(2, 2);
  Bytes file(small.bitmap().begin(), small.bitmap().end());
  file[19] = 16;  // 4098 points wide
  file[23] = 15;  // 3842 points high
  file[18] = 0;
  (void)support::takeLargestRequest();
  EXPECT_THROW((void)toolkit::Picture::fromBitmap(file), toolkit::PictureFault);
  EXPECT_LT(support::takeLargestRequest(), kReserve);
}

}  // namespace
}  // namespace lumodevice::capture
