#include <gtest/gtest.h>

#include "tests/files/file_parts.hpp"

namespace lumodevice::files {
namespace {

using support::escaped;
using support::lines;

/// A line of the journal, and whether it is about an attribute of the session, which a GPIB one
/// keeps.
struct Step {
  std::string line;
  bool attribute = false;
};

class VisaTransfer : public testing::TestWithParam<const char*>, protected FileParts {
 protected:
  VisaTransfer() {
    useVisaCom(GetParam());
    form.txtVISATimeout.setText("750");
  }

  [[nodiscard]] bool gpib() const { return GetParam() == std::string(kGpib); }

  [[nodiscard]] std::string expected(const std::vector<Step>& steps) const {
    std::vector<std::string> kept;
    for (const Step& step : steps) {
      if (!step.attribute || !gpib()) {
        kept.push_back(step.line);
      }
    }
    return lines(kept);
  }
  std::string attributes() { return bench.journal({"Timeout", "Termination", "EndIn", "EndOut"}); }
};

INSTANTIATE_TEST_SUITE_P(Resources, VisaTransfer, testing::Values(kGpib, kUsb),
                         [](const auto& each) {
                           return each.param == std::string(kGpib) ? "Gpib" : "Usb";
                         });

TEST_P(VisaTransfer, ofTheSequenceFileSwitchesTheEndsForItsReading) {
  bench.instrument.on(":MEM:FILE:SEQ?", "h#\r\n\n");
  memory.GetSequence();
  EXPECT_EQ(bench.journal(), expected({{"WriteString :MEM:FILE:SEQ?\\n END"},
                                       {"TerminationCharacterEnabled False", true},
                                       {"EndIn 0", true},
                                       {"ReadIEEEBlock flush"},
                                       {"open c:\\temp\\ZANSeq.a"},
                                       {"put 5 bytes"},
                                       {"Timeout 750", true},
                                       {"EndIn 2", true}}));
  EXPECT_EQ(content(kSequenceFile), "h#\r\n\n");
}

TEST_P(VisaTransfer, ofTheSystemFileHasItsOwnQueryAndFile) {
  put(kSystemFile, pattern(7000));
  bench.instrument.on(":SYST:SET?", pattern(5580));
  memory.GetSystem();
  EXPECT_EQ(bench.journal({"WriteString", "remove"}),
            lines({"remove c:\\temp\\ZANProg.b", "WriteString :SYST:SET?\\n END"}));
  EXPECT_EQ(content(kSystemFile), pattern(5580));
}

TEST_P(VisaTransfer, ofThePresetWritesTheDataOverTheOldFile) {
  put(kPresetFile, "0123456789");
  bench.instrument.on(":MEM:FILE:PRES?", "hello");
  EXPECT_TRUE(memory.GetPresetForHost());
  EXPECT_EQ(bench.journal(), expected({{"WriteString :MEM:FILE:PRES?\\n END"},
                                       {"TerminationCharacterEnabled False", true},
                                       {"EndIn 0", true},
                                       {"ReadIEEEBlock flush"},
                                       {"open c:\\temp\\zanbank.dev"},
                                       {"put 5 bytes"},
                                       {"Timeout 750", true},
                                       {"EndIn 2", true}}));
  EXPECT_EQ(content(kPresetFile), "hello56789");
}

TEST_P(VisaTransfer, ofNoBytesOrOneWritesNothingAndLeavesTheSessionSwitched) {
  put(kSequenceFile, "old");
  for (const char* data : {"", "x"}) {
    for (const char* query : {":MEM:FILE:SEQ?", ":MEM:FILE:PRES?"}) {
      bench.instrument.on(query, data);
    }
    memory.GetSequence();
    EXPECT_EQ(attributes(),
              expected({{"TerminationCharacterEnabled False", true}, {"EndIn 0", true}}));
    EXPECT_FALSE(exists(kSequenceFile));
    EXPECT_TRUE(memory.GetPresetForHost()) << "it ran to its end";
    EXPECT_FALSE(exists(kPresetFile));
    bench.journal();
  }
}

TEST_P(VisaTransfer, ofTwoBytesIsWritten) {
  bench.instrument.on(":MEM:FILE:SEQ?", "xy");
  memory.GetSequence();
  EXPECT_EQ(content(kSequenceFile), "xy");
}

TEST_P(VisaTransfer, ofTheUploadFileSwitchesTheEndsForItsWriting) {
  put(kUploadFile, pattern(6000));
  EXPECT_TRUE(memory.SendSystemForHost());
  EXPECT_EQ(bench.journal(),
            expected({{"open c:\\temp\\ZANProgUpload.b"},
                      {"TerminationCharacterEnabled False", true},
                      {"EndOut 0", true},
                      {"FlushWrite"},
                      {"SetBufferSize 48 6000"},
                      {"WriteIEEEBlock :SYST:SET  [" + escaped(pattern(5580)) + "] END"},
                      {"Timeout 750", true},
                      {"EndOut 2", true}}));
}

TEST_P(VisaTransfer, fillsAShortUploadFileUpWithZeroBytes) {
  put(kUploadFile, pattern(100));
  memory.SendSystem();
  EXPECT_EQ(bench.journal({"WriteIEEEBlock"}),
            lines({"WriteIEEEBlock :SYST:SET  [" + escaped(pattern(100) + std::string(5480, '\0')) +
                   "] END"}));
}

TEST_P(VisaTransfer, sendsThePresetWithTheEndsOfReadingSwitched) {
  put(kPresetFile, pattern(892));
  put(kMarkerFile, "");
  EXPECT_TRUE(memory.SetPresetForHost());
  EXPECT_EQ(bench.journal(),
            expected({{"open c:\\temp\\zanbank.dev"},
                      {"TerminationCharacterEnabled False", true},
                      {"EndIn 0", true},
                      {"WriteIEEEBlock :MEM:FILE:PRES [" + escaped(pattern(892)) + "] END"},
                      {"Timeout 750", true},
                      {"EndIn 2", true}}));
}

TEST_P(VisaTransfer, sendsNothingButAPresetOfItsOwnLayout) {
  put(kMarkerFile, "");
  const std::string raw = blockOf(pattern(892));
  for (const std::string& file :
       {std::string(), std::string("preset"), pattern(891), raw, raw.substr(0, 897)}) {
    put(kPresetFile, file);
    EXPECT_FALSE(memory.SetPresetForHost()) << file.size();
    memory.SetPreset();
    EXPECT_EQ(bench.journal({"Write", "EndIn", "box"}), "") << file.size();
  }
  put(kPresetFile, pattern(892) + "tail of a longer one");
  EXPECT_TRUE(memory.SetPresetForHost());
  EXPECT_EQ(bench.journal({"WriteIEEEBlock"}),
            lines({"WriteIEEEBlock :MEM:FILE:PRES [" + escaped(pattern(892)) + "] END"}));
}

TEST_P(VisaTransfer, withoutTheMarkerSendsNoPresetForTheHost) {
  put(kPresetFile, pattern(892));
  EXPECT_FALSE(memory.SetPresetForHost());
  EXPECT_EQ(bench.journal(), "");
  memory.SetPreset();
  EXPECT_NE(bench.journal({"WriteIEEEBlock"}), "") << "the button does not look for it";
}

TEST_P(VisaTransfer, withTheMarkerButNoPresetIsFalse) {
  put(kMarkerFile, "");
  EXPECT_FALSE(memory.SetPresetForHost());
  EXPECT_EQ(bench.journal(), "");
}

TEST_P(VisaTransfer, withATimeOutThatIsNoNumberTakesZero) {
  form.txtVISATimeout.setText("soon");
  bench.instrument.on(":MEM:FILE:SEQ?", "hello");
  memory.GetSequence();
  EXPECT_EQ(bench.journal({"Timeout"}), expected({{"Timeout 0", true}}));
}

/// Where a call fails, what comes after it is not done, and what was done stays.
TEST_P(VisaTransfer, endsSilentlyAtTheCallThatFails) {
  const auto prepare = [&](FileParts& parts) {
    parts.useVisaCom(GetParam());
    parts.bench.instrument.on(":MEM:FILE:SEQ?", "hello");
    parts.bench.instrument.on(":SYST:SET?", "hello");
    parts.bench.instrument.on(":MEM:FILE:PRES?", "hello");
    parts.put(kSequenceFile, "old sequence");
    parts.put(kUploadFile, "upload");
    parts.put(kPresetFile, pattern(892));
    parts.put(kMarkerFile, "");
    parts.bench.journal();
  };
  using Act = bool (*)(MemoryFiles&);
  const Act acts[] = {[](MemoryFiles& files) {
                        files.GetSequence();
                        return false;
                      },
                      [](MemoryFiles& files) {
                        files.SendSystem();
                        return false;
                      },
                      [](MemoryFiles& files) { return files.GetPresetForHost(); },
                      [](MemoryFiles& files) { return files.SetPresetForHost(); }};
  for (const Act act : acts) {
    FileParts healthy;
    prepare(healthy);
    act(healthy.memory);
    std::istringstream journal(healthy.bench.journal());
    std::string before;
    for (std::string call; std::getline(journal, call);) {
      FileParts parts;
      prepare(parts);
      parts.bench.script.fail(
          call, call.starts_with("put") || call.starts_with("open") || call.starts_with("remove")
                    ? 61
                    : static_cast<int>(io::E_VISA_TMO));
      EXPECT_FALSE(act(parts.memory)) << call;
      before += call + '\n';
      EXPECT_EQ(parts.bench.journal(), before) << "failed: " << call;
    }
  }
}

TEST(VisaTransferWithoutASession, endsBeforeAnythingIsSent) {
  FileParts parts;
  parts.put(kUploadFile, "x");
  parts.put(kPresetFile, "x");
  parts.put(kMarkerFile, "");
  for (const char* resource : {kGpib, kUsb}) {
    parts.form.cmbVISARes.setText(resource);
    parts.memory.GetSequence();
    parts.memory.SendSystem();
    EXPECT_FALSE(parts.memory.GetPresetForHost());
    EXPECT_FALSE(parts.memory.SetPresetForHost());
    EXPECT_EQ(parts.bench.journal({"Write", "box"}), "");
  }
}

TEST(VisaTransferOfGpib, isKnownByItsCapitals) {
  FileParts parts;
  parts.useVisaCom("gpib0::7::INSTR");
  parts.bench.instrument.on(":MEM:FILE:SEQ?", "hello");
  parts.memory.GetSequence();
  EXPECT_EQ(parts.bench.journal({"EndIn"}), lines({"EndIn 0", "EndIn 2"}));
}

}  // namespace
}  // namespace lumodevice::files
