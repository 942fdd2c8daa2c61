#include <chrono>
#include <gtest/gtest.h>
#include <string>

#include "tests/files/file_parts.hpp"
#include "tests/transfer/connected_bench.hpp"

namespace lumodevice::files {
namespace {

using std::chrono::milliseconds;
using support::answer;
using support::escaped;
using support::lines;
using support::Over;
using support::Piece;
using support::Reply;
using support::silence;

struct SerialInTurn : testing::Test, transfer::ConnectedBench {
  SerialInTurn() : ConnectedBench(Exchanges::InTurn) {}
  const std::string preset = blockOf(pattern(892));
};

/// A block in three pieces, so many milliseconds apart; there are line ends in all of them.
Reply inPieces(const std::string& block, int first, int apart) {
  const std::size_t third = block.size() / 3;
  return {{Piece{milliseconds(first), block.substr(0, third)},
           Piece{milliseconds(first + apart), block.substr(third, third)},
           Piece{milliseconds(first + 2 * apart), block.substr(2 * third)}}};
}

TEST_F(SerialInTurn, aFileIsAskedForOnceAndThereAsSoonAsItIsComplete) {
  bench.instrument.on(":MEM:FILE:SEQ?", answer(blockOf("sequence"), milliseconds(150)));
  bench.instrument.on(":SYST:SET?", answer(blockOf(pattern(5580)), milliseconds(150)));
  bench.instrument.on(":MEM:FILE:PRES?", answer(preset, milliseconds(150)));
  const auto before = bench.loop.now();
  EXPECT_TRUE(bench.zan().GetSeqFile());
  EXPECT_TRUE(bench.zan().GetSysFile());
  EXPECT_TRUE(bench.zan().GetPresetFile(""));
  EXPECT_LE(bench.loop.now() - before, milliseconds(3 * 200));
  EXPECT_EQ(bench.journal({"COM3 write"}),
            lines({"COM3 write :MEM:FILE:SEQ?\\n", "COM3 write :SYST:SET?\\n",
                   "COM3 write :MEM:FILE:PRES?\\n"}));
  EXPECT_EQ(file(kSequenceFile), "sequence");
  EXPECT_EQ(file(kSystemFile), pattern(5580));
  EXPECT_EQ(file(kPresetFile), preset);
  expectOwnAnswers();
}

TEST_F(SerialInTurn, aBlockThatBeginsInTimeIsReadInWhateverPiecesItComes) {
  for (const int apart : {1, 30, 400, 950}) {
    bench.instrument.on(":MEM:FILE:PRES?", inPieces(preset, 900, apart));
    put(kPresetFile, "old");
    EXPECT_TRUE(bench.zan().GetPresetFile("")) << apart;
    EXPECT_EQ(file(kPresetFile), preset) << apart;
    expectOwnAnswers();
  }
}

TEST_F(SerialInTurn, aBlockThatBeginsLateOrStopsIsNobodysAnswer) {
  put(kPresetFile, "old");
  for (const int first : {100, 1100, 1900, 2700}) {
    for (const int apart : {1, 1500, 2000}) {
      if (first == 100 && apart == 1) {
        continue;
      }
      const std::string which = std::to_string(first) + ' ' + std::to_string(apart);
      bench.instrument.on(":MEM:FILE:PRES?", inPieces(preset, first, apart));
      EXPECT_FALSE(bench.zan().GetPresetFile("")) << which;
      EXPECT_EQ(file(kPresetFile), "old") << which;
      expectOwnAnswers(which);
    }
  }
}

TEST_F(SerialInTurn, aBlockThatIsCutForGoodIsGivenUpAfterASecondOfSilence) {
  bench.instrument.on(":MEM:FILE:SEQ?", answer(blockOf(pattern(3000)).substr(0, 2000)));
  put(kSequenceFile, "old");
  const auto before = bench.loop.now();
  bench.zan().GetSeqFile();
  EXPECT_LE(bench.loop.now() - before, milliseconds(1100));
  EXPECT_FALSE(bench.drive.fileExists(kSequenceFile));
  expectOwnAnswers();
}

TEST_F(SerialInTurn, aDeviceThatNeverStopsIsListenedToForTenMinutes) {
  Reply endless{{Piece{milliseconds(100), "#816777216"}}};
  for (int i = 1; i < 2000; ++i) {
    endless.pieces.push_back({milliseconds(100 + 900 * i), "x"});
  }
  bench.instrument.on(":MEM:FILE:SEQ?", endless);
  const auto before = bench.loop.now();
  bench.zan().GetSeqFile();
  EXPECT_LE(bench.loop.now() - before, std::chrono::seconds(602));
  EXPECT_FALSE(bench.drive.fileExists(kSequenceFile));
}

TEST_F(SerialInTurn, whatStandsOnTheLineIsInNoFile) {
  for (const char* stale : {"1.2345\n", "#15he", "#0", "\n\n", "#"}) {
    bench.serial.say(3, answer(stale));
    bench.instrument.on(":MEM:FILE:PRES?", answer(preset, milliseconds(20)));
    EXPECT_TRUE(bench.zan().GetPresetFile(""));
    EXPECT_EQ(file(kPresetFile), preset) << stale;
    bench.instrument.on(":MEM:FILE:PRES?", answer("1.2345\n" + preset, milliseconds(20)));
    EXPECT_TRUE(bench.zan().GetPresetFile(""));
    EXPECT_EQ(file(kPresetFile), preset);
  }
}

TEST_F(SerialInTurn, aSecondAnswerAndALateLineEndAreNobodys) {
  bench.instrument.on(":MEM:FILE:PRES?", answer(preset + preset + "1\n"));
  EXPECT_TRUE(bench.zan().GetPresetFile(""));
  EXPECT_EQ(file(kPresetFile), preset);
  expectOwnAnswers();
  const std::string bare = preset.substr(0, 897);
  for (const int late : {5, 30, 300}) {
    bench.instrument.on(":MEM:FILE:PRES?",
                        Reply{{{milliseconds(100), bare}, {milliseconds(100 + late), "\n"}}});
    EXPECT_TRUE(bench.zan().GetPresetFile(""));
    EXPECT_EQ(file(kPresetFile).substr(0, 897), bare);
    expectOwnAnswers();
  }
}

TEST_F(SerialInTurn, whatIsNoPresetIsNotSaved) {
  put(kPresetFile, "old");
  for (const std::string& other :
       {std::string("#15hello\n"), blockOf(pattern(891)), blockOf(pattern(893)),
        "#43892" + pattern(3892), std::string("0.5\n")}) {
    bench.instrument.on(":MEM:FILE:PRES?", other);
    EXPECT_FALSE(bench.zan().GetPresetFile("")) << other.size();
    EXPECT_EQ(file(kPresetFile), "old");
    expectOwnAnswers();
  }
}

TEST_F(SerialInTurn, aCommandInsideTheWaitOfATransferHasItsOwnAnswerAndTheFileIsWhole) {
  for (int pass = 0; pass < 30; ++pass) {
    bench.instrument.on(":MEM:FILE:PRES?", inPieces(preset, 100, 60));
    put(kPresetFile, "old");
    std::string inner;
    inPass(pass, [&] { inner = bench.ask(":A?"); });
    EXPECT_TRUE(bench.zan().GetPresetFile("")) << pass;
    EXPECT_EQ(inner, "one") << pass;
    EXPECT_EQ(file(kPresetFile), preset) << pass;
    expectOwnAnswers();
  }
}

TEST_F(SerialInTurn, aTransferInsideTheWaitOfAnotherOrOfAQueryLeavesBothTheirs) {
  bench.instrument.on(":SYST:SET?", inPieces(blockOf(pattern(5580)), 100, 60));
  bench.instrument.on(":MEM:FILE:PRES?", inPieces(preset, 100, 60));
  bench.instrument.on(":A?", answer("one\n", milliseconds(400)));
  bool inner = false;
  inPass(5, [&] { inner = bench.zan().GetPresetFile(""); });
  bench.zan().GetSysFile();
  EXPECT_TRUE(inner);
  EXPECT_EQ(file(kPresetFile), preset);
  EXPECT_EQ(file(kSystemFile), pattern(5580));
  put(kPresetFile, "old");
  inPass(2, [&] { inner = bench.zan().GetPresetFile(""); });
  EXPECT_EQ(bench.ask(":A?"), "one");
  EXPECT_TRUE(inner);
  EXPECT_EQ(file(kPresetFile), preset);
  expectOwnAnswers();
}

TEST_F(SerialInTurn, theAutoQueryStandsBackForATransfer) {
  bench.instrument.on(":MEM:FILE:SEQ?", inPieces(blockOf(pattern(3000)), 900, 900));
  bench.instrument.on(":FETC:VOLT?", answer("12.0\n", milliseconds(60)));
  bench.zan().AutoQuery(true);
  bench.run(milliseconds(1010));
  bench.journal();
  bench.zan().GetSeqFile();
  EXPECT_EQ(bench.journal({"COM3 write"}), "COM3 write :MEM:FILE:SEQ?\\n\n");
  EXPECT_EQ(file(kSequenceFile), pattern(3000));
  bench.run(milliseconds(3000));
  EXPECT_EQ(bench.text("txtVoltage(0)"), "12.0");
}

TEST_F(SerialInTurn, whatIsSentKeepsItsDistanceToWhatFollows) {
  put(kUploadFile, pattern(5580));
  put(kPresetFile, preset);
  put(kMarkerFile, "");
  const auto before = bench.loop.now();
  EXPECT_TRUE(bench.zan().SendSysFile());
  EXPECT_LE(bench.loop.now() - before, milliseconds(10));
  EXPECT_TRUE(bench.zan().SetPresetFile());
  EXPECT_GE(bench.loop.now() - before, milliseconds(1000));
  EXPECT_LE(bench.loop.now() - before, milliseconds(1100));
  EXPECT_EQ(bench.ask(":A?"), "one");
  EXPECT_GE(bench.loop.now() - before, milliseconds(2000));
  EXPECT_EQ(bench.journal({"COM3 write"}),
            lines({"COM3 write :SYST:SET #45580", "COM3 write " + escaped(pattern(5580)),
                   "COM3 write \\n", "COM3 write :MEM:FILE:PRES #3892",
                   "COM3 write " + escaped(pattern(892)), "COM3 write :A?\\n"}));
}

TEST_F(SerialInTurn, whatIsSentWaitsForTheAnswerOfAQuery) {
  put(kUploadFile, pattern(5580));
  bench.instrument.on(":A?", answer("one\n", milliseconds(400)));
  inPass(2, [&] { bench.zan().SendSysFile(); });
  EXPECT_EQ(bench.ask(":A?"), "one");
  EXPECT_TRUE(bench.journal({"COM3"}).starts_with("COM3 write :A?\\n\nCOM3 read one\\n\n"));
}

TEST_F(SerialInTurn, aFullDiskLeavesTheOldPreset) {
  bench.instrument.on(":MEM:FILE:PRES?", preset);
  put(kPresetFile, "old");
  bench.script.fail("put", 61);
  EXPECT_FALSE(bench.zan().GetPresetFile(""));
  EXPECT_EQ(file(kPresetFile), "old");
  expectOwnAnswers();
}

TEST_F(SerialInTurn, aDriveWithoutRoomIsSeenBeforeAnythingIsDeletedOrAsked) {
  for (const char* kept : {kSequenceFile, kSystemFile, kPresetFile}) {
    put(kept, "old");
  }
  bench.drive.room = 800;
  bench.zan().GetSeqFile();
  bench.zan().GetSysFile();
  EXPECT_FALSE(bench.zan().GetPresetFile(""));
  EXPECT_EQ(bench.journal({"COM3 write", "remove"}), "");
  for (const char* kept : {kSequenceFile, kSystemFile, kPresetFile}) {
    EXPECT_EQ(file(kept), "old");
  }
}

TEST_F(SerialInTurn, aLinkThatIsLeftInsideTheWaitEndsTheTransfer) {
  bench.instrument.on(":MEM:FILE:PRES?", answer(preset, milliseconds(500)));
  put(kPresetFile, "old");
  inPass(3, [&] { bench.click("optVISA"); });
  EXPECT_FALSE(bench.zan().GetPresetFile(""));
  EXPECT_EQ(file(kPresetFile), "old");
}

struct VisaComInTurn : testing::Test, transfer::ConnectedBench {
  VisaComInTurn() : ConnectedBench(Exchanges::InTurn, Over::VisaCom) {}
};

TEST_F(VisaComInTurn, aTransferInsideTheWaitOfAQueryLeavesBothTheirs) {
  bench.instrument.on(":MEM:FILE:PRES?", pattern(892));
  bench.instrument.on(":A?", answer("one\n", milliseconds(400)));
  bool inner = false;
  inPass(0, [&] { inner = bench.zan().GetPresetFile(""); });
  EXPECT_EQ(bench.ask(":A?"), "one");
  EXPECT_TRUE(inner);
  EXPECT_EQ(file(kPresetFile), pattern(892));
  expectOwnAnswers();
}

TEST_F(VisaComInTurn, whatIsNoPresetIsNotSaved) {
  put(kPresetFile, "old");
  for (const std::string& other : {std::string(), std::string("x"), pattern(891), pattern(893)}) {
    bench.instrument.on(":MEM:FILE:PRES?", other);
    EXPECT_FALSE(bench.zan().GetPresetFile(""));
    EXPECT_EQ(file(kPresetFile), "old");
  }
  expectOwnAnswers();
}

TEST_F(VisaComInTurn, theSessionIsAsTextNeedsItWhateverBecomesOfATransfer) {
  bench.control<toolkit::ComboBox>("cmbVISARes").setText(kUsb);
  bench.instrument.on(":MEM:FILE:SEQ?", "x");
  bench.zan().GetSeqFile();
  EXPECT_EQ(bench.journal({"EndIn"}), "EndIn 0\nEndIn 2\n") << "an answer that is none";
  bench.script.fail("ReadIEEEBlock", static_cast<int>(io::E_VISA_TMO), 1);
  bench.zan().GetSeqFile();
  EXPECT_EQ(bench.journal({"EndIn"}), "EndIn 0\nEndIn 2\n");
  bench.instrument.on(":MEM:FILE:SEQ?", "whole");
  bench.zan().GetSeqFile();
  EXPECT_EQ(bench.journal({"EndIn"}), "EndIn 0\nEndIn 2\n");
  expectOwnAnswers();
}

// ---- interleaved, as far as it goes

struct SerialInterleaved : testing::Test, transfer::ConnectedBench {
  SerialInterleaved() : ConnectedBench(Exchanges::Interleaved) {}
  const std::string preset = blockOf(pattern(892));
};

TEST_F(SerialInterleaved, theSecondAnswerOfASlowPresetIsNotTheNextQuerys) {
  bench.instrument.on(":MEM:FILE:PRES?", {Reply{{{milliseconds(150), preset.substr(0, 700)},
                                                 {milliseconds(1085), preset.substr(700)}}},
                                          Reply{{{milliseconds(1235), preset.substr(0, 500)},
                                                 {milliseconds(1700), preset.substr(500)}}}});
  EXPECT_TRUE(bench.zan().GetPresetFile(""));
  EXPECT_EQ(file(kPresetFile), preset);
  EXPECT_EQ(bench.ask(":A?"), "one");
  EXPECT_EQ(bench.ask(":B?"), "two");
}

TEST_F(SerialInterleaved, aLineEndBehindTheLastPollIsNotTheNextAnswer) {
  bench.instrument.on(
      ":MEM:FILE:SEQ?",
      {answer("#15hello\n"), Reply{{{milliseconds(100), "#15world"}, {milliseconds(3010), "\n"}}}});
  bench.zan().GetSeqFile();
  EXPECT_EQ(file(kSequenceFile), "world");
  bench.run(milliseconds(50));
  EXPECT_EQ(bench.ask(":A?"), "one");
  EXPECT_EQ(bench.ask(":B?"), "two");
}

TEST_F(SerialInterleaved, aQueryThatStillWaitsDoesNotEatABlock) {
  bench.instrument.on(":Q?", silence());
  bench.ask(":Q?");
  bench.instrument.on(":MEM:FILE:SEQ?", "#211hello\nworld\n");
  bench.zan().GetSeqFile();
  EXPECT_EQ(file(kSequenceFile), "hello\nworld");
  EXPECT_EQ(bench.ask(":A?"), "one");
}

TEST_F(SerialInterleaved, aLateAnswerInFrontOfAPresetIsNotInTheFile) {
  bench.serial.say(3, answer("1.2345\n"));
  bench.instrument.on(":MEM:FILE:PRES?", preset);
  EXPECT_TRUE(bench.zan().GetPresetFile(""));
  EXPECT_EQ(file(kPresetFile), preset);
}

}  // namespace
}  // namespace lumodevice::files
