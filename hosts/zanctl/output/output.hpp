#pragma once

#include <string>
#include <string_view>

#include "hosts/zanctl/output/escape.hpp"

namespace zanctl {

/// Where lines go. A line is printed with its control characters escaped, wherever they come from
/// (a wire, a device, the name of a file); bytes are written as they are. Each call hands over
/// whole lines at once, so that whoever watches sees them as they come. No call throws: once the
/// reader is gone (or the disk full) the rest is dropped and closed() says so, because a line may
/// come up in the middle of an operation of the component.
class Output {
 public:
  Output() = default;
  virtual ~Output() = default;
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  void line(std::string_view text) { write(printable(text) + '\n'); }
  virtual void write(std::string_view text) = 0;
  /// The system's number for what ended the writing (EPIPE when the reader is gone); 0 while it
  /// goes.
  [[nodiscard]] virtual int error() const { return 0; }
  [[nodiscard]] bool closed() const { return error() != 0; }
  /// Whether a person reads along as it is written.
  [[nodiscard]] virtual bool isTerminal() const { return false; }
};

/// An open file descriptor, unbuffered; one that does not block is waited for. SIGPIPE must be
/// ignored.
class FileOutput : public Output {
 public:
  /// Does not close the descriptor.
  explicit FileOutput(int descriptor) : descriptor_(descriptor) {}
  /// Creates the file, or empties it; a terminal will do, too. Throws Unusable where it cannot be
  /// written, and for a symbolic link or a pipe.
  explicit FileOutput(const std::string& path);
  ~FileOutput() override;
  void write(std::string_view text) override;
  [[nodiscard]] int error() const override { return error_; }
  [[nodiscard]] bool isTerminal() const override;

 private:
  int descriptor_;
  bool owned_ = false;
  int error_ = 0;
};

}  // namespace zanctl
