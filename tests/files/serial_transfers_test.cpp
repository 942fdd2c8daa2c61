#include <gtest/gtest.h>

#include "tests/files/file_parts.hpp"

namespace lumodevice::files {
namespace {

using std::chrono::milliseconds;
using support::answer;
using support::escaped;
using support::lines;
using support::Reply;
using support::silence;

class SerialTransfer : public testing::Test, protected FileParts {
 protected:
  SerialTransfer() { useSerial(); }
  std::string journal() { return bench.journal(); }
};

TEST_F(SerialTransfer, ofTheSequenceFileAsksTwiceAndKeepsTheDataAlone) {
  bench.instrument.on(":MEM:FILE:SEQ?", "#15h#\r\n\n\n");
  memory.GetSequence();
  EXPECT_EQ(journal(), lines({"COM3 write :MEM:FILE:SEQ?\\n", "pass", "sleep 2000",
                              "COM3 read #15h#\\r\\n\\n\\n", "COM3 write :MEM:FILE:SEQ?\\n", "pass",
                              "sleep 3000", "COM3 read #15h#\\r\\n\\n\\n",
                              "open c:\\temp\\ZANSeq.a", "put 5 bytes"}));
  EXPECT_EQ(content(kSequenceFile), "h#\r\n\n");
  EXPECT_FALSE(binary());
}

TEST_F(SerialTransfer, ofTheSystemFileHasItsOwnQueryFileAndWaits) {
  const std::string data = pattern(5580);
  bench.instrument.on(":SYST:SET?", blockOf(data));
  memory.GetSystem();
  const std::string received = "COM3 read " + escaped(blockOf(data));
  EXPECT_EQ(journal(), lines({"COM3 write :SYST:SET?\\n", "pass", "sleep 1500", received,
                              "COM3 write :SYST:SET?\\n", "pass", "sleep 3000", received,
                              "open c:\\temp\\ZANProg.b", "put 5580 bytes"}));
  EXPECT_EQ(content(kSystemFile), data);
}

TEST_F(SerialTransfer, ofTheSequenceFileReplacesTheOldOne) {
  put(kSequenceFile, "something much longer than the new file");
  bench.instrument.on(":MEM:FILE:SEQ?", "#15hello\n");
  memory.GetSequence();
  EXPECT_EQ(content(kSequenceFile), "hello");
}

TEST_F(SerialTransfer, takesTheLengthOfTheFirstAnswerAndTheBytesOfTheSecond) {
  bench.instrument.on(":MEM:FILE:SEQ?", {answer("#15hello\n"), answer("#1812345678\n")});
  memory.GetSequence();
  EXPECT_EQ(content(kSequenceFile), "12345");
}

TEST_F(SerialTransfer, readsOnForABlockThatHasBegunUntilItIsCompleteAndQuiet) {
  const Reply slow{{{milliseconds(1900), "#210123"}, {milliseconds(2350), "456789\n"}}};
  bench.instrument.on(":MEM:FILE:SEQ?", {slow, answer("#210abcdefghij\n")});
  memory.GetSequence();
  EXPECT_EQ(bench.journal({"sleep"}), lines({"sleep 2000", "sleep 100", "sleep 100", "sleep 100",
                                             "sleep 100", "sleep 100", "sleep 3000"}));
  EXPECT_EQ(content(kSequenceFile), "abcdefghij");
}

TEST_F(SerialTransfer, waitsForNothingThatHasNotBegun) {
  bench.instrument.on(":MEM:FILE:SEQ?", silence());
  put(kSequenceFile, "old");
  memory.GetSequence();
  EXPECT_EQ(bench.journal({"sleep"}), lines({"sleep 2000", "sleep 3000"}));
  EXPECT_FALSE(exists(kSequenceFile)) << "deleted before the instrument was asked";
  EXPECT_TRUE(binary());
}

TEST_F(SerialTransfer, givesABlockThatStopsUpAfterASecondOfSilence) {
  bench.instrument.on(":MEM:FILE:SEQ?", "#210012");
  memory.GetSequence();
  EXPECT_EQ(bench.loop.now(), milliseconds(2000 + 1000 + 3000 + 1000));
  EXPECT_FALSE(exists(kSequenceFile));
}

TEST_F(SerialTransfer, passesOverALineEndThatTheFirstAnswerLeftBehind) {
  bench.instrument.on(
      ":MEM:FILE:SEQ?",
      {Reply{{{milliseconds(0), "#15hello"}, {milliseconds(2010), "\r\n"}}}, answer("#15world\n")});
  memory.GetSequence();
  EXPECT_EQ(content(kSequenceFile), "world");
}

TEST_F(SerialTransfer, passesOverALineEndThatTheTransferBeforeLeftBehind) {
  bench.instrument.on(":MEM:FILE:SEQ?", {answer("\r\n#15hello\n"), answer("#15world\n")});
  memory.GetSequence();
  EXPECT_EQ(content(kSequenceFile), "world");
}

TEST_F(SerialTransfer, thatListensToADeviceWhichNeverStopsEnds) {
  Reply endless;
  for (int i = 0; i < 2000; ++i) {
    endless.pieces.push_back({milliseconds(100 * i), "#532000" + std::string(500, 'x')});
  }
  bench.instrument.on(":MEM:FILE:SEQ?", {endless, silence()});
  memory.GetSequence();
  EXPECT_LT(bench.loop.now(), milliseconds(60000));
}

TEST_F(SerialTransfer, ofTheUploadFileSendsHeaderDataAndLineFeedAndStaysBinary) {
  const std::string data = pattern(5580);
  put(kUploadFile, data);
  memory.SendSystem();
  EXPECT_EQ(journal(),
            lines({"COM3 write :SYST:SET #45580", "open c:\\temp\\ZANProgUpload.b",
                   "COM3 write " + escaped(data), "COM3 write \\n", "pass", "sleep 1000"}));
  EXPECT_TRUE(binary());
}

TEST_F(SerialTransfer, fillsAShortUploadFileUpAndCutsALongOne) {
  put(kUploadFile, pattern(100));
  memory.SendSystem();
  EXPECT_EQ(
      bench.journal({"COM3 write"}),
      lines({"COM3 write :SYST:SET #45580",
             "COM3 write " + escaped(pattern(100) + std::string(5480, '\0')), "COM3 write \\n"}));
  put(kUploadFile, pattern(6000));
  memory.SendSystem();
  EXPECT_EQ(bench.journal({"COM3 write"}),
            lines({"COM3 write :SYST:SET #45580", "COM3 write " + escaped(pattern(5580)),
                   "COM3 write \\n"}));
}

TEST_F(SerialTransfer, withoutAnUploadFileSendsNothing) {
  memory.SendSystem();
  EXPECT_EQ(journal(), "");
  EXPECT_FALSE(memory.SendSystemForHost());
  EXPECT_EQ(journal(), "");
}

TEST_F(SerialTransfer, ofThePresetKeepsTheAnswerAsItCame) {
  const std::string raw = blockOf(pattern(892));
  ASSERT_EQ(raw.size(), 898U);
  bench.instrument.on(":MEM:FILE:PRES?", {silence(), answer(raw)});
  EXPECT_TRUE(memory.GetPresetForHost());
  EXPECT_EQ(journal(), lines({"COM3 write :MEM:FILE:PRES?\\n", "COM3 write :MEM:FILE:PRES?\\n",
                              "pass", "sleep 1000", "COM3 read " + escaped(raw),
                              "open c:\\temp\\zanbank.dev", "put 898 bytes"}));
  EXPECT_EQ(content(kPresetFile), raw);
  EXPECT_FALSE(binary());
}

TEST_F(SerialTransfer, ofThePresetTakesTheSecondAnswerWhereverTheFirstWasCut) {
  const std::string first = blockOf(std::string(892, 'a'));
  const std::string second = blockOf(pattern(892));
  for (const std::size_t cut : {std::size_t{0}, std::size_t{1}, std::size_t{5}, std::size_t{400},
                                first.size() - 1, first.size()}) {
    bench.instrument.on(
        ":MEM:FILE:PRES?",
        {Reply{{{milliseconds(0), first.substr(0, cut)}, {milliseconds(500), first.substr(cut)}}},
         answer(second, milliseconds(600))});
    EXPECT_TRUE(memory.GetPresetForHost());
    EXPECT_EQ(content(kPresetFile), second) << cut;
  }
}

TEST_F(SerialTransfer, ofThePresetPassesOverALineEndThatTheTransferBeforeLeftBehind) {
  const std::string left = "\r\n";
  const std::string first = left + blockOf(std::string(892, 'a'));
  const std::string second = blockOf(pattern(892));
  for (const std::size_t cut : {std::size_t{0}, std::size_t{1}, std::size_t{2}, std::size_t{5},
                                std::size_t{400}, first.size() - 1, first.size()}) {
    bench.instrument.on(
        ":MEM:FILE:PRES?",
        {Reply{{{milliseconds(0), first.substr(0, cut)}, {milliseconds(500), first.substr(cut)}}},
         answer(second, milliseconds(600))});
    EXPECT_TRUE(memory.GetPresetForHost());
    EXPECT_EQ(content(kPresetFile), second) << cut;
  }
  bench.instrument.on(":MEM:FILE:PRES?", {silence(), answer(left + second)});
  EXPECT_TRUE(memory.GetPresetForHost());
  EXPECT_EQ(content(kPresetFile), second) << "an answer alone";
}

TEST_F(SerialTransfer, ofAShorterPresetLeavesTheTailOfTheOldFile) {
  put(kPresetFile, "0123456789abcdef");
  bench.instrument.on(":MEM:FILE:PRES?", {silence(), answer("#15hello\n")});
  EXPECT_TRUE(memory.GetPresetForHost());
  EXPECT_EQ(content(kPresetFile), "#15hello\n9abcdef");
}

TEST_F(SerialTransfer, ofAPresetThatNeverComesLeavesTheFileAlone) {
  bench.instrument.on(":MEM:FILE:PRES?", silence());
  EXPECT_TRUE(memory.GetPresetForHost());
  EXPECT_FALSE(exists(kPresetFile));
  EXPECT_FALSE(binary());
}

TEST_F(SerialTransfer, ofAPresetWhoseFirstHeaderDoesNotFitEndsAtOnce) {
  bench.instrument.on(":MEM:FILE:PRES?", "#9999999999");
  EXPECT_FALSE(memory.GetPresetForHost());
  EXPECT_EQ(bench.journal({"COM3 write", "sleep"}), lines({"COM3 write :MEM:FILE:PRES?\\n"}));
  EXPECT_FALSE(binary());
}

TEST_F(SerialTransfer, sendsAPresetWithoutItsHeaderAndWithoutAnEventPass) {
  const std::string data = pattern(892);
  put(kPresetFile, blockOf(data));
  put(kMarkerFile, "");
  EXPECT_TRUE(memory.SetPresetForHost());
  EXPECT_EQ(journal(), lines({"open c:\\temp\\zanbank.dev", "COM3 write :MEM:FILE:PRES #3892",
                              "COM3 write " + escaped(data), "sleep 1000"}));
  EXPECT_FALSE(binary());
}

TEST_F(SerialTransfer, sendsNothingButAPresetOfItsOwnLayout) {
  put(kMarkerFile, "");
  const std::string raw = blockOf(pattern(892));
  for (const std::string& file : {std::string(), std::string("preset"), pattern(892), pattern(898),
                                  '5' + raw, raw.substr(0, 896), blockOf(pattern(891)),
                                  std::string("#3892"), "\n" + raw, "5\n" + raw + raw}) {
    put(kPresetFile, file);
    EXPECT_FALSE(memory.SetPresetForHost()) << file.size();
    memory.SetPreset();
    EXPECT_EQ(bench.journal({"COM3", "box", "sleep"}), "") << file.size();
  }
  for (const std::string& file : {raw, raw.substr(0, 897), raw + "tail"}) {
    put(kPresetFile, file);
    EXPECT_TRUE(memory.SetPresetForHost());
    EXPECT_EQ(bench.journal({"COM3 write"}),
              lines({"COM3 write :MEM:FILE:PRES #3892", "COM3 write " + escaped(pattern(892))}));
  }
}

TEST_F(SerialTransfer, ofThePresetKeepsNothingButOneBlock) {
  const std::string raw = blockOf(pattern(892));
  bench.instrument.on(":MEM:FILE:PRES?", {answer("1.2345\n" + raw, milliseconds(200)),
                                          answer(raw, milliseconds(400))});
  EXPECT_TRUE(memory.GetPresetForHost());
  EXPECT_EQ(content(kPresetFile), raw);
  bench.instrument.on(":MEM:FILE:PRES?", {silence(), answer("1.2345\n" + raw + "0.5\n")});
  EXPECT_TRUE(memory.GetPresetForHost());
  EXPECT_EQ(content(kPresetFile), raw);
}

TEST_F(SerialTransfer, leavesTheInputModeOfTheUploadAlone) {
  put(kUploadFile, "x");
  put(kPresetFile, "x");
  memory.SendSystem();
  memory.SetPreset();
  EXPECT_TRUE(binary());
  bench.instrument.on(":MEM:FILE:SEQ?", "#15hello\n");
  memory.GetSequence();
  EXPECT_FALSE(binary());
}

/// All five operations, each with what it needs to succeed.
struct Operation {
  const char* name;
  void (*run)(FileParts&);
};

const Operation kOperations[] = {
    {"GetSequence", [](FileParts& parts) { parts.memory.GetSequence(); }},
    {"GetSystem", [](FileParts& parts) { parts.memory.GetSystem(); }},
    {"SendSystem", [](FileParts& parts) { parts.memory.SendSystem(); }},
    {"GetPreset", [](FileParts& parts) { parts.memory.GetPreset(); }},
    {"SetPreset", [](FileParts& parts) { parts.memory.SetPreset(); }},
};

class SerialOperation : public testing::TestWithParam<Operation>, protected FileParts {};

/// Whatever step fails, the operation ends there without a box, and the next one works.
TEST_P(SerialOperation, endsSilentlyAtTheFirstStepThatFails) {
  const auto prepare = [](FileParts& parts) {
    parts.useSerial();
    parts.bench.instrument.on(":MEM:FILE:SEQ?", "#15hello\n");
    parts.bench.instrument.on(":SYST:SET?", "#15hello\n");
    parts.bench.instrument.on(":MEM:FILE:PRES?", "#15hello\n");
    parts.put(kUploadFile, "upload");
    parts.put(kPresetFile, blockOf(pattern(892)));
    parts.bench.journal();
  };
  prepare(*this);
  GetParam().run(*this);
  std::vector<std::string> steps;
  std::istringstream journal(bench.journal());
  for (std::string step; std::getline(journal, step);) {
    if (!step.starts_with("pass") && !step.starts_with("sleep")) {
      steps.push_back(step);
    }
  }
  ASSERT_GE(steps.size(), 3U);
  for (const std::string& step : steps) {
    FileParts parts;
    prepare(parts);
    parts.bench.script.fail(step, step.starts_with("COM3") ? 8020 : 61, 1);
    GetParam().run(parts);
    EXPECT_EQ(parts.bench.journal({"box"}), "") << step;
    parts.bench.script.heal(step);
    parts.memory.GetSequence();
    EXPECT_EQ(parts.content(kSequenceFile), "hello") << step;
  }
}

INSTANTIATE_TEST_SUITE_P(All, SerialOperation, testing::ValuesIn(kOperations),
                         [](const auto& each) { return std::string(each.param.name); });

TEST_F(SerialTransfer, overAClosedPortEndsAtOnce) {
  MSComm1.setPortOpen(false);
  bench.journal();
  put(kUploadFile, "x");
  put(kPresetFile, "x");
  for (const Operation& operation : kOperations) {
    operation.run(*this);
    EXPECT_EQ(bench.journal({"COM3", "sleep", "box"}), "") << operation.name;
  }
  EXPECT_FALSE(memory.GetPresetForHost());
}

TEST_F(SerialTransfer, whosePortIsClosedInItsWaitEnds) {
  bench.instrument.on(":MEM:FILE:SEQ?", "#15hello\n");
  const auto watching = bench.loop.observePasses([this] { MSComm1.setPortOpen(false); });
  memory.GetSequence();
  EXPECT_FALSE(exists(kSequenceFile));
  EXPECT_EQ(bench.journal({"box"}), "");
}

TEST_F(SerialTransfer, insideTheWaitOfAnotherRunsToItsEnd) {
  bench.instrument.on(":MEM:FILE:SEQ?", "#15hello\n");
  bench.instrument.on(":SYST:SET?", "#15world\n");
  bool once = true;
  const auto watching = bench.loop.observePasses([&] {
    if (std::exchange(once, false)) {
      memory.GetSystem();
    }
  });
  memory.GetSequence();
  EXPECT_EQ(bench.journal({"box"}), "");
  EXPECT_FALSE(exists(kSequenceFile)) << "the inner one took its answer";
}

TEST(PresetButton, withoutAFileAsksForTheOtherButton) {
  FileParts parts;
  parts.useSerial();
  parts.memory.SetPreset();
  EXPECT_EQ(parts.bench.journal(), lines({kPresetBox}));
}

}  // namespace
}  // namespace lumodevice::files
