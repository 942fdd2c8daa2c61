#include <algorithm>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "tests/end_to_end/socket_bench.hpp"
#include "tests/platform/temporary_folder.hpp"
#include "tests/support/child_program.hpp"

namespace lumodevice::end_to_end {
namespace {

namespace fs = std::filesystem;
using support::ChildProgram;
using testing::HasSubstr;

struct Command {
  const char* name;
  std::vector<std::string> words;
  std::string script;
};

void PrintTo(const Command& command, std::ostream* stream) {
  *stream << command.name;
}

/// Commands whose instrument is unplugged.
class Unplugged : public testing::TestWithParam<Command> {
 protected:
  Unplugged() {
    fs::create_directories(folder.path() / "temp");
    folder.write("temp/ZANProg.b", "former");
    folder.write("temp/ZAN.bmp", "former");
    folder.write("given", std::string(5580, 's'));
  }

  struct Ended {
    int status;
    std::vector<std::string> errors;
  };
  Ended run(const Command& command) {
    std::vector<std::string> words{
        "--drive-c", folder.path().string(), "--resource", load.resource(), "--wait", "20"};
    for (const std::string& word : command.words) {
      words.push_back(word == "given" || word == "taken" ? (folder.path() / word).string() : word);
    }
    ChildProgram program(ZANCTL_PROGRAM, words, command.script);
    (void)program.rest();
    Ended ended{0, {}};
    std::string text = program.errorRest();
    for (std::size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n')) {
      ended.errors.push_back(text.substr(0, end));
      text.erase(0, end + 1);
    }
    ended.status = program.end();
    return ended;
  }

  const posix::TemporaryFolder folder;
  LoadOnSocket load;
};

/// Behind the first answer, the second and so on, until the command has all that it needs.
TEST_P(Unplugged, endWithOneLineAndLeaveTheFilesThatWere) {
  constexpr int kMostAnswers = 80;
  int answers = 0;
  for (; answers < kMostAnswers; ++answers) {
    SCOPED_TRACE("gone behind answer " + std::to_string(answers));
    load.comeBack();
    load.fault("vanish=" + std::to_string(answers));
    const Ended ended = run(GetParam());
    if (ended.status == 0) {
      break;
    }
    EXPECT_EQ(ended.status, 1);
    // The box of the component names its query; why the command ends is a line.
    const auto boxes = std::ranges::count_if(
        ended.errors, [](const std::string& line) { return line.starts_with("[information] "); });
    ASSERT_EQ(ended.errors.size() - static_cast<std::size_t>(boxes), 1U)
        << testing::PrintToString(ended.errors);
    EXPECT_EQ(folder.read("temp/ZANProg.b"), "former");
    EXPECT_EQ(folder.read("temp/ZAN.bmp"), "former");
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path() / "temp"), {}), 2);
    EXPECT_FALSE(fs::exists(folder.path() / "taken"));
  }
  EXPECT_GT(answers, 1);
  EXPECT_LT(answers, kMostAnswers);
}

INSTANTIATE_TEST_SUITE_P(
    Commands, Unplugged,
    testing::Values(Command{"connect", {"connect"}, ""}, Command{"errors", {"errors"}, ""},
                    Command{"send", {"send", ":CHAN?", "*IDN?", ":LOAD?"}, ""},
                    Command{"check", {"send", "--check", ":CHAN 2", ":CHAN?"}, ""},
                    Command{"readings", {"readings", "--channel", "2"}, ""},
                    Command{"capture", {"capture", "taken"}, ""},
                    Command{"get", {"files", "get", "system", "taken"}, ""},
                    Command{"put", {"files", "send", "system", "given"}, ""},
                    Command{"run", {"run"}, "call AutoConnect\ncall SendCmd :CHAN?\nexpect 1\n"}),
    [](const auto& command) { return command.param.name; });

/// Why a connect to an address fails that leads somewhere else than to such an instrument.
TEST(WrongDevice, isToldApartFromOneThatIsSilentOrBusy) {
  for (const auto& [fault, sentence] :
       {std::pair("identity=Other Works,ABC-1,0,1.0", "another instrument answered"),
        std::pair("silent", "the instrument did not answer in time")}) {
    LoadOnSocket load;
    load.fault(fault);
    ChildProgram program(ZANCTL_PROGRAM,
                         {"--resource", load.resource(), "--wait", "20", "connect"});
    EXPECT_EQ(program.rest(), "");
    EXPECT_THAT(program.errorRest(), testing::MatchesRegex("zanctl: cannot connect to [^\n]*" +
                                                           std::string(sentence) + "[^\n]*\n"));
    EXPECT_EQ(program.end(), 1);
  }
}

TEST(ClosedReader, endsReadingsQuietly) {
  LoadOnSocket load;
  ChildProgram program("/bin/sh",
                       {"-c", std::string(ZANCTL_PROGRAM) + " --resource " + load.resource() +
                                  " readings --count 0 --csv --every 20 | head -n 3; "
                                  "echo done"});
  EXPECT_THAT(program.line(), HasSubstr("time,channel"));
  (void)program.line();
  (void)program.line();
  EXPECT_EQ(program.line(), "done");
  EXPECT_EQ(program.errorRest(), "");
}

}  // namespace
}  // namespace lumodevice::end_to_end
