#include <gtest/gtest.h>

#include "tests/files/file_parts.hpp"

namespace lumodevice::files {
namespace {

using support::Bench;

/// What an operator can do inside a wait.
struct Act {
  const char* name;
  void (*run)(Bench&);
};

const Act kTransfers[] = {
    {"GetSeqFile", [](Bench& bench) { bench.click("cmdGetSeqFile"); }},
    {"GetSystemFile", [](Bench& bench) { bench.click("cmdGetSystemFile"); }},
    {"SendSystemFile", [](Bench& bench) { bench.click("cmdSendSystemFile"); }},
    {"GetPresetFile", [](Bench& bench) { bench.click("cmdGetPresetFile"); }},
};

const Act kMeanwhile[] = {
    {"GetSeqFile", [](Bench& bench) { bench.click("cmdGetSeqFile"); }},
    {"GetSystemFile", [](Bench& bench) { bench.click("cmdGetSystemFile"); }},
    {"SendSystemFile", [](Bench& bench) { bench.click("cmdSendSystemFile"); }},
    {"GetPresetFile", [](Bench& bench) { bench.click("cmdGetPresetFile"); }},
    {"SetPresetFile", [](Bench& bench) { bench.click("cmdSetPresetFile"); }},
    {"Command", [](Bench& bench) { bench.ask("*IDN?"); }},
    {"ReopenPort", [](Bench& bench) { bench.click("Command2"); }},
    {"OtherPort",
     [](Bench& bench) {
       bench.type("Text1", "9");
       bench.click("Command2");
     }},
    {"VisaLibrary",
     [](Bench& bench) {
       bench.click("optVISA");
       bench.click("cmdAutoConnVISA");
     }},
    {"VisaCom",
     [](Bench& bench) {
       bench.click("optVISA");
       bench.click("optVisa2");
       bench.click("cmdAutoConnVISA");
     }},
};

class MeanwhileInATransfer : public testing::TestWithParam<std::tuple<Act, Act>> {};

INSTANTIATE_TEST_SUITE_P(All, MeanwhileInATransfer,
                         testing::Combine(testing::ValuesIn(kTransfers),
                                          testing::ValuesIn(kMeanwhile)),
                         [](const auto& each) {
                           return std::string(std::get<0>(each.param).name) + "Then" +
                                  std::get<1>(each.param).name;
                         });

/// Nothing guards against it: both run to an end of theirs, and the next transfer works.
TEST_P(MeanwhileInATransfer, bothEnd) {
  const Act& transfer = std::get<0>(GetParam());
  const Act& meanwhile = std::get<1>(GetParam());
  for (int at = 0; at < 2; ++at) {
    SCOPED_TRACE(at);
    Bench bench;
    for (const char* query : {":MEM:FILE:SEQ?", ":SYST:SET?", ":MEM:FILE:PRES?"}) {
      bench.instrument.on(query, "#15hello\n");
    }
    bench.visa.resources = {{"GPIB0::7::INSTR", "GPIB0", &bench.instrument}};
    bench.visaCom.instruments = {{"GPIB0::7::INSTR", &bench.instrument}};
    bench.drive.createFolder("C:\\temp");
    bench.drive.content(kUploadFile) = bytesOf("upload");
    bench.drive.content(kPresetFile) = bytesOf("preset");
    bench.connectSerial();
    bench.zan().ShowConnect();
    bench.stopReceivePoll();
    int passes = 0;
    bool met = false;
    auto watching = bench.loop.observePasses([&] {
      if (passes++ == at) {
        met = true;
        meanwhile.run(bench);
      }
    });
    transfer.run(bench);
    watching.end();
    if (at == 0) {
      EXPECT_TRUE(met);
    }
    EXPECT_EQ(bench.journal({"box"}), "");

    bench.run(std::chrono::seconds(10));
    bench.connectSerial();
    bench.stopReceivePoll();
    EXPECT_TRUE(bench.zan().GetSeqFile());
    ASSERT_TRUE(bench.drive.fileExists(kSequenceFile));
    EXPECT_EQ(bench.drive.content(kSequenceFile), bytesOf("hello"));
  }
}

}  // namespace
}  // namespace lumodevice::files
