#include "tests/support/child_program.hpp"

#include <array>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace lumodevice::support {

namespace {

constexpr int kPatience = 10'000;

struct Pipe {
  zansim::Descriptor readEnd;
  zansim::Descriptor writeEnd;
};

Pipe makePipe() {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) {
    throw std::runtime_error("no pipe");
  }
  return {zansim::Descriptor(ends[0]), zansim::Descriptor(ends[1])};
}

/// Appends one byte; false at the end of the stream, or when nothing comes.
bool readByte(int descriptor, std::string& text) {
  pollfd poll{descriptor, POLLIN, 0};
  char byte = 0;
  if (::poll(&poll, 1, kPatience) <= 0 || ::read(descriptor, &byte, 1) != 1) {
    return false;
  }
  text += byte;
  return true;
}

}  // namespace

ChildProgram::ChildProgram(const char* path, const std::vector<std::string>& arguments,
                           const std::string& input) {
  Pipe in = makePipe();
  Pipe out = makePipe();
  Pipe error = makePipe();
  std::vector<char*> argv{const_cast<char*>(path)};
  for (const std::string& argument : arguments) {
    argv.push_back(const_cast<char*>(argument.c_str()));
  }
  argv.push_back(nullptr);
  process_ = ::fork();
  if (process_ == 0) {
    ::dup2(in.readEnd.get(), STDIN_FILENO);
    ::dup2(out.writeEnd.get(), STDOUT_FILENO);
    ::dup2(error.writeEnd.get(), STDERR_FILENO);
    ::execv(path, argv.data());
    ::_exit(127);
  }
  if (process_ < 0 || ::write(in.writeEnd.get(), input.data(), input.size()) !=
                          static_cast<ssize_t>(input.size())) {
    throw std::runtime_error(std::string("cannot run ") + path);
  }
  output_ = std::move(out.readEnd);
  errors_ = std::move(error.readEnd);
}

ChildProgram::~ChildProgram() {
  if (process_ > 0) {
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
  }
}

int ChildProgram::end(int signal) {
  if (signal != 0) {
    ::kill(process_, signal);
  }
  int status = 0;
  ::waitpid(process_, &status, 0);
  process_ = 0;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string ChildProgram::readLine(int descriptor) {
  std::string line;
  while (readByte(descriptor, line)) {
    if (line.back() == '\n') {
      line.pop_back();
      break;
    }
  }
  return line;
}

std::string ChildProgram::readAll(int descriptor) {
  std::string text;
  while (readByte(descriptor, text)) {
  }
  return text;
}

}  // namespace lumodevice::support
