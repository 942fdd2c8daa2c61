#include <csignal>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <unistd.h>

#include "hosts/zanctl/output.hpp"
#include "hosts/zanctl/program.hpp"

namespace {

std::optional<std::string> variable(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr || *value == '\0' ? std::nullopt : std::optional<std::string>(value);
}

}  // namespace

int main(int argc, char** argv) {
  // A reader that goes away is seen by the writes that fail, so that the link is still closed in
  // order.
  (void)std::signal(SIGPIPE, SIG_IGN);
  zanctl::FileOutput output(STDOUT_FILENO);
  zanctl::FileOutput errors(STDERR_FILENO);
  try {
    return zanctl::runProgram({argv + 1, argv + argc}, variable, {std::cin, output, errors});
  } catch (const std::exception& bug) {
    errors.line(std::string("zanctl: internal error: ") + bug.what());
    return zanctl::kFailed;
  }
}
