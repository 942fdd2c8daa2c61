#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "hosts/zanctl/program.hpp"
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
    const Environment environment = [this](const char* name) {
      const auto found = variables.find(name);
      return found == variables.end() ? std::nullopt : std::optional(found->second);
    };
    const ExitStatus status = runProgram(words, environment, {lines, output, errors});
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

  /// What is wrong with a script, without "-:1: ".
  std::string mistake(const std::string& line) {
    const Ended ended = simulate({"run"}, line);
    EXPECT_EQ(ended.status, kFailed) << line;
    EXPECT_TRUE(ended.errors.starts_with("-:1: ")) << ended.errors;
    EXPECT_EQ(ended.errors.find('\n'), ended.errors.size() - 1) << ended.errors;
    return ended.errors.substr(5, ended.errors.size() - 6);
  }
};

}  // namespace zanctl
