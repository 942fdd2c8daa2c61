#include <gtest/gtest.h>

#include "lumodevice/io/visa_com_over_visa.hpp"
#include "tests/files/file_parts.hpp"

namespace lumodevice::files {
namespace {

using support::escaped;
using support::lines;

/// The memory files over the formatted-I/O object on a VISA library, whose calls are the journal's
/// lines.
struct FormattedParts : FileParts {
  void open(const std::string& resource) {
    bench.visa.resources = {{resource, "GPIB0", &bench.instrument}};
    form.optVisa2.setValue(true);
    form.cmbVISARes.setText(resource);
    form.txtVISATimeout.setText("750");
    links.visaCom.setDevZAN(com.createFormattedIO488());
    links.visaCom.devZAN()->setIO(com.createResourceManager()->Open(resource, 0, 2000, ""));
    put(kUploadFile, pattern(5580));
    put(kPresetFile, pattern(892));
    put(kMarkerFile, "");
    bench.journal();
  }
  void answer(const std::string& bytes) {
    for (const char* query : {":MEM:FILE:SEQ?", ":SYST:SET?", ":MEM:FILE:PRES?"}) {
      bench.instrument.on(query, bytes);
    }
  }
  void answer(const support::Reply& reply) {
    for (const char* query : {":MEM:FILE:SEQ?", ":SYST:SET?", ":MEM:FILE:PRES?"}) {
      bench.instrument.on(query, reply);
    }
  }

