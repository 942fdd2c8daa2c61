#pragma once

#include <stdexcept>

namespace zanctl {

/// How the program ends.
enum ExitStatus : int {
  kDone = 0,
  kFailed = 1,
  kWrongCommandLine = 2,
  kUnusable = 2,
  /// What was to be switched off at the end could not be.
  kLoadMayBeOn = 3,
  /// The reader of the output is gone: what a shell reports for a program that a closed pipe ended.
  kOutputClosed = 141,
};

/// Something that is wrong in a host script; the text says what, without the place.
class ScriptMistake : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A command line that is not written as the help says.
class WrongCommandLine : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// What a command line names is of no use: a file, a library, a control. The text says why.
class Unusable : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace zanctl
