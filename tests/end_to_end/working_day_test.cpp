#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "tests/end_to_end/socket_bench.hpp"
#include "tests/support/child_program.hpp"

namespace lumodevice::end_to_end {
namespace {

using support::ChildProgram;
using testing::HasSubstr;
using testing::StartsWith;

constexpr int kFailed = 1;
constexpr int kLoadMayBeOn = 3;
constexpr int kTerminated = 128 + SIGTERM;

/// zanctl at a load on a socket that comes and goes.
class WorkingDay : public testing::Test {
 protected:
  [[nodiscard]] std::vector<std::string> words(std::vector<std::string> command) const {
    command.insert(command.begin(), {"--resource", load.resource()});
    return command;
  }
  /// Readings of the first channel until something ends them.
  [[nodiscard]] std::vector<std::string> watching(const std::vector<std::string>& options) const {
    std::vector<std::string> command{"readings", "--count", "0",       "--channel",
                                     "1",        "--csv",   "--every", "100"};
    command.insert(command.end(), options.begin(), options.end());
    return words(command);
  }
  /// The heading, and the first of them.
  static void awaitReadings(ChildProgram& program) {
    (void)program.line();
    EXPECT_THAT(program.line(), HasSubstr(",CH1-2021L,"));
  }

  /// The next line on standard error that begins so.
  static std::string errorLine(ChildProgram& program, const std::string& beginning) {
    std::string line = program.errorLine();
    while (!line.empty() && !line.starts_with(beginning)) {
      line = program.errorLine();
    }
    return line;
  }

  bool isOn(std::size_t channel) {
    bool on = false;
    load.with([&](zansim::Instrument& instrument) {
      on = instrument.mainframe.channel(channel, {}).isOn();
    });
    return on;
  }
  void switchOn(std::size_t channel) {
    load.with([&](zansim::Instrument& instrument) {
      (void)instrument.mainframe.channel(channel, {}).switchOn();
    });
  }

  LoadOnSocket load;
};

TEST_F(WorkingDay, readingsOfAnInstrumentThatGoesEndWithOneLine) {
  ChildProgram program(ZANCTL_PROGRAM, watching({}));
  awaitReadings(program);
  load.vanish();
  EXPECT_EQ(program.end(), kFailed);
  EXPECT_THAT(program.errorRest(),
              testing::MatchesRegex("zanctl: link lost: the instrument has gone[^\n]*\n"));
}

TEST_F(WorkingDay, readingsWaitForAnInstrumentThatComesBackAndMarkTheGap) {
  ChildProgram program(ZANCTL_PROGRAM, watching({"--reconnect"}));
  awaitReadings(program);
  load.vanish();
  EXPECT_THAT(errorLine(program, "zanctl:"), StartsWith("zanctl: link lost: the instrument has"));
  load.comeBack();
  EXPECT_THAT(errorLine(program, "zanctl:"), StartsWith("zanctl: the instrument is back after"));
  std::string line = program.line();
  while (line.find("link lost") == std::string::npos && !line.empty()) {
    line = program.line();
  }
  EXPECT_THAT(line, HasSubstr(",link lost,,,,"));
  EXPECT_THAT(program.line(), HasSubstr(",link regained,,,,"));
  EXPECT_THAT(program.line(), HasSubstr(",CH1-2021L,"));
  (void)program.end(SIGTERM);
}

TEST_F(WorkingDay, aConnectToAnInstrumentThatGoesSaysSo) {
  load.fault("vanish=6");
  ChildProgram program(ZANCTL_PROGRAM, words({"connect"}));
  EXPECT_EQ(program.end(), kFailed);
  EXPECT_EQ(program.rest(), "");
  EXPECT_THAT(program.errorRest(), HasSubstr("the instrument has gone"));
}

TEST_F(WorkingDay, everyReasonHasItsSentence) {
  const std::vector<std::pair<std::string, std::string>> reasons{
      {"TCPIP0::127.0.0.1::1::SOCKET", "the host refused the connection"},
      {"TCPIP0::no-such-host.invalid::5025::SOCKET", "no host of that name is known"}};
  for (const auto& [address, reason] : reasons) {
    ChildProgram program(ZANCTL_PROGRAM, {"--resource", address, "connect"});
    EXPECT_EQ(program.end(), kFailed);
    EXPECT_THAT(program.errorRest(), HasSubstr(reason)) << address;
  }
}

TEST_F(WorkingDay, aProgramThatIsEndedSwitchesTheLoadOff) {
  switchOn(1);
  ChildProgram program(ZANCTL_PROGRAM, watching({"--off-at-end"}));
  awaitReadings(program);
  EXPECT_EQ(program.end(SIGTERM), kTerminated);
  EXPECT_FALSE(isOn(1));
}

TEST_F(WorkingDay, aLoadThatWasLostAndIsBackIsSwitchedOff) {
  switchOn(1);
  ChildProgram program(ZANCTL_PROGRAM, watching({"--off-at-end"}));
  awaitReadings(program);
  load.vanish();
  EXPECT_THAT(errorLine(program, "zanctl: link lost"), HasSubstr("gone"));
  load.comeBack();
  EXPECT_EQ(errorLine(program, "zanctl: the load"), "zanctl: the load is switched off");
  EXPECT_EQ(program.end(), kFailed);
  EXPECT_FALSE(isOn(1));
}

TEST_F(WorkingDay, aLoadThatStaysAwayIsSaidLoudly) {
  ChildProgram program(ZANCTL_PROGRAM, watching({"--off-at-end"}));
  awaitReadings(program);
  load.vanish();
  EXPECT_THAT(errorLine(program, "zanctl: link lost"), HasSubstr("gone"));
  EXPECT_EQ(program.end(SIGINT), kLoadMayBeOn);
  EXPECT_THAT(program.errorRest(), HasSubstr("THE LOAD MAY STILL BE ON: CH1"));
}

}  // namespace
}  // namespace lumodevice::end_to_end
