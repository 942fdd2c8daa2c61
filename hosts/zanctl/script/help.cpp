#include "hosts/zanctl/script/help.hpp"

#include "hosts/zanctl/output/wrap.hpp"
#include "hosts/zanctl/script/members.hpp"
#include "hosts/zanctl/script/script.hpp"

namespace zanctl {

std::string scriptHelp() {
  std::vector<Row> rows;
  for (const Instruction& instruction : instructions()) {
    rows.push_back({std::string(instruction.name) + " " + std::string(instruction.arguments),
                    std::string(instruction.help)});
  }
  std::string text = "Instructions, one a line:\n" + helpTable(rows, "  ");
  rows.clear();
  for (const Member& member : members()) {
    rows.push_back({std::string(member.name), member.use(), std::string(member.help)});
  }
  return text + "\nMembers of the component:\n" + helpTable(rows, "  ") +
         "\nWords are separated by blanks; a word in double quotes may hold blanks and the\n"
         "escapes \\n \\r \\t \\\" \\\\ \\xHH. A control is Name, or Name(i) for an element of a\n"
         "control array.";
}

}  // namespace zanctl
