#pragma once

#include <sys/wait.h>
#include <unistd.h>

namespace lumodevice::posix {

/// Runs `act` in another process and returns what it returns (0 to 255); -1 when that process
/// crashes.
template <typename Act>
int inChildProcess(Act act) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(act());
  int status = 0;
  if (::waitpid(child, &status, 0) != child || !WIFEXITED(status)) return -1;
  return WEXITSTATUS(status);
}

/// The same without the privileges that would let it ignore file permissions.
template <typename Act>
int asOrdinaryUser(Act act) {
  constexpr unsigned nobody = 65534;
  return inChildProcess([&] {
    if (::geteuid() == 0 && (::setgid(nobody) != 0 || ::setuid(nobody) != 0)) return 255;
    return static_cast<int>(act());
  });
}

}  // namespace lumodevice::posix
