#pragma once

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <unistd.h>
#include <vector>

#include "hosts/zanctl/program.hpp"
#include "tests/hosts/zanctl/environment.hpp"
#include "tests/hosts/zanctl/output/text_output.hpp"

namespace zanctl {

/// The program as its user sees it, in this process.
class ProgramTest : public testing::Test {
 protected:
  struct Ended {
    ExitStatus status;
    std::string output;
    std::string errors;
  };

  std::map<std::string, std::string> variables;
  bool outputGoesToATerminal = false;
  bool errorsGoToATerminal = false;

  Ended run(const std::vector<std::string>& words, const std::string& input = "") {
    std::istringstream lines(input);
    TextOutput output;
    TextOutput errors;
    if (outputGoesToATerminal) {
      output.pretendToBeATerminal();
    }
    if (errorsGoToATerminal) {
      errors.pretendToBeATerminal();
    }
    const ExitStatus status = runProgram(words, environmentOf(variables), {lines, output, errors});
    return {status, output.text(), errors.text()};
  }

  /// The simulated instrument in virtual time.
  Ended simulate(std::vector<std::string> words, const std::string& input = "") {
    words.insert(words.begin(), {"--simulate", "--virtual-time"});
    return run(words, input);
  }

  /// What a script prints that runs to its end.
  std::string printed(const std::string& script, std::vector<std::string> options = {}) {
    options.emplace_back("run");
    const Ended ended = simulate(options, script);
    EXPECT_EQ(ended.status, kDone);
    EXPECT_EQ(ended.errors, "");
    return ended.output;
  }

  /// What a script that runs to its end is told on standard error.
  std::string remarked(const std::string& script) {
    const Ended ended = simulate({"run"}, script);
    EXPECT_EQ(ended.status, kDone);
    return ended.errors;
  }

  /// What is wrong with a script, without "-:1: ".
  std::string mistake(const std::string& line) {
    const Ended ended = simulate({"run"}, line);
    EXPECT_EQ(ended.status, kFailed) << line;
    EXPECT_TRUE(ended.errors.starts_with("-:1: ")) << ended.errors;
    EXPECT_EQ(ended.errors.find('\n'), ended.errors.size() - 1) << ended.errors;
    return ended.errors.substr(5, ended.errors.size() - 6);
  }
};

/// The program with a folder of the test's own.
class ProgramInFolderTest : public ProgramTest {
 protected:
  const std::filesystem::path folder =
      std::filesystem::path(testing::TempDir()) / ("zanctl." + std::to_string(::getpid()));
  ProgramInFolderTest() { std::filesystem::create_directory(folder); }
  ~ProgramInFolderTest() override { std::filesystem::remove_all(folder); }

  [[nodiscard]] std::string file(const std::string& name) const { return (folder / name).string(); }
  /// Of a file in the folder, or anywhere when it is named with its whole path.
  [[nodiscard]] std::string content(const std::string& name) const {
    std::ifstream stream(folder / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }
};

}  // namespace zanctl
