#include "recordings/recorder.hpp"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "recordings/recording.hpp"
#include "tests/platform/small_disk.hpp"
#include "tests/recordings/recorded_bench.hpp"

namespace lumodevice::recordings {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

/// A tap on a simulated bench, and a component on it.
class Recorded : public testing::Test {
 protected:
  posix::TemporaryFolder folder;
  std::filesystem::path file = folder.path() / "bench.rec";
  Host ready = simulatedHost({.virtualTime = true,
                              .driveC = folder.path().string(),
                              .informationBox = [](std::string_view) {}});
  WireTap tap{ready.visa, ready.serialDevices, ready.loop};
  std::vector<std::string> failures;

  std::unique_ptr<Recorder> record(const Bounds& bounds) {
    return std::make_unique<Recorder>(tap, ready.loop, ready.wallClock, file, bounds, "a test",
                                      [this](const std::string& why) { failures.push_back(why); });
  }
  void ask(int times) {
    io::ViSession manager = 0;
    io::ViSession session = 0;
    std::uint32_t count = 0;
    std::array<char, 80> buffer{};
    std::string name;
    io::ViFindList list = 0;
    (void)tap.visa().viOpenDefaultRM(manager);
    ASSERT_EQ(tap.visa().viFindRsrc(manager, "USB?*INSTR", list, count, name), 0);
    ASSERT_EQ(tap.visa().viOpen(manager, name, 0, 0, session), 0);
    for (int i = 0; i < times; ++i) {
      (void)tap.visa().viWrite(session, "*IDN?\n", count);
      (void)tap.visa().viRead(session, buffer, count);
    }
    (void)tap.visa().viClose(manager);
  }
};

TEST_F(Recorded, isEachEventAtOnce) {
  const auto recorder = record({});
  recorder->note("a box");
  ask(1);
  const std::string text = folder.read("bench.rec");
  EXPECT_THAT(text, StartsWith("# LumoDevice wire recording 1\n# begins 2"));
  EXPECT_THAT(text, HasSubstr("\n# by a test\n"));
  EXPECT_THAT(text, HasSubstr("\n0.000000 note \"a box\"\n"));
  EXPECT_THAT(text, HasSubstr(" v send 1 ok 6 \"*IDN?\\n\"\n"));
  EXPECT_THAT(text, HasSubstr(" v recv 1 ok 80 \"Ostbrook Instruments,ZAN63200,SIM00001,"));
  EXPECT_THAT(text, HasSubstr(" v close 1 ok \"USB0::"));
}

TEST_F(Recorded, takesNoMoreThanItMay) {
  const auto recorder = record({.bytes = 2000, .files = 4});
  ask(200);
  for (int number = 0; number < 4; ++number) {
    EXPECT_LE(std::filesystem::file_size(partOf(file, number)), 2000U) << number;
  }
  EXPECT_FALSE(std::filesystem::exists(partOf(file, 4)));
  const Recording recording = readRecording(file);
  EXPECT_EQ(recording.files.size(), 4U);
  EXPECT_TRUE(recording.beginningGone);
  EXPECT_TRUE(std::ranges::is_sorted(recording.entries, {}, &Entry::begin));
}

TEST_F(Recorded, inSeveralFilesIsReadAsOne) {
  auto recorder = record({.bytes = 2000, .files = 1000});
  ask(200);
  recorder.reset();
  const std::size_t several = readRecording(file).entries.size();
  EXPECT_GT(readRecording(file).files.size(), 5U);
  EXPECT_FALSE(readRecording(file).beginningGone);
  // The files of a former recording are no part of a new one.
  recorder = record({});
  ask(200);
  const Recording again = readRecording(file);
  EXPECT_EQ(again.files.size(), 1U);
  EXPECT_EQ(again.entries.size(), several);
}

TEST_F(Recorded, whoseBeginningIsGoneCannotBePlayedBack) {
  const auto recorder = record({.bytes = 2000, .files = 2});
  ask(200);
  EXPECT_THROW((void)replayedHost(file.string(), {.virtualTime = true}), RecordingFault);
}

TEST_F(Recorded, endsOnAFullDiskAndDisturbsNobody) {
  const posix::TemporaryFolder small;
  const posix::SmallDisk disk(small.path(), 64 * 1024);
  if (!disk.mounted()) {
    GTEST_SKIP() << "no file system can be mounted here";
  }
  file = small.path() / "bench.rec";
  const auto recorder = record({});
  disk.fill("rest");
  ask(2000);
  ASSERT_EQ(failures.size(), 1U);
  EXPECT_THAT(failures[0], HasSubstr("bench.rec cannot be written any more"));
  const Recording recording = readRecording(file);
  EXPECT_FALSE(recording.cut);
}

}  // namespace
}  // namespace lumodevice::recordings