  io::VisaComOverVisa com{bench.visa};
};

/// Takes what only a session that is no GPIB one is told.
std::string withoutAttributes(const std::string& journal) {
  std::istringstream all(journal);
  std::string kept;
  for (std::string line; std::getline(all, line);) {
    if (!line.starts_with("viSetAttribute")) {
      kept += line + '\n';
    }
  }
  return kept;
}

class FormattedTransfer : public testing::TestWithParam<const char*>, protected FormattedParts {
 protected:
  FormattedTransfer() { open(GetParam()); }
  [[nodiscard]] bool gpib() const { return GetParam() == std::string(kGpib); }
  void expectJournal(const std::vector<std::string>& steps) {
    const std::string all = lines(steps);
    EXPECT_EQ(bench.journal(), gpib() ? withoutAttributes(all) : all);
  }
};

INSTANTIATE_TEST_SUITE_P(Resources, FormattedTransfer, testing::Values(kGpib, kUsb),
                         [](const auto& each) {
                           return each.param == std::string(kGpib) ? "Gpib" : "Usb";
                         });

constexpr const char* kTerminationCharacterOff = "viSetAttribute 2 3FFF0038 0";
constexpr const char* kChosenTimeOut = "viSetAttribute 2 3FFF001A 750";
constexpr const char* kEndInNone = "viSetAttribute 2 3FFF00B3 0";
constexpr const char* kEndInCharacter = "viSetAttribute 2 3FFF00B3 2";
constexpr const char* kEndOutNone = "viSetAttribute 2 3FFF00B4 0";
constexpr const char* kEndOutCharacter = "viSetAttribute 2 3FFF00B4 2";

TEST_P(FormattedTransfer, readsByteByByteUntilItKnowsHowMuchToAskFor) {
  answer("#15h#\r\n\n\n");
  memory.GetSequence();
  expectJournal({"viWrite 2 :MEM:FILE:SEQ?\\n", kTerminationCharacterOff, kEndInNone, "viRead 2 1",
                 "viRead 2 1", "viRead 2 1", "viRead 2 5", "viRead 2 1", "open c:\\temp\\ZANSeq.a",
                 "put 5 bytes", kChosenTimeOut, kEndInCharacter});
  EXPECT_EQ(content(kSequenceFile), "h#\r\n\n");
}

TEST_P(FormattedTransfer, readsThePresetWithoutItsHeader) {
  answer(blockOf(pattern(892)));
  put(kPresetFile, std::string(898, 'x'));
  EXPECT_TRUE(memory.GetPresetForHost());
  expectJournal({"viWrite 2 :MEM:FILE:PRES?\\n", kTerminationCharacterOff, kEndInNone, "viRead 2 1",
                 "viRead 2 1", "viRead 2 3", "viRead 2 892", "viRead 2 1",
                 "open c:\\temp\\zanbank.dev", "put 892 bytes", kChosenTimeOut, kEndInCharacter});
  EXPECT_EQ(content(kPresetFile), pattern(892) + "xxxxxx");
}

TEST_P(FormattedTransfer, sendsTheSystemSettingsInOneWrite) {
  EXPECT_TRUE(memory.SendSystemForHost());
  expectJournal({"open c:\\temp\\ZANProgUpload.b", kTerminationCharacterOff, kEndOutNone,
                 "viWrite 2 :SYST:SET #45580" + escaped(pattern(5580)), kChosenTimeOut,
                 kEndOutCharacter});
}

TEST_P(FormattedTransfer, sendsThePresetDirectlyBehindItsCommand) {
  EXPECT_TRUE(memory.SetPresetForHost());
  expectJournal({"open c:\\temp\\zanbank.dev", kTerminationCharacterOff, kEndInNone,
                 "viWrite 2 :MEM:FILE:PRES#3892" + escaped(pattern(892)), kChosenTimeOut,
                 kEndInCharacter});
}

TEST_P(FormattedTransfer, ofABlockOfOneByteLeavesTheSessionSwitched) {
  for (const char* block : {"#10\n", "#11x\n"}) {
    answer(block);
    bench.drive.remove(kPresetFile);
    EXPECT_TRUE(memory.GetPresetForHost());
    EXPECT_FALSE(exists(kPresetFile)) << block;
    const std::string attributes = bench.journal({"viSetAttribute"});
    EXPECT_EQ(attributes, gpib() ? "" : lines({kTerminationCharacterOff, kEndInNone}));
    put(kPresetFile, "");
  }
}

/// The session is switched, the old sequence is gone, the old preset stays, and the next transfer
/// is as if nothing had happened.
TEST_P(FormattedTransfer, ofWhatIsNoBlockWritesNothing) {
  for (const char* bad :
       {"", "#", "#0", "#0hello\n", "#A", "#A5hello\n", "#9999999999", "#1", "#15", "#299hi\n",
        "#3x12\n", "hello\n", "\n", "x#15hello\n", "\n#15hello\n"}) {
    SCOPED_TRACE(escaped(bad));
    put(kSequenceFile, "old");
    answer(bad);
    memory.GetSequence();
    memory.GetSystem();
    EXPECT_FALSE(memory.GetPresetForHost());
    EXPECT_FALSE(exists(kSequenceFile));
    EXPECT_FALSE(exists(kSystemFile));
    EXPECT_EQ(content(kPresetFile), pattern(892));
    EXPECT_EQ(bench.journal({"box", "open", kChosenTimeOut, kEndInCharacter}), "");
    answer("#15hello\n");
    memory.GetSequence();
    EXPECT_EQ(content(kSequenceFile), "hello");
    bench.journal();
  }
}

TEST_P(FormattedTransfer, ofAnAnswerCutAnywhereWritesNothing) {
  const std::string whole = "#212hello#\r\nworl";
  for (const bool stalls : {false, true}) {
    for (std::size_t size = 0; size <= whole.size(); ++size) {
      SCOPED_TRACE(size);
      support::Reply cut = support::answer(whole.substr(0, size));
      if (stalls) {
        cut.readStatus = io::VI_ERROR_TMO;
      }
      answer(cut);
      memory.GetSequence();
      const bool complete = size == whole.size() && !stalls;
      EXPECT_EQ(exists(kSequenceFile), complete);
      EXPECT_EQ(bench.journal({"put"}), complete ? lines({"put 12 bytes"}) : "");
    }
  }
}

TEST_P(FormattedTransfer, takesWhatTheHeaderPromisesOfALongerAnswer) {
  answer("#15hello world\nand more");
  memory.GetSequence();
  EXPECT_EQ(content(kSequenceFile), "hello");
  answer("#15again\n");
  memory.GetSequence();
  EXPECT_EQ(content(kSequenceFile), "again");
}

using Act = bool (*)(MemoryFiles&);
const Act kActs[] = {[](MemoryFiles& files) {
                       files.GetSequence();
                       return true;
                     },
                     [](MemoryFiles& files) {
                       files.GetSystem();
                       return true;
                     },
                     [](MemoryFiles& files) { return files.SendSystemForHost(); },
                     [](MemoryFiles& files) { return files.GetPresetForHost(); },
                     [](MemoryFiles& files) { return files.SetPresetForHost(); }};

/// Of two equal calls it is the first that fails: nothing comes behind it.
TEST_P(FormattedTransfer, endsAtTheVisaCallThatFails) {
  for (const Act act : kActs) {
    FormattedParts healthy;
    healthy.open(GetParam());
    healthy.answer("#15hello\n");
    EXPECT_TRUE(act(healthy.memory));
    std::istringstream journal(healthy.bench.journal());
    std::string before;
    for (std::string call; std::getline(journal, call);) {
      before += call + '\n';
      if (!call.starts_with("vi") || before.find(call + '\n') + call.size() + 1 != before.size()) {
        continue;
      }
      SCOPED_TRACE(call);
      FormattedParts parts;
      parts.open(GetParam());
      parts.answer("#15hello\n");
      parts.bench.script.fail(call, io::VI_ERROR_CONN_LOST, 1);
      (void)act(parts.memory);
      EXPECT_EQ(parts.bench.journal(), before);
      parts.memory.GetSequence();
      EXPECT_EQ(parts.content(kSequenceFile), "hello") << "the next transfer works";
    }
  }
}

TEST(FormattedTransferOfUsb, whoseLibraryRefusesTheEndModesEnds) {
  FormattedParts parts;
  parts.open(kUsb);
  parts.answer("#15hello\n");
  parts.bench.script.fail("viSetAttribute 2 3FFF00B", io::VI_ERROR_NSUP_ATTR);
  parts.memory.GetSequence();
  EXPECT_FALSE(parts.exists(kSequenceFile));
  EXPECT_FALSE(parts.memory.GetPresetForHost());
  EXPECT_FALSE(parts.memory.SetPresetForHost());
  EXPECT_TRUE(parts.memory.SendSystemForHost()) << "there was a file to send";
  EXPECT_EQ(parts.bench.journal({"viRead", "viWrite 2 :SYST:SET ", "viWrite 2 :MEM:FILE:PRES#"}),
            "");
}

TEST_P(FormattedTransfer, withATimeOutBeyond16BitsKeepsTheFileAndTheSwitchedEnd) {
  form.txtVISATimeout.setText("99999999999");
  answer("#15hello\n");
  EXPECT_EQ(memory.GetPresetForHost(), gpib());
  EXPECT_EQ(content(kPresetFile).substr(0, 5), "hello");
  EXPECT_EQ(bench.journal({kEndInCharacter}), "");
}

}  // namespace
}  // namespace lumodevice::files
