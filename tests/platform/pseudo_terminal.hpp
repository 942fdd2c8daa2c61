#pragma once

#include <string>

#include "platform/posix/file_descriptor.hpp"

namespace lumodevice::posix {

/// A pseudo-terminal: the test holds one end, `device()` is the path of the other.
class PseudoTerminal {
 public:
  PseudoTerminal();

  [[nodiscard]] const std::string& device() const { return device_; }
  void send(const std::string& bytes) const;
  /// Waits up to five seconds for `size` bytes; what has come when they do not.
  [[nodiscard]] std::string receive(std::size_t size) const;
  [[nodiscard]] int handle() const { return master_.get(); }
  /// The cable is pulled.
  void hangUp() { const FileDescriptor closed = std::move(master_); }

 private:
  FileDescriptor master_;
  std::string device_;
};

}  // namespace lumodevice::posix
