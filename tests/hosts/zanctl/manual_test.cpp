#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

#include "hosts/zanctl/commands.hpp"
#include "hosts/zanctl/script.hpp"

namespace zanctl {
namespace {

/// A manual without the escapes of its format, so that names stand in it as they are typed.
std::string manual(const char* path) {
  std::ifstream file(path);
  std::string text{std::istreambuf_iterator<char>(file), {}};
  for (std::size_t at = text.find("\\-"); at != std::string::npos; at = text.find("\\-", at)) {
    text.erase(at, 1);
  }
  return text;
}

class Manual : public testing::TestWithParam<const char*> {};

TEST_P(Manual, namesEveryCommandOptionAndInstruction) {
  const std::string text = manual(GetParam());
  const auto named = [&](const std::string& name) {
    EXPECT_NE(text.find(name), std::string::npos) << name << " is not in " << GetParam();
  };
  for (const Command& command : commands()) {
    named(std::string(command.name));
  }
  for (const Instruction& instruction : instructions()) {
    named(std::string(instruction.name) + " ");
  }
  for (const char* option :
       {"--simulate", "--visa-library", "--port", "--drive-c", "--link", "--virtual-time",
        "--trace", "--channel", "--count", "--every", "--csv"}) {
    named(option);
  }
}

INSTANTIATE_TEST_SUITE_P(Both, Manual,
                         testing::Values(ZANCTL_DOCS "/terminal-host.md",
                                         ZANCTL_DOCS "/man/zanctl.1"),
                         [](const auto& manual) { return manual.index == 0 ? "markdown" : "man"; });

}  // namespace
}  // namespace zanctl
