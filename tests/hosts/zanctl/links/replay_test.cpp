#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>

#include "tests/hosts/zanctl/program_fixture.hpp"

namespace zanctl {
namespace {

using testing::HasSubstr;
using testing::MatchesRegex;

class Replay : public ProgramInFolderTest {
 protected:
  Ended replay(const std::string& recording, std::vector<std::string> words) {
    words.insert(words.begin(), {"--replay", recording, "--virtual-time"});
    return run(words);
  }
};

TEST_F(Replay, ofADayGivesTheRowsOfTheDay) {
  // The whole day where the month is asked for, too.
  const bool whole = std::getenv("LUMODEVICE_MONTH_DAYS") != nullptr;
  // A serial port is looked at many times a second, so that a day of it takes its time.
  for (const auto& [link, rounds] :
       {std::pair{"visa", whole ? "288" : "36"}, std::pair{"serial", "12"}}) {
    const std::vector<std::string> words = {"--link", link,      "readings", "--csv",   "--channel",
                                            "3",      "--every", "300000",   "--count", rounds};
    std::vector<std::string> recording = words;
    recording.insert(recording.begin(), {"--record", file("day.rec")});
    const Ended day = simulate(recording);
    ASSERT_EQ(day.status, kDone) << day.errors;
    const Ended again = replay(file("day.rec"), words);
    EXPECT_EQ(again.output, day.output) << link;
    EXPECT_EQ(again.errors, day.errors) << link;
    EXPECT_EQ(again.status, kDone);
  }
}

TEST_F(Replay, saysWhatTheRecordingHasNotAndFails) {
  ASSERT_EQ(simulate({"--record", file("a.rec"), "send", "*IDN?"}).status, kDone);
  const Ended ended = replay(file("a.rec"), {"send", ":NONE?"});
  EXPECT_EQ(ended.status, kFailed);
  EXPECT_THAT(ended.errors, HasSubstr("a.rec:"));
  EXPECT_THAT(ended.errors, HasSubstr("expected \"*IDN?\\n\", came \":NONE?\\n\""));
}

TEST_F(Replay, ofWhatIsNoRecordingIsRefused) {
  EXPECT_EQ(replay(file("none.rec"), {"connect"}).status, kUnusable);
  EXPECT_EQ(run({"--simulate", "--replay", file("none.rec"), "connect"}).status, kWrongCommandLine);
}

TEST_F(Replay, ofAnotherLinkSaysWhichThereIs) {
  ASSERT_EQ(simulate({"--record", file("a.rec"), "connect"}).status, kDone);
  const Ended ended = replay(file("a.rec"), {"--link", "serial", "connect"});
  EXPECT_EQ(ended.status, kFailed);
  EXPECT_THAT(ended.errors, HasSubstr("a.rec has USB0::"));
}

TEST_F(Replay, recordsNothingWhereTheFileCannotBeMade) {
  EXPECT_EQ(simulate({"--record", file("none/a.rec"), "connect"}).status, kUnusable);
}

TEST_F(Replay, ofARecordingIsARecordingOfTheSame) {
  ASSERT_EQ(simulate({"--record", file("a.rec"), "readings"}).status, kDone);
  ASSERT_EQ(
      run({"--replay", file("a.rec"), "--virtual-time", "--record", file("b.rec"), "readings"})
          .status,
      kDone);
  const auto withoutHead = [](const std::string& text) {
    return text.substr(text.find("\n0.") + 1);
  };
  EXPECT_EQ(withoutHead(content("b.rec")), withoutHead(content("a.rec")));
}

TEST_F(Replay, isSummedUp) {
  ASSERT_EQ(simulate({"--record", file("a.rec"), "readings", "--channel", "3"}).status, kDone);
  const Ended ended = run({"trace", file("a.rec"), "--svg", file("a.svg")});
  EXPECT_EQ(ended.status, kDone) << ended.errors;
  EXPECT_THAT(ended.output, HasSubstr("Begins:    2"));
  EXPECT_THAT(ended.output, HasSubstr("of them queries;"));
  EXPECT_THAT(ended.output, HasSubstr("without an answer: 0"));
  EXPECT_THAT(ended.output, HasSubstr("errors: 0"));
  EXPECT_THAT(content("a.svg"), HasSubstr("<svg "));
  EXPECT_EQ(run({"trace", file("none.rec")}).status, kUnusable);
}

/// Benches that went wrong, as they were recorded; each has beside it what was printed then.
class KeptRecording : public Replay, public testing::WithParamInterface<const char*> {};

/// Without the times, which are those of the zone that it is played back in.
std::string withoutTimes(const std::string& rows) {
  std::istringstream stream(rows);
  std::string text;
  for (std::string line; std::getline(stream, line);) {
    text += line.substr(line.find(',')) + '\n';
  }
  return text;
}

TEST_P(KeptRecording, givesTheSameRowsAsThen) {
  const std::string name = std::string(ZANCTL_RECORDINGS) + '/' + GetParam();
  const Ended ended =
      replay(name + ".rec", {"readings", "--csv", "--channel", "3", "--count", "20", "--every",
                             "500", "--reconnect", "--stop-after", "60s"});
  EXPECT_EQ(withoutTimes(ended.output), withoutTimes(content(name + ".csv"))) << ended.errors;
  EXPECT_THAT(ended.errors, Not(HasSubstr("expected"))) << ended.errors;
}

INSTANTIATE_TEST_SUITE_P(Faults, KeptRecording,
                         testing::Values("late-answers", "garbled-answers", "lost-link",
                                         "doubled-answers"));

}  // namespace
}  // namespace zanctl
