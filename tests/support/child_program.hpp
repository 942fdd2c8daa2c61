#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

#include "simulator/descriptor.hpp"

namespace lumodevice::support {

/// A program as a process of its own, with pipes for its output; killed when it still runs at the
/// end. Every wait for it is bounded.
class ChildProgram {
 public:
  /// `input` is all that it can read. Throws std::runtime_error.
  ChildProgram(const char* path, const std::vector<std::string>& arguments,
               const std::string& input = "");
  ~ChildProgram();
  ChildProgram(const ChildProgram&) = delete;
  ChildProgram& operator=(const ChildProgram&) = delete;

  /// The next line without its line feed; what there is of it when the program ends or ten seconds
  /// pass.
  [[nodiscard]] std::string line() { return readLine(output_.get()); }
  [[nodiscard]] std::string errorLine() { return readLine(errors_.get()); }
  /// All further lines.
  [[nodiscard]] std::string rest() { return readAll(output_.get()); }
  [[nodiscard]] std::string errorRest() { return readAll(errors_.get()); }

  /// The exit status, after `signal` when it is not 0; -1 when a signal killed the program.
  int end(int signal = 0);

  [[nodiscard]] pid_t process() const { return process_; }

  /// From any stream, as line() does it.
  [[nodiscard]] static std::string readLine(int descriptor);

 private:
  [[nodiscard]] static std::string readAll(int descriptor);

  pid_t process_ = 0;
  zansim::Descriptor output_;
  zansim::Descriptor errors_;
};

}  // namespace lumodevice::support
