#include <csignal>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>

#include "tests/hosts/zanctl/terminal/terminal_session.hpp"
#include "tests/platform/temporary_folder.hpp"

namespace zanctl {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

constexpr const char* kPrompt = "zan> ";

/// A person who types the lines of a host script at a terminal.
class DialogueTest : public testing::Test {
 protected:
  const lumodevice::posix::TemporaryFolder home;
  std::map<std::string, std::string> environment{{"HOME", home.path().string()}, {"TERM", "xterm"}};

  TerminalSession start(std::vector<std::string> options = {}) {
    std::vector<std::string> words{ZANCTL_PROGRAM, "--simulate", "--virtual-time"};
    words.insert(words.end(), options.begin(), options.end());
    words.emplace_back("run");
    return {words, environment};
  }
  /// What stands in front of the next prompt, at which it edits the line.
  static std::string beforePrompt(TerminalSession& session) {
    std::string shown = session.until(kPrompt);
    session.untilItEdits();
    return shown;
  }
  [[nodiscard]] std::string history() const {
    std::ifstream file(home.path() / ".local/state/lumodevice/history");
    return {std::istreambuf_iterator<char>(file), {}};
  }
};

TEST_F(DialogueTest, runsEachLineAndStaysAfterAMistake) {
  TerminalSession session = start();
  EXPECT_THAT(beforePrompt(session), HasSubstr("help"));
  session.type("call AutoConnect\n");
  EXPECT_THAT(beforePrompt(session), HasSubstr("\r\nTrue\r\n"));
  session.type("get NoMember\n");
  EXPECT_THAT(beforePrompt(session), HasSubstr("\r\nunknown member NoMember\r\n"));
  session.type("get isConnected\n");
  EXPECT_THAT(beforePrompt(session), HasSubstr("\r\nTrue\r\n"));
  session.type("help\n");
  EXPECT_THAT(beforePrompt(session), HasSubstr("Instructions, one a line:"));
  session.type("quit\n");
  EXPECT_EQ(session.end(), 0);
  EXPECT_TRUE(session.isAsAShellExpects());
}

TEST_F(DialogueTest, completesInstructionsMembersAndControls) {
  TerminalSession session = start();
  beforePrompt(session);
  session.type("get cmdSendCm\t");
  EXPECT_THAT(session.until("d."), EndsWith("d.")) << "what is drawn is what is new";
  session.type("Caption\n");
  EXPECT_THAT(beforePrompt(session), HasSubstr("\r\nSend Command\r\n"));
  session.type("pri\t\"a b\"\n");
  EXPECT_THAT(beforePrompt(session), HasSubstr("\r\na b\r\n"));
  session.type("call Auto\t\n");
  EXPECT_THAT(beforePrompt(session), HasSubstr("\r\nTrue\r\n"));
  session.type("click cmdSet(2\t");
  EXPECT_THAT(session.until("cmdSet(28)"), HasSubstr("cmdSet(20)  cmdSet(21)"));
}

TEST_F(DialogueTest, endsWithCtrlDAndKeepsItsHistory) {
  {
    TerminalSession session = start();
    beforePrompt(session);
    session.type("print once\n");
    EXPECT_THAT(beforePrompt(session), HasSubstr("\r\nonce\r\n"));
    session.type("\x04");
    EXPECT_EQ(session.end(), 0);
    EXPECT_TRUE(session.isAsAShellExpects());
  }
  EXPECT_THAT(history(), HasSubstr("once"));
  TerminalSession again = start();
  beforePrompt(again);
  again.type("\x1B[A\n");
  EXPECT_THAT(beforePrompt(again), HasSubstr("\r\nonce\r\n"));
}

TEST_F(DialogueTest, givesALineUpWithCtrlC) {
  TerminalSession session = start();
  beforePrompt(session);
  session.type("print never");
  session.until("never");
  session.type("\x03");
  EXPECT_THAT(beforePrompt(session), Not(HasSubstr("\nnever")));
  session.type("print \"still here\"\n");
  EXPECT_THAT(beforePrompt(session), HasSubstr("\r\nstill here\r\n"));
  EXPECT_THAT(history(), Not(HasSubstr("never")));
}

TEST_F(DialogueTest, leavesTheTerminalAsItWasWhenItIsEndedAtThePrompt) {
  TerminalSession session = start();
  beforePrompt(session);
  session.signal(SIGTERM);
  EXPECT_EQ(session.end(), 128 + SIGTERM);
  EXPECT_TRUE(session.isAsAShellExpects());
}

TEST_F(DialogueTest, ofADumbTerminalReadsLinesAsTheyCome) {
  environment["TERM"] = "dumb";
  TerminalSession session = start();
  session.until(kPrompt);
  EXPECT_TRUE(session.isAsAShellExpects());
  session.type("get Nothing\n");
  session.until(kPrompt);
  session.type("print here\n");
  EXPECT_THAT(session.until(kPrompt), HasSubstr("\r\nhere\r\n"));
  session.type("\x04");
  EXPECT_EQ(session.end(), 0);
  EXPECT_THAT(session.shown(), Not(HasSubstr("\x1B")));
}

TEST_F(DialogueTest, isForNoFileAndNoDash) {
  const std::string file = home.write("a.zan", "print 1\nget Nothing\nprint 2\n").string();
  TerminalSession session({ZANCTL_PROGRAM, "--simulate", "run", file}, environment);
  EXPECT_EQ(session.end(), 1);
  EXPECT_THAT(session.shown(), AllOf(HasSubstr("1\r\n"), Not(HasSubstr("2\r\n"))));
}

TEST_F(DialogueTest, anInteractiveBashCompletesACommandLine) {
  const std::string script = home.write("complete", "").string();
  const std::string bash = "/bin/bash";
  if (::access(bash.c_str(), X_OK) != 0) {
    GTEST_SKIP() << "there is no bash";
  }
  environment["PS1"] = "$ ";
  TerminalSession session({bash, "--norc", "--noprofile", "-i"}, environment);
  session.until("$ ");
  const std::string program = ZANCTL_PROGRAM;
  session.type("PATH=" + program.substr(0, program.rfind('/')) +
               ":$PATH; eval \"$(zanctl --completion bash)\"; echo rea''dy\n");
  session.until("ready\r\n");
  session.type("zanctl --simulate --virtual-time controls cmdSendC\t");
  EXPECT_THAT(session.until("cmdSendCmd "), EndsWith("cmdSendCmd "));
  session.type("\n");
  EXPECT_THAT(session.until("CommandButton"), HasSubstr("Caption or text"));
}

}  // namespace
}  // namespace zanctl
