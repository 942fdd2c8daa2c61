#pragma once

#include <csignal>
#include <map>
#include <string>
#include <sys/types.h>
#include <vector>

#include "platform/posix/file_descriptor.hpp"

namespace zanctl {

/// A program at a terminal of its own, 80 columns wide, and the person in front of it.
class TerminalSession {
 public:
  /// Starts the program with nothing in its environment but PATH and what is given.
  TerminalSession(const std::vector<std::string>& words,
                  const std::map<std::string, std::string>& environment);
  /// Kills what still runs.
  ~TerminalSession();
  TerminalSession(const TerminalSession&) = delete;
  TerminalSession& operator=(const TerminalSession&) = delete;

  void type(const std::string& keys) const;
  /// Waits up to ten seconds for the text behind what was found last. Everything that was shown
  /// since then, up to and with the text, or all of it when the text does not come.
  std::string until(const std::string& text);
  [[nodiscard]] const std::string& shown() const { return shown_; }
  void signal(int number) const { ::kill(program_, number); }
  /// Waits until the program edits the line that is typed, ten seconds at most: keys that come
  /// before are the terminal's.
  void untilItEdits() const;
  /// Waits for the program's end, ten seconds at most: its exit status, or 128 and the number of
  /// the signal that ended it, as shells tell it; -1 when it goes on.
  int end();
  /// Whether the terminal echoes and puts lines together, as a shell expects it.
  [[nodiscard]] bool isAsAShellExpects() const;

 private:
  bool readOn(int milliseconds);

  lumodevice::posix::FileDescriptor terminal_;
  lumodevice::posix::FileDescriptor kept_;
  pid_t program_ = -1;
  std::string shown_;
  std::size_t seen_ = 0;
};

}  // namespace zanctl
