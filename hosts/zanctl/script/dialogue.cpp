#include "hosts/zanctl/script/dialogue.hpp"

#include "hosts/zanctl/script/help.hpp"

namespace zanctl {

ExitStatus talk(Script& script, const std::function<std::optional<std::string>()>& nextLine) {
  while (const std::optional<std::string> line = nextLine()) {
    if (*line == "quit" || *line == "exit") {
      break;
    }
    if (*line == "help") {
      script.output().write(scriptHelp() + "\n");
      continue;
    }
    try {
      script.perform(*line);
    } catch (const ScriptMistake& mistake) {
      script.remarks().line(mistake.what());
    }
    if (script.output().closed()) {
      return kOutputClosed;
    }
  }
  return kDone;
}

}  // namespace zanctl
