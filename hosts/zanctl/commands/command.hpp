#pragma once

#include <functional>
#include <string_view>

#include "hosts/zanctl/output/mistake.hpp"
#include "hosts/zanctl/station/watching.hpp"

namespace CLI {
class App;
}

namespace zanctl {

class Station;

/// Runs a command with what its command line gave it.
using Run = std::function<ExitStatus(Station& station)>;

/// One command of the command line. All that there is of a command is in the file that defines it.
struct Command {
  std::string_view name;
  std::string_view summary;
  /// What stands behind the name, as the help and the manuals write it; " | " between forms.
  std::string_view usage;
  /// Adds the words and options that the command takes to the parser of its command line. What it
  /// returns is called after the command line was read.
  Run (*prepare)(CLI::App& parser) = nullptr;
  /// Runs on the simulated instrument whatever the options say.
  bool alwaysSimulated = false;
  /// Keeps nothing on drive C: unless the command line names a folder for it.
  bool temporaryDrive = false;
  /// Needs a link that carries memory files and pictures; the VISA library link does not.
  bool transfers = false;
  /// Unless the command line says otherwise.
  Watching watching = Watching::Nothing;
};

}  // namespace zanctl
