#include <chrono>
#include <gtest/gtest.h>
#include <string>
#include <utility>

#include "tests/capture/screens.hpp"
#include "tests/transfer/connected_bench.hpp"

namespace lumodevice::capture {
namespace {

using std::chrono::milliseconds;
using support::answer;
using support::Over;
using support::Piece;
using support::Reply;
using support::silence;

constexpr const char* kBitmapFile = "c:\\temp\\ZAN.bmp";
constexpr const char* kDumpFile = "c:\\temp\\DispOutD.dat";

struct Captures : transfer::ConnectedBench {
  using ConnectedBench::ConnectedBench;
  const std::string bitmap = std::string(transfer::asText(pattern(40, 30).bitmap()));
};

struct SerialCaptureInTurn : testing::Test, Captures {
  SerialCaptureInTurn() : Captures(Exchanges::InTurn) {}
};

TEST_F(SerialCaptureInTurn, ABitmapIsThereAsSoonAsItIsComplete) {
  bench.instrument.on(":DISP:COL?", answer(block(bitmap), milliseconds(300)));
  const auto before = bench.loop.now();
  EXPECT_TRUE(bench.zan().GetBMPFile());
  EXPECT_LE(bench.loop.now() - before, milliseconds(350));
  EXPECT_TRUE(file(kBitmapFile) == bitmap);
  expectOwnAnswers();
}

TEST_F(SerialCaptureInTurn, ABitmapMayBeginLateAndComeSlowly) {
  const std::string whole = block(bitmap);
  Reply slow;
  for (std::size_t at = 0; at < whole.size(); at += 100) {
    slow.pieces.push_back({milliseconds(2400 + 9 * static_cast<int>(at)), whole.substr(at, 100)});
  }
  bench.instrument.on(":DISP:COL?", slow);
  EXPECT_TRUE(bench.zan().GetBMPFile());
  EXPECT_TRUE(file(kBitmapFile) == bitmap);
  expectOwnAnswers();
}

TEST_F(SerialCaptureInTurn, ABitmapThatBeginsTooLateOrStopsIsNobodysAnswer) {
  put(kBitmapFile, "old");
  const std::string whole = block(bitmap);
  for (const auto& [first, second] : {std::pair(2700, 2800), std::pair(2700, 3900),
                                      std::pair(1000, 2500), std::pair(100, 3000)}) {
    bench.instrument.on(":DISP:COL?", Reply{{{milliseconds(first), whole.substr(0, 1000)},
                                             {milliseconds(second), whole.substr(1000)}}});
    EXPECT_FALSE(bench.zan().GetBMPFile()) << first;
    EXPECT_EQ(file(kBitmapFile), "old");
    expectOwnAnswers(std::to_string(first) + ' ' + std::to_string(second));
  }
}

TEST_F(SerialCaptureInTurn, ACommandInsideTheWaitHasItsOwnAnswerAndThePictureIsWhole) {
  const std::string whole = block(bitmap);
  for (int pass = 0; pass < 25; ++pass) {
    bench.instrument.on(":DISP:COL?", Reply{{{milliseconds(60), whole.substr(0, 1000)},
                                             {milliseconds(200), whole.substr(1000)}}});
    std::string inner;
    inPass(pass, [&] { inner = bench.ask(":A?"); });
    EXPECT_TRUE(bench.zan().GetBMPFile()) << pass;
    EXPECT_EQ(inner, "one") << pass;
    EXPECT_TRUE(file(kBitmapFile) == bitmap) << pass;
    expectOwnAnswers();
  }
}

TEST_F(SerialCaptureInTurn, ADumpIsSavedWithItsHeaderAndConvertedToTheSamePicture) {
  const std::string dump = block(textOf(colouredDump(1)));
  bench.instrument.on(":DISP:OUTP?", Reply{{{milliseconds(900), dump.substr(0, 50'000)},
                                            {milliseconds(1700), dump.substr(50'000)}}});
  bench.click("cmdGetCTRLScrn");
  EXPECT_TRUE(file(kDumpFile) == dump);
  expectOwnAnswers();
  bench.click("cmdWork");
  toolkit::Picture picture(kScreenWidth, kScreenHeight);
  ScreenPalette palette{};
  FillScreenPalette(palette);
  const Bytes planes = colouredDump(1);
  paintDump(planesOf(planes), palette, picture);
  EXPECT_TRUE(file("c:\\temp\\ZAN200K.bmp") == transfer::asText(picture.bitmap()));
}

TEST_F(SerialCaptureInTurn, ADumpThatIsCutLeavesTheOldOne) {
  put(kDumpFile, "old");
  bench.instrument.on(":DISP:OUTP?", block(textOf(colouredDump(1))).substr(0, 100'000));
  bench.click("cmdGetCTRLScrn");
  EXPECT_EQ(file(kDumpFile), "old");
  expectOwnAnswers();
}

TEST_F(SerialCaptureInTurn, ADriveWithoutRoomIsSeenBeforeAnythingIsAsked) {
  bench.drive.room = 100'000;
  EXPECT_FALSE(bench.zan().GetBMPFile());
  bench.click("cmdGetCTRLScrn");
  EXPECT_EQ(bench.journal({"COM3 write"}), "");
}

TEST_F(SerialCaptureInTurn, TheAutoQueryStandsBack) {
  bench.zan().AutoQuery(true);
  bench.run(milliseconds(1010));
  bench.journal();
  bench.instrument.on(":DISP:COL?", answer(block(bitmap), milliseconds(2000)));
  EXPECT_TRUE(bench.zan().GetBMPFile());
  EXPECT_EQ(bench.journal({"COM3 write"}), "COM3 write :DISP:COL?\\n\n");
}

struct VisaCaptureInTurn : testing::Test, Captures {
  VisaCaptureInTurn() : Captures(Exchanges::InTurn, Over::VisaCom) {}
};

TEST_F(VisaCaptureInTurn, ACaptureInsideTheWaitOfAQueryLeavesBothTheirs) {
  bench.instrument.on(":DISP:OUTP?", textOf(colouredDump(1)));
  bench.instrument.on(":A?", answer("one\n", milliseconds(400)));
  bool captured = false;
  inPass(0, [&] { captured = bench.zan().GetBMPFile(); });
  EXPECT_EQ(bench.ask(":A?"), "one");
  EXPECT_TRUE(captured);
  expectOwnAnswers();
}

TEST_F(VisaCaptureInTurn, ADumpThatComesTooLateIsNobodysAnswer) {
  bench.instrument.on(":DISP:OUTP?", answer(textOf(colouredDump(1)), milliseconds(2600)));
  EXPECT_FALSE(bench.zan().GetBMPFile());
  expectOwnAnswers();
  EXPECT_EQ(file(kDumpFile), "missing");
}

TEST_F(VisaCaptureInTurn, ADriveWithoutRoomIsSeenBeforeAnythingIsAsked) {
  bench.drive.room = 300'000;
  EXPECT_FALSE(bench.zan().GetBMPFile()) << "the dump and the picture need more";
  EXPECT_EQ(bench.journal({"WriteString"}), "");
  bench.instrument.on(":DISP:OUTP?", textOf(colouredDump(1)));
  bench.click("cmdGetCTRLScrn");
  EXPECT_TRUE(file(kDumpFile) == textOf(colouredDump(1))) << "there is room for the dump";
}

TEST_F(VisaCaptureInTurn, AFullDiskLeavesTheOldDump) {
  put(kDumpFile, "a dump");
  bench.instrument.on(":DISP:OUTP?", textOf(colouredDump(1)));
  bench.script.fail("put", 61);
  EXPECT_FALSE(bench.zan().GetBMPFile());
  EXPECT_EQ(file(kDumpFile), "a dump");
}

TEST_F(VisaCaptureInTurn, AShorterDumpLeavesNothingOfALongerFile) {
  put(kDumpFile, std::string(200'000, 'x'));
  bench.instrument.on(":DISP:OUTP?", textOf(colouredDump(1)));
  EXPECT_TRUE(bench.zan().GetBMPFile());
  EXPECT_TRUE(file(kDumpFile) == textOf(colouredDump(1)));
}

struct SerialCaptureInterleaved : testing::Test, Captures {
  SerialCaptureInterleaved() : Captures(Exchanges::Interleaved) {}
};

TEST_F(SerialCaptureInterleaved, AQueryThatStillWaitsDoesNotEatABitmap) {
  bench.instrument.on(":Q?", silence());
  bench.ask(":Q?");
  bench.instrument.on(":DISP:COL?", block(bitmap));
  EXPECT_TRUE(bench.zan().GetBMPFile());
  EXPECT_TRUE(file(kBitmapFile) == bitmap);
  expectOwnAnswers();
}

TEST_F(SerialCaptureInterleaved, ALineEndBehindTheLastPollIsNotTheNextAnswer) {
  const std::string whole = block(bitmap);
  bench.instrument.on(":DISP:COL?", Reply{{{milliseconds(1000), whole.substr(0, whole.size() - 1)},
                                           {milliseconds(1510), "\n"}}});
  EXPECT_TRUE(bench.zan().GetBMPFile());
  bench.run(milliseconds(50));
  expectOwnAnswers();
}

}  // namespace
}  // namespace lumodevice::capture
