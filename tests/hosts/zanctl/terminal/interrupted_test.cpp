#include <csignal>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/hosts/zanctl/terminal/terminal_session.hpp"
#include "tests/platform/temporary_folder.hpp"

namespace zanctl {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;

constexpr const char* kCtrlC = "\x03";

/// A command that takes its time, and what stands on the terminal meanwhile, one after the other.
struct Long {
  const char* name;
  std::vector<std::string> words;
  std::vector<std::string> shown;
};

void PrintTo(const Long& command, std::ostream* stream) {
  *stream << command.name;
}

class Interrupted : public testing::TestWithParam<Long> {
 protected:
  Interrupted() {
    fs::create_directories(home.path() / "c/temp");
    home.write("c/temp/ZANProg.b", "former");
    home.write("c/temp/ZAN.bmp", "former");
    home.write("given", std::string(5580, 's'));
    home.write("script", "call AutoConnect\nprint begun\nwait 60000\n");
  }

  /// The simulated instrument in real time; it talks at 9600 baud on its serial port.
  TerminalSession start(const std::vector<std::string>& words) {
    std::vector<std::string> all{ZANCTL_PROGRAM, "--simulate", "--drive-c",
                                 path("c"),      "--wait",     "20"};
    for (const std::string& word : words) {
      all.push_back(word == "given" || word == "taken" || word == "script" ? path(word) : word);
    }
    return {all, {{"HOME", home.path().string()}, {"TERM", "xterm"}}};
  }
  [[nodiscard]] std::string path(const std::string& name) const {
    return (home.path() / name).string();
  }

  const lumodevice::posix::TemporaryFolder home;
};

TEST_P(Interrupted, byCtrlCLeavesTheTerminalAndTheFilesAsTheyWere) {
  TerminalSession session = start(GetParam().words);
  for (const std::string& text : GetParam().shown) {
    ASSERT_THAT(session.until(text), HasSubstr(text));
  }
  session.type(kCtrlC);
  EXPECT_EQ(session.end(), 128 + SIGINT);
  EXPECT_TRUE(session.isAsAShellExpects());
  EXPECT_EQ(home.read("c/temp/ZANProg.b"), "former");
  EXPECT_EQ(home.read("c/temp/ZAN.bmp"), "former");
  EXPECT_EQ(std::distance(fs::directory_iterator(path("c/temp")), {}), 2);
  EXPECT_FALSE(fs::exists(path("taken")));
}

INSTANTIATE_TEST_SUITE_P(
    Commands, Interrupted,
    testing::Values(Long{"connect", {"--link", "serial", "connect"}, {"trying COM3"}},
                    Long{"send", {"--link", "serial", "send", ":NONE?"}, {"trying COM3"}},
                    Long{"readings", {"readings", "--count", "0"}, {"CH7-2030"}},
                    Long{"capture",
                         {"--link", "serial", "capture", "taken"},
                         {"at 9600 baud", "capturing the screen"}},
                    Long{"get",
                         {"--link", "serial", "files", "get", "system", "taken"},
                         {"at 9600 baud", "reading the system"}},
                    Long{"put",
                         {"--link", "serial", "files", "send", "system", "given"},
                         {"at 9600 baud", "sending the system"}},
                    Long{"run", {"run", "script"}, {"begun"}}),
    [](const auto& command) { return command.param.name; });

class InterruptedSafely : public Interrupted {};

INSTANTIATE_TEST_SUITE_P(
    Safely, InterruptedSafely,
    testing::Values(Long{"readings", {"readings", "--count", "0", "--off-at-end"}, {"CH7-2030"}},
                    Long{"run", {"run", "--off-at-end", "script"}, {"begun"}}),
    [](const auto& command) { return command.param.name; });

TEST_P(InterruptedSafely, theLoadIsSwitchedOffFirst) {
  TerminalSession session = start(GetParam().words);
  for (const std::string& text : GetParam().shown) {
    ASSERT_THAT(session.until(text), HasSubstr(text));
  }
  session.type(kCtrlC);
  EXPECT_EQ(session.end(), 128 + SIGINT);
  EXPECT_THAT(session.shown(), HasSubstr("zanctl: interrupted; switching the load off\r\n"));
  EXPECT_THAT(session.shown(), HasSubstr("zanctl: the load is switched off\r\n"));
  EXPECT_THAT(session.shown(), Not(HasSubstr("MAY STILL BE ON")));
  EXPECT_TRUE(session.isAsAShellExpects());
}

}  // namespace
}  // namespace zanctl
