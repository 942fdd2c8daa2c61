#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "recordings/replayed_links.hpp"
#include "tests/recordings/recorded_bench.hpp"

namespace lumodevice::recordings {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using Over = RecordedBench::Over;

class PlayedBack : public testing::TestWithParam<Over> {};

TEST_P(PlayedBack, aBenchAnswersAsItDidAndWhenItDid) {
  RecordedBench bench;
  const auto before =
      RecordedBench::work(bench.simulated({"20-400,seed=3", ":FETC:CURR?=900"}), GetParam());
  const auto after = RecordedBench::work(bench.replayed(), GetParam());
  EXPECT_THAT(before[0], EndsWith(" connected"));
  EXPECT_EQ(after, before);
  EXPECT_THAT(bench.mistakes, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Links, PlayedBack,
                         testing::Values(Over::Visa, Over::VisaCom, Over::Serial));

TEST(PlayedBackInRealTime, aBenchAnswersAsLateAsItDid) {
  RecordedBench bench;
  {
    ZANCtrl load(bench.simulated({":FETC:VOLT?=300"}));
    ASSERT_TRUE(load.AutoConnect());
    load.SendCmd(":FETC:VOLT?");
  }
  const auto begin = std::chrono::steady_clock::now();
  const Host host = replayedHost(bench.file, {.mistaken = [](const std::string&) {}});
  ZANCtrl load(host);
  ASSERT_TRUE(load.AutoConnect());
  load.SendCmd(":FETC:VOLT?");
  EXPECT_NE(load.ResultStr(), "");
  EXPECT_GE(std::chrono::steady_clock::now() - begin, 300ms);
}

/// A recording of a serial port in a few lines.
class Script : public testing::Test {
 protected:
  posix::TemporaryFolder folder;
  toolkit::VirtualLoop loop;
  struct LoopTime : io::Clock {
    explicit LoopTime(toolkit::EventLoop& inner) : loop(inner) {}
    [[nodiscard]] Duration now() const override { return loop.now(); }
    void wait(Duration span) override { loop.idle(span); }
    toolkit::EventLoop& loop;
  } clock{loop};
  std::vector<std::string> mistakes;

  /// Each command with its answer, 10 ms later; "" for none.
  std::unique_ptr<ReplayedBench> bench(
      const std::vector<std::pair<std::string, std::string>>& exchanges) {
    std::string text = std::string(kFirstLine) + "\n";
    text += lineOf({.act = WireAct::Open, .link = 1, .name = "COM3", .serial = true}, 0ns);
    auto at = 0ms;
    for (const auto& [command, answer] : exchanges) {
      at += 100ms;
      text += lineOf({.act = WireAct::Sent,
                      .link = 1,
                      .bytes = command,
                      .serial = true,
                      .begin = at,
                      .end = at},
                     0ns);
      if (!answer.empty()) {
        text += lineOf({.act = WireAct::Received,
                        .link = 1,
                        .bytes = answer,
                        .serial = true,
                        .begin = at + 10ms,
                        .end = at + 10ms},
                       0ns);
      }
    }
    return std::make_unique<ReplayedBench>(
        readRecording(folder.write("script.rec", text)), clock,
        [this](const std::string& mistake) { mistakes.push_back(mistake); });
  }
  std::string ask(io::SerialLine& line, const std::string& command) {
    line.write(command);
    loop.idle(20ms);
    std::string answer;
    line.receive(answer);
    return answer;
  }
};

TEST_F(Script, isFollowedInAnotherOrder) {
  const auto recorded = bench({{"A?\n", "a1\n"}, {"B\n", ""}, {"C?\n", "c\n"}, {"A?\n", "a2\n"}});
  ReplayedSerialDevices devices(*recorded);
  const auto line = devices.open(3, {});
  EXPECT_EQ(ask(*line, "C?\n"), "c\n");
  EXPECT_EQ(ask(*line, "A?\r"), "a2\n");
  EXPECT_EQ(ask(*line, "B\n"), "");
  EXPECT_EQ(ask(*line, "A?\n"), "a1\n");
  EXPECT_THAT(mistakes, IsEmpty());
}

TEST_F(Script, answersARepeatedQueryAsLastTimeButOnlyWhileItGoesOn) {
  const auto recorded = bench({{"A?\n", "a\n"}, {"B?\n", "b\n"}});
  ReplayedSerialDevices devices(*recorded);
  const auto line = devices.open(3, {});
  for (int time = 0; time <= ScriptOfAnswers::kMostRepeats; ++time) {
    EXPECT_EQ(ask(*line, "A?\n"), "a\n");
  }
  EXPECT_THAT(mistakes, IsEmpty());
  EXPECT_EQ(ask(*line, "A?\n"), "");
  EXPECT_EQ(mistakes.size(), 1U);
  EXPECT_EQ(ask(*line, "B?\n"), "b\n");
  // What was not measured is not told.
  EXPECT_EQ(ask(*line, "B?\n"), "");
  EXPECT_THAT(mistakes.back(), EndsWith("expected nothing more, the recording ends here, came "
                                        "\"B?\\n\""));
}

TEST_F(Script, saysWhereAHostAskedSomethingElse) {
  const auto recorded = bench({{"A?\n", "a\n"}, {"B?\n", "b\n"}});
  ReplayedSerialDevices devices(*recorded);
  const auto line = devices.open(3, {});
  (void)ask(*line, "A?\n");
  EXPECT_EQ(ask(*line, "*RST\n"), "");
  EXPECT_THAT(mistakes, ElementsAre((folder.path() / "script.rec").string() +
                                    ":5: expected \"B?\\n\", came \"*RST\\n\""));
  EXPECT_EQ(recorded->complaints(), 1U);
}

TEST_F(Script, beginsAgainWhenTheLinkIsOpenedOnceMore) {
  const auto recorded = bench({{"A?\n", "a\n"}});
  ReplayedSerialDevices devices(*recorded);
  EXPECT_EQ(ask(*devices.open(3, {}), "A?\n"), "a\n");
  EXPECT_EQ(ask(*devices.open(3, {}), "A?\n"), "a\n");
  EXPECT_THROW((void)devices.open(4, {}), io::SerialFault);
}

TEST_F(Script, hasNoAnswerBeforeItCame) {
  const auto recorded = bench({{"A?\n", "a\n"}});
  ReplayedSerialDevices devices(*recorded);
  const auto line = devices.open(3, {});
  line->write("A?\n");
  std::string queue;
  loop.idle(9ms);
  line->receive(queue);
  EXPECT_EQ(queue, "");
  loop.idle(1ms);
  line->receive(queue);
  EXPECT_EQ(queue, "a\n");
}

TEST(PlayedBackFailures, areThoseThatThereWere) {
  RecordedBench bench;
  const auto work = [](const Host& host, io::Visa& visa) {
    std::vector<std::string> told;
    io::ViSession manager = 0;
    io::ViSession session = 0;
    std::uint32_t count = 0;
    std::array<char, 80> buffer{};
    std::string name;
    io::ViFindList list = 0;
    told.push_back(std::to_string(visa.viOpenDefaultRM(manager)));
    told.push_back(std::to_string(visa.viFindRsrc(manager, "USB?*INSTR", list, count, name)));
    told.push_back(std::to_string(visa.viOpen(manager, "USB9::0x1::0x2::X::INSTR", 0, 0, session)));
    told.push_back(std::to_string(visa.viOpen(manager, name, 0, 0, session)));
    told.push_back(std::to_string(visa.viRead(session, buffer, count)));
    told.push_back(std::to_string(host.loop.now().count()));
    told.push_back(std::to_string(visa.viClose(manager)));
    return told;
  };
  std::vector<std::string> before;
  {
    const Host host = bench.simulated();
    before = work(host, host.visa);
  }
  const Host host = bench.replayed();
  EXPECT_EQ(work(host, host.visa), before);
}

TEST(RecordedHost, refusesAVisaComOfAnotherKind) {
  struct Other : io::VisaCom {
    [[nodiscard]] std::shared_ptr<io::ResourceManager> createResourceManager() override {
      return nullptr;
    }
    [[nodiscard]] std::shared_ptr<io::FormattedIO488> createFormattedIO488() override {
      return nullptr;
    }
  } other;
  const posix::TemporaryFolder folder;
  const Host ready = simulatedHost({.virtualTime = true, .driveC = folder.path().string()});
  const Host host{.loop = ready.loop,
                  .visa = ready.visa,
                  .visaCom = other,
                  .serialDevices = ready.serialDevices,
                  .drive = ready.drive,
                  .wallClock = ready.wallClock,
                  .informationBox = nullptr};
  EXPECT_THROW((void)recorded(host, (folder.path() / "a.rec").string()), std::invalid_argument);
}

}  // namespace
}  // namespace lumodevice::recordings
