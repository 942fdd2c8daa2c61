#include "tests/platform/pseudo_terminal.hpp"

#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <stdlib.h>
#include <termios.h>

#include "platform/posix/wait_ready.hpp"

namespace lumodevice::posix {

PseudoTerminal::PseudoTerminal() : master_(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
  char name[64];
  if (!master_ || ::grantpt(master_.get()) != 0 || ::unlockpt(master_.get()) != 0 ||
      ::ptsname_r(master_.get(), name, sizeof name) != 0) {
    throw std::runtime_error("no pseudo-terminal");
  }
  device_ = name;
  // Raw from the start, so that nothing is echoed or changed before the device is opened.
  termios line{};
  ::tcgetattr(master_.get(), &line);
  ::cfmakeraw(&line);
  ::tcsetattr(master_.get(), TCSANOW, &line);
}

void PseudoTerminal::send(const std::string& bytes) const {
  if (::write(master_.get(), bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) {
    throw std::runtime_error("the pseudo-terminal takes nothing");
  }
}

std::string PseudoTerminal::receive(std::size_t size) const {
  const platform::Deadline deadline(5000);
  std::string received;
  char piece[4096];
  while (received.size() < size && waitReady(master_.get(), POLLIN, deadline)) {
    const ssize_t count = ::read(master_.get(), piece, sizeof piece);
    if (count <= 0) break;
    received.append(piece, static_cast<std::size_t>(count));
  }
  return received;
}

}  // namespace lumodevice::posix
