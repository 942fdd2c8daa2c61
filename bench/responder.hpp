#pragma once

#include <cstddef>
#include <cstdint>
#include <sys/types.h>

namespace bench {

/// Data bytes of the blocks that answer ":SYST:SET?" and ":DISP:OUTP?".
inline constexpr std::size_t kSettingsSize = 5580;
inline constexpr std::size_t kDumpSize = 122880;

/// A child process that answers each received line that holds "?" with a fixed text: the cheapest
/// instrument there is. Ends with the object.
class Responder {
 public:
  /// Listens on a free port of the loopback interface.
  static Responder onSocket();
  /// Answers on the master side of a pseudo-terminal, which it takes over.
  static Responder onTerminal(int master);

  ~Responder();
  Responder(const Responder&) = delete;
  Responder& operator=(const Responder&) = delete;

  [[nodiscard]] std::uint16_t port() const { return port_; }

 private:
  Responder(pid_t child, std::uint16_t port) : child_(child), port_(port) {}
  pid_t child_;
  std::uint16_t port_;
};

}  // namespace bench
