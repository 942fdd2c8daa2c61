#include <csignal>
#include <exception>
#include <iostream>
#include <unistd.h>

#include "hosts/zanctl/output/output.hpp"
#include "hosts/zanctl/program.hpp"
#include "platform/environment.hpp"

int main(int argc, char** argv) {
  // A reader that goes away is seen by the writes that fail, so that the link is still closed in
  // order.
  (void)std::signal(SIGPIPE, SIG_IGN);
  // A limit of the size of files is a full disk.
  (void)std::signal(SIGXFSZ, SIG_IGN);
  zanctl::FileOutput output(STDOUT_FILENO);
  zanctl::FileOutput errors(STDERR_FILENO);
  try {
    return zanctl::runProgram(
        {argv + 1, argv + argc}, lumodevice::platform::processVariable,
        {std::cin, output, errors, ::isatty(STDIN_FILENO) == 1 && output.isTerminal()});
  } catch (const std::exception& bug) {
    errors.line(std::string("zanctl: internal error: ") + bug.what());
    return zanctl::kFailed;
  }
}
