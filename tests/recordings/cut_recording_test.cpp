#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "recordings/recording.hpp"
#include "tests/recordings/recorded_bench.hpp"

namespace lumodevice::recordings {
namespace {

using testing::HasSubstr;

TEST(CutRecording, isReadableUpToTheCutWhereverThatIs) {
  RecordedBench bench;
  {
    ZANCtrl load(bench.simulated());
    ASSERT_TRUE(load.AutoConnect());
  }
  // The search and the first exchanges have every kind of line that there is.
  constexpr std::size_t kEnough = 1500;
  std::string whole = bench.folder.read("bench.rec");
  whole.resize(whole.find('\n', kEnough) + 1);
  const std::size_t entries = readRecording(bench.folder.write("bench.rec", whole)).entries.size();
  ASSERT_GT(entries, 10U);
  std::size_t lastCount = 0;
  for (std::size_t length = 0; length <= whole.size(); ++length) {
    const auto file = bench.folder.write("cut.rec", whole.substr(0, length));
    const Recording recording = readRecording(file);
    const bool atLineEnd = length == 0 || whole[length - 1] == '\n';
    ASSERT_EQ(recording.cut, !atLineEnd) << length;
    ASSERT_GE(recording.entries.size(), lastCount) << length;
    ASSERT_LE(recording.entries.size(), lastCount + 1) << length;
    lastCount = recording.entries.size();
  }
  EXPECT_EQ(lastCount, entries);
}

TEST(CutRecording, playsBackUpToTheCut) {
  RecordedBench bench;
  {
    ZANCtrl load(bench.simulated());
    ASSERT_TRUE(load.AutoConnect());
    load.SendCmd(":FETC:VOLT?");
  }
  const std::string whole = bench.folder.read("bench.rec");
  bench.folder.write("bench.rec", whole.substr(0, whole.rfind("FETC:VOLT") + 3));
  ZANCtrl load(bench.replayed());
  EXPECT_TRUE(load.AutoConnect());
  EXPECT_TRUE(bench.mistakes.empty());
  load.SendCmd(":FETC:VOLT?");
  ASSERT_EQ(bench.mistakes.size(), 1U);
  EXPECT_THAT(bench.mistakes[0], HasSubstr("the recording ends here, came \":FETC:VOLT?\\n\""));
}

TEST(BadRecording, isRefusedWithItsPlace) {
  const posix::TemporaryFolder folder;
  const auto refusal = [&](std::string_view content) {
    try {
      (void)readRecording(folder.write("bad.rec", content));
    } catch (const RecordingFault& fault) {
      return std::string(fault.what());
    }
    return std::string();
  };
  EXPECT_THAT(refusal("time,channel\n"), HasSubstr("bad.rec:1: this is no recording"));
  EXPECT_THAT(refusal(std::string(kFirstLine) + "\n\n1.000000 +0.000000 v dance ok\n"),
              HasSubstr("bad.rec:3: \"dance\" is nothing that happens on a link"));
  EXPECT_THROW((void)readRecording(folder.path() / "none.rec"), RecordingFault);
  EXPECT_THROW((void)readRecording(folder.path()), RecordingFault);
}

}  // namespace
}  // namespace lumodevice::recordings
