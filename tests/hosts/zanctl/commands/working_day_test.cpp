#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/hosts/zanctl/program_fixture.hpp"

namespace zanctl {
namespace {

using testing::HasSubstr;

class WorkingDay : public ProgramTest {};

TEST_F(WorkingDay, aResourceIsConnectedToAlone) {
  const Ended ended = simulate({"--resource", "COM3", "--trace", "-", "connect"});
  EXPECT_EQ(ended.status, kDone) << ended.errors;
  EXPECT_THAT(ended.output, HasSubstr("Link:      serial (simulated) COM3 at 9600 baud"));
  EXPECT_THAT(ended.errors, testing::Not(HasSubstr("USB0")));
}

TEST_F(WorkingDay, aResourceThatIsNotThereIsSaidWithTheReason) {
  const Ended ended = simulate({"--resource", "SIM00002", "connect"});
  EXPECT_EQ(ended.status, kFailed);
  EXPECT_EQ(ended.output, "");
  EXPECT_EQ(ended.errors, "zanctl: cannot connect to SIM00002: no instrument is there: SIM00002\n");
}

TEST_F(WorkingDay, aFailureIsAnObjectWhereTheOutputIsJson) {
  const std::string sentence = "cannot connect to SIM00002: no instrument is there: SIM00002";
  for (const char* command : {"connect", "errors", "readings"}) {
    const Ended ended = simulate({"--resource", "SIM00002", command, "--json"});
    EXPECT_EQ(ended.status, kFailed);
    EXPECT_EQ(ended.output, "{\"failure\":\"" + sentence + "\",\"kind\":\"nothing-found\"}\n");
    EXPECT_EQ(ended.errors, "zanctl: " + sentence + "\n");
  }
  EXPECT_EQ(
      simulate({"readings", "--json", "--channel", "9"}).output,
      "{\"failure\":\"the instrument has no channel 9 (see zanctl connect)\",\"kind\":null}\n");
}

TEST_F(WorkingDay, theLinkOfAResourceIsNotAnotherOne) {
  EXPECT_EQ(simulate({"--resource", "COM3", "--link", "visa", "connect"}).status,
            kWrongCommandLine);
  EXPECT_EQ(simulate({"--resource", "SIM00001", "--link", "serial", "connect"}).status,
            kWrongCommandLine);
  EXPECT_EQ(simulate({"--resource", "SIM00001", "--link", "visacom", "connect"}).status, kDone);
}

TEST_F(WorkingDay, aScriptsAutoConnectGoesToTheResource) {
  const Ended ended = simulate({"--resource", "COM3", "run"}, "call AutoConnect\nget ConnStyle\n");
  EXPECT_EQ(ended.output, "True\n1\n") << ended.errors;
}

TEST_F(WorkingDay, connectsAndReadingsSendNothingButQueriesAndChannels) {
  for (const char* command : {"connect", "readings"}) {
    const Ended ended = simulate({"--trace", "-", command});
    EXPECT_EQ(ended.status, kDone);
    EXPECT_THAT(ended.errors, testing::Not(HasSubstr("send \":MODE"))) << command;
    EXPECT_THAT(ended.errors, testing::Not(HasSubstr("observing"))) << command;
    EXPECT_THAT(simulate({"--operate", "--trace", "-", command}).errors,
                HasSubstr("send \":MODE CCH\\n\""))
        << command;
  }
}

TEST_F(WorkingDay, whatObservingHoldsBackIsSaid) {
  const Ended ended = simulate({"--observe", "send", ":LOAD ON", ":LOAD?"});
  EXPECT_EQ(ended.output, "0\n");
  EXPECT_EQ(ended.errors, "zanctl: observing, not sent: :LOAD ON\n");
  EXPECT_EQ(simulate({"send", ":LOAD ON", ":LOAD?"}).output, "1\n");
  EXPECT_EQ(simulate({"--observe", "--operate", "connect"}).status, kWrongCommandLine);
}

TEST_F(WorkingDay, aCheckedCommandThatIsNotTakenEndsTheCommand) {
  const Ended ended = simulate({"send", "--check", ":CHAN 2", ":NOSUCH 1", ":CHAN 3"});
  EXPECT_EQ(ended.status, kFailed);
  EXPECT_THAT(ended.errors, testing::MatchesRegex("zanctl: :NOSUCH 1: -?[0-9]+,[^\n]*\n"));
  EXPECT_EQ(simulate({"send", "--check", ":CHAN 2", ":CHAN?"}).status, kDone);
}

TEST_F(WorkingDay, aScriptExpectsAnAnswer) {
  EXPECT_EQ(printed("call AutoConnect\ncall SendCmd :CHAN?\nexpect 1\n"), "True\n");
  const Ended ended = simulate({"run"}, "call AutoConnect\ncall SendCmd :CHAN?\nexpect 2\n");
  EXPECT_EQ(ended.status, kFailed);
  EXPECT_EQ(ended.errors, "-:3: expected 2, the answer is 1\n");
}

TEST_F(WorkingDay, readingsEndAtALimitAndSwitchTheLoadOff) {
  const Ended ended = simulate({"readings", "--channel", "3", "--csv", "--stop-after", "3s",
                                "--then", "off", "--trace", "-"});
  EXPECT_EQ(ended.status, kDone);
  EXPECT_THAT(ended.errors, HasSubstr("zanctl: readings end: 3 s are over (limit 3 s)\n"));
  EXPECT_THAT(ended.errors, HasSubstr("send \":LOAD OFF\\n\""));
  EXPECT_THAT(ended.errors, HasSubstr("zanctl: the load is switched off\n"));
}

TEST_F(WorkingDay, aMistakeInAScriptSwitchesTheLoadOff) {
  const Ended ended = simulate({"--trace", "-", "run", "--off-at-end"},
                               "call AutoConnect\ncall SendCmd \":LOAD ON\"\nnonsense\n");
  EXPECT_EQ(ended.status, kFailed);
  EXPECT_GT(ended.errors.rfind(":LOAD OFF"), ended.errors.rfind(":LOAD ON"));
}

TEST_F(WorkingDay, limitsAreReadAsTheyAreWritten) {
  EXPECT_EQ(simulate({"readings", "--stop-below", "low"}).status, kWrongCommandLine);
  EXPECT_EQ(simulate({"readings", "--then", "dance"}).status, kWrongCommandLine);
  EXPECT_EQ(simulate({"--observe", "readings", "--off-at-end"}).status, kWrongCommandLine);
}

TEST_F(WorkingDay, theWaitUnitIsThatOfThePanel) {
  EXPECT_EQ(printed("get Text5.Text\n", {"--wait", "50"}), "50\n");
  EXPECT_EQ(simulate({"--wait", "0", "connect"}).status, kWrongCommandLine);
}

}  // namespace
}  // namespace zanctl
