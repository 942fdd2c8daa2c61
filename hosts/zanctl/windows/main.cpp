#include <windows.h>

// Stands on <windows.h>.
#include <cstdio>
#include <exception>
#include <fcntl.h>
#include <io.h>
#include <iostream>
#include <shellapi.h>
#include <string>
#include <vector>

#include "hosts/zanctl/output/output.hpp"
#include "hosts/zanctl/program.hpp"
#include "hosts/zanctl/windows/text.hpp"
#include "platform/environment.hpp"

namespace {

/// What main() is given is cut to the code page.
std::vector<std::string> commandLine() {
  int count = 0;
  wchar_t** const words = ::CommandLineToArgvW(::GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int i = 1; i < count; ++i) {
    arguments.push_back(zanctl::narrow(words[i]));
  }
  ::LocalFree(words);
  return arguments;
}

}  // namespace

int main() {
  // Lines end as everywhere, bytes stay as they are, texts are UTF-8.
  for (std::FILE* const stream : {stdin, stdout, stderr}) {
    (void)::_setmode(::_fileno(stream), _O_BINARY);
  }
  (void)::SetConsoleOutputCP(CP_UTF8);
  zanctl::FileOutput output(::_fileno(stdout));
  zanctl::FileOutput errors(::_fileno(stderr));
  try {
    return zanctl::runProgram(
        commandLine(), lumodevice::platform::processVariable,
        {std::cin, output, errors, ::_isatty(::_fileno(stdin)) != 0 && output.isTerminal()});
  } catch (const std::exception& bug) {
    errors.line(std::string("zanctl: internal error: ") + bug.what());
    return zanctl::kFailed;
  }
}
