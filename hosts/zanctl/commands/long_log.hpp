#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "hosts/zanctl/commands/command.hpp"
#include "hosts/zanctl/commands/limits.hpp"
#include "hosts/zanctl/commands/log_file.hpp"

namespace zanctl {

/// What a log is to be.
struct LogOptions {
  std::string file;
  bool json = false;
  int channel = 0;   ///< 0: all
  int every = 1000;  ///< milliseconds from the start of one round to that of the next
  Turning turning;
  std::optional<std::string> until;
  Limits limits;
  /// Seconds without readings after which the load is switched off.
  std::optional<double> deadMan;
};

/// Takes readings for as long as the options say, and keeps every one: a row a channel and round,
/// or a row that says why there is none. An instrument that is lost is waited for. SIGTERM and
/// Ctrl-C end it in order, SIGHUP begins a new file.
[[nodiscard]] ExitStatus logReadings(Station& station, const LogOptions& options);

}  // namespace zanctl
