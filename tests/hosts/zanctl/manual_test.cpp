#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/zanctl/commands/commands.hpp"
#include "hosts/zanctl/script/members.hpp"
#include "hosts/zanctl/script/script.hpp"
#include "tests/hosts/zanctl/program_fixture.hpp"

namespace zanctl {
namespace {

using testing::ContainsRegex;
using testing::HasSubstr;

std::string content(const std::string& file) {
  std::ifstream stream(std::string(ZANCTL_DOCS) + "/" + file);
  return {std::istreambuf_iterator<char>(stream), {}};
}

/// The text of a man page with its hyphens as they are typed, and without changes of the font.
std::string typed(std::string page) {
  for (std::size_t at = page.find('\\'); at != std::string::npos; at = page.find('\\', at)) {
    const char escape = page[at + 1];
    page.erase(at, escape == 'f' ? 3 : (escape == '-' ? 1 : 0));
    at += escape == 'f' || escape == '-' ? 0 : 2;
  }
  return page;
}

/// "list | get KIND" is two forms; a command without words has one, the empty one.
std::vector<std::string> formsOf(std::string_view usage) {
  constexpr std::string_view kBetween = " | ";
  std::vector<std::string> forms;
  for (std::size_t at = usage.find(kBetween); at != std::string_view::npos;
       at = usage.find(kBetween)) {
    forms.emplace_back(usage.substr(0, at));
    usage.remove_prefix(at + kBetween.size());
  }
  forms.emplace_back(usage);
  return forms;
}

/// Every word of a text that begins with two hyphens.
std::set<std::string> optionsIn(const std::string& text) {
  std::set<std::string> names;
  for (std::size_t at = text.find("--"); at != std::string::npos; at = text.find("--", at)) {
    const std::size_t end = text.find_first_not_of("-abcdefghijklmnopqrstuvwxyz", at);
    names.insert(text.substr(at, end - at));
    at = end;
  }
  return names;
}

/// The help with a usage of several lines in one.
std::string unbroken(std::string help) {
  constexpr std::string_view kBreak = "\n         ";
  for (std::size_t at = help.find(kBreak); at < help.find("\n\n"); at = help.find(kBreak)) {
    help.replace(at, kBreak.size(), " ");
  }
  return help;
}

class Manual : public ProgramTest {
 protected:
  const std::string manual = content("terminal-host.md");
  const std::string page = typed(content("man/zanctl.1"));

  std::string helpOf(const Command& command) {
    return run({std::string(command.name), "--help"}).output;
  }

  /// Every option that the help of the program and of its commands lists.
  std::set<std::string> options() {
    std::string help = run({"--help"}).output;
    for (const Command* const command : commands()) {
      help += helpOf(*command);
    }
    return optionsIn(help);
  }
};

TEST_F(Manual, listsEveryCommandWithItsUsage) {
  for (const Command* const command : commands()) {
    const std::string name(command->name);
    const std::string usage(command->usage);
    for (const std::string& form : formsOf(usage)) {
      EXPECT_THAT(manual, HasSubstr("`" + name + (form.empty() ? "" : " ") + form + "`"));
    }
    EXPECT_THAT(page, HasSubstr(usage.empty() ? "\n.TP\n.B " + name + "\n"
                                              : "\n.TP\n.BR " + name + " \" " + usage + "\"\n"));
  }
}

TEST_F(Manual, theUsageOfACommandNamesAllItsOptionsAndNoOther) {
  for (const Command* const command : commands()) {
    const std::string help = helpOf(*command);
    const std::string usage(command->usage);
    EXPECT_THAT(unbroken(help), HasSubstr("Usage: zanctl [OPTIONS] " + std::string(command->name) +
                                          (usage.empty() ? "" : " ") + usage + "\n"));
    std::set<std::string> own = optionsIn(help.substr(help.find("\nOptions:")));
    own.erase("--help");
    EXPECT_EQ(own, optionsIn(usage)) << command->name;
  }
}

TEST_F(Manual, listsEveryOption) {
  const std::set<std::string> names = options();
  EXPECT_TRUE(names.contains("--visa-library") && names.contains("--csv"));
  for (const std::string& name : names) {
    EXPECT_THAT(manual, ContainsRegex("[[`]" + name + "[] `]"));
    EXPECT_THAT(page, ContainsRegex("\n[.]B[IR]? ([^\n]*[^-a-z])?" + name + "[^-a-z]"));
  }
}

TEST_F(Manual, listsEveryInstruction) {
  for (const Instruction& instruction : instructions()) {
    const std::string name(instruction.name);
    EXPECT_THAT(manual, HasSubstr("`" + name + " ")) << name;
    EXPECT_THAT(page, HasSubstr("\n.BI " + name + " ")) << name;
  }
}

TEST_F(Manual, listsEveryMemberWithItsUse) {
  for (const Member& member : members()) {
    const std::string name(member.name);
    const std::string use = member.use();
    const std::string help(member.help);
    std::string row = "\n| `";
    row.append(name).append("` | ").append(use).append(" | ").append(help).append(" |\n");
    EXPECT_THAT(manual, HasSubstr(row));
    std::string entry = "\n.TP\n.BR ";
    entry.append(name).append(" \" (").append(use).append(")\"\n").append(help).append(".\n");
    EXPECT_THAT(page, HasSubstr(entry));
  }
}

}  // namespace
}  // namespace zanctl
