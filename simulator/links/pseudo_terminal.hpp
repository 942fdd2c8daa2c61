#pragma once

#include <cstdint>
#include <string>

#include "simulator/descriptor.hpp"

namespace zansim {

/// A pseudo-terminal in raw mode, with a symbolic link to the side that hosts open. Its own hold on
/// that side lets a host close and open it again. The link is removed on destruction.
class PseudoTerminal {
 public:
  /// Throws std::system_error; std::invalid_argument when `link` is there and no symbolic link, and
  /// on a system without pseudo-terminals.
  explicit PseudoTerminal(std::string link);
  ~PseudoTerminal();
  PseudoTerminal(const PseudoTerminal&) = delete;
  PseudoTerminal& operator=(const PseudoTerminal&) = delete;

  /// The instrument's side; non-blocking.
  [[nodiscard]] Descriptor::Number descriptor() const { return master_.get(); }
  [[nodiscard]] const std::string& device() const { return device_; }
  /// True when the host set the terminal to this speed.
  [[nodiscard]] bool isAtSpeed(std::int32_t baud) const;

 private:
  std::string link_;
  std::string device_;
  Descriptor master_;
  Descriptor slave_;
};

/// True for a speed that a terminal can be set to.
[[nodiscard]] bool isTerminalSpeed(std::int32_t baud);

}  // namespace zansim
