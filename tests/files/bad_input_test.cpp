#include <gtest/gtest.h>

#include "tests/files/file_parts.hpp"

namespace lumodevice::files {
namespace {

/// Answers that hold no block which could be kept.
const char* const kBadAnswers[] = {
    "",        "#",  "#0",           "#0hello\n",   "#9999999999", "#A",       "#A5hello\n",
    "#",       "#1", "#15",          "#2",          "#29",         "#299hi\n", "#3x12\n",
    "hello\n", "\n", "#999999999\n", "x#15hello\n", "#532768\n",   "#10\n"};

class BadSerialAnswer : public testing::TestWithParam<const char*>, protected FileParts {};

INSTANTIATE_TEST_SUITE_P(Answers, BadSerialAnswer, testing::ValuesIn(kBadAnswers));

TEST_P(BadSerialAnswer, makesNoSequenceAndNoSystemFile) {
  useSerial();
  put(kPresetFile, "preset");
  bench.instrument.on(":MEM:FILE:SEQ?", GetParam());
  bench.instrument.on(":SYST:SET?", GetParam());
  memory.GetSequence();
  memory.GetSystem();
  EXPECT_FALSE(exists(kSequenceFile));
  EXPECT_FALSE(exists(kSystemFile));
  EXPECT_EQ(content(kPresetFile), "preset");
  EXPECT_EQ(bench.journal({"box", "open", "put"}), "");
}

TEST_P(BadSerialAnswer, asASecondAnswerMakesNoFile) {
  useSerial();
  bench.instrument.on(":MEM:FILE:SEQ?", {support::answer("#220" + std::string(20, 'x') + "\n"),
                                         support::answer(GetParam())});
  memory.GetSequence();
  EXPECT_FALSE(exists(kSequenceFile));
  EXPECT_TRUE(binary());
}

TEST_P(BadSerialAnswer, makesNoPresetUnlessABlockIsInIt) {
  for (const Exchanges exchanges : {Exchanges::Interleaved, Exchanges::InTurn}) {
    FileParts parts(exchanges);
    const bool inTurn = exchanges == Exchanges::InTurn;
    parts.useSerial();
    parts.put(kPresetFile, "the old preset");
    const std::string answer = GetParam();
    parts.bench.instrument.on(":MEM:FILE:PRES?",
                              {support::answer(inTurn ? answer : ""), support::answer(answer)});
    const bool holdsOne = answer == "x#15hello\n";
    EXPECT_EQ(parts.memory.GetPresetForHost(), !inTurn && (answer.empty() || holdsOne));
    EXPECT_EQ(parts.content(kPresetFile),
              holdsOne && !inTurn ? "#15hello\nreset" : "the old preset");
  }
}

TEST(BadSerialAnswers, cutAtEveryByteMakeNoFile) {
  const std::string whole = "#212hello#\r\nworl";
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    FileParts parts;
    parts.useSerial();
    parts.bench.instrument.on(":MEM:FILE:SEQ?", whole.substr(0, size));
    parts.memory.GetSequence();
    const bool complete = size >= whole.size();
    EXPECT_EQ(parts.exists(kSequenceFile), complete) << size;
    if (complete) {
      EXPECT_EQ(parts.content(kSequenceFile), "hello#\r\nworl");
    }
  }
}

TEST(BadSerialAnswers, longerThanPromisedAreCut) {
  FileParts parts;
  parts.useSerial();
  parts.bench.instrument.on(":MEM:FILE:SEQ?", "#15hello world\n");
  parts.memory.GetSequence();
  EXPECT_EQ(parts.content(kSequenceFile), "hello");
}

/// "C:\temp" cannot be made: nothing is asked of the instrument whose answer could not be kept.
TEST(BadFolder, endsTheButtonsBeforeTheyAsk) {
  for (const int code : {75, 70, 76}) {
    support::Bench bench;
    bench.connectVisaCom();
    bench.script.fail("createFolder", code);
    for (const char* button : {"cmdGetSeqFile", "cmdGetSystemFile", "cmdSendSystemFile",
                               "cmdGetPresetFile", "cmdSetPresetFile"}) {
      bench.click(button);
      EXPECT_EQ(bench.journal(), "createFolder C:\\temp\n") << button;
    }
    EXPECT_FALSE(bench.zan().SetPresetFile());
  }
}

TEST(BadFolder, leavesTheHostsPresetReadingToFailAtItsFile) {
  support::Bench bench;
  bench.connectVisaCom();
  bench.script.fail("createFolder", 75);
  bench.instrument.on(":MEM:FILE:PRES?", "hello");
  EXPECT_FALSE(bench.zan().GetPresetFile(""));
  EXPECT_NE(bench.journal({"WriteString :MEM:FILE:PRES?"}), "");
}

TEST(MissingFolder, isMadeByEveryButtonAndTheMembersButNotBySendSysFile) {
  const auto makes = [](auto act) {
    support::Bench bench;
    bench.connectVisaCom();
    act(bench);
    return bench.drive.folderExists("C:\\temp");
  };
  for (const char* button : {"cmdGetSeqFile", "cmdGetSystemFile", "cmdSendSystemFile",
                             "cmdGetPresetFile", "cmdSetPresetFile"}) {
    EXPECT_TRUE(makes([&](support::Bench& bench) { bench.click(button); })) << button;
  }
  EXPECT_TRUE(makes([](support::Bench& bench) { bench.zan().GetSeqFile(); }));
  EXPECT_TRUE(makes([](support::Bench& bench) { bench.zan().GetSysFile(); }));
  EXPECT_TRUE(makes([](support::Bench& bench) { bench.zan().GetPresetFile(""); }));
  EXPECT_TRUE(makes([](support::Bench& bench) { bench.zan().SetPresetFile(); }));
  EXPECT_FALSE(makes([](support::Bench& bench) { bench.zan().SendSysFile(); }));
}

}  // namespace
}  // namespace lumodevice::files
