#include "tests/hosts/zanctl/terminal/terminal_session.hpp"

#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <stdexcept>
#include <sys/wait.h>
#include <termios.h>
#include <thread>
#include <unistd.h>
#include <utmp.h>

namespace zanctl {

namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::seconds kPatience{10};

}  // namespace

TerminalSession::TerminalSession(const std::vector<std::string>& words,
                                 const std::map<std::string, std::string>& environment) {
  int master = -1;
  int slave = -1;
  const winsize size{.ws_row = 24, .ws_col = 80, .ws_xpixel = 0, .ws_ypixel = 0};
  if (::openpty(&master, &slave, nullptr, nullptr, &size) != 0) {
    throw std::runtime_error("no pseudo-terminal");
  }
  terminal_ = lumodevice::posix::FileDescriptor(master);
  // Held open, or the settings of the terminal would go with the program.
  kept_ = lumodevice::posix::FileDescriptor(slave);
  std::vector<std::string> variables{"PATH=" + std::string(std::getenv("PATH"))};
  for (const auto& [name, value] : environment) {
    variables.push_back(name + "=" + value);
  }
  const auto pointers = [](std::vector<std::string>& texts) {
    std::vector<char*> list;
    for (std::string& text : texts) {
      list.push_back(text.data());
    }
    list.push_back(nullptr);
    return list;
  };
  std::vector<std::string> owned = words;
  const std::vector<char*> arguments = pointers(owned);
  const std::vector<char*> named = pointers(variables);
  program_ = ::fork();
  if (program_ == 0) {
    ::close(master);
    if (::login_tty(slave) == 0) {
      ::execve(arguments[0], arguments.data(), named.data());
    }
    ::_exit(127);
  }
}

TerminalSession::~TerminalSession() {
  if (program_ > 0) {
    ::kill(program_, SIGKILL);
    ::waitpid(program_, nullptr, 0);
  }
}

void TerminalSession::type(const std::string& keys) const {
  if (::write(terminal_.get(), keys.data(), keys.size()) != static_cast<ssize_t>(keys.size())) {
    throw std::runtime_error("the terminal takes no keys");
  }
}

bool TerminalSession::readOn(int milliseconds) {
  pollfd ready{terminal_.get(), POLLIN, 0};
  if (::poll(&ready, 1, milliseconds) <= 0) {
    return false;
  }
  std::array<char, 4096> piece{};
  const ssize_t size = ::read(terminal_.get(), piece.data(), piece.size());
  if (size <= 0) {
    return false;
  }
  shown_.append(piece.data(), static_cast<std::size_t>(size));
  return true;
}

std::string TerminalSession::until(const std::string& text) {
  const auto end = Clock::now() + kPatience;
  std::size_t found = shown_.find(text, seen_);
  while (found == std::string::npos && Clock::now() < end) {
    readOn(100);
    found = shown_.find(text, seen_);
  }
  const std::size_t from = seen_;
  seen_ = found == std::string::npos ? shown_.size() : found + text.size();
  return shown_.substr(from, seen_ - from);
}

void TerminalSession::untilItEdits() const {
  const auto end = Clock::now() + kPatience;
  while (isAsAShellExpects() && Clock::now() < end) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
}

int TerminalSession::end() {
  const auto last = Clock::now() + kPatience;
  int status = 0;
  while (Clock::now() < last) {
    readOn(20);
    if (::waitpid(program_, &status, WNOHANG) == program_) {
      program_ = -1;
      while (readOn(0)) {
      }
      return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    }
  }
  return -1;
}

bool TerminalSession::isAsAShellExpects() const {
  termios state{};
  constexpr tcflag_t kExpected = ICANON | ECHO | ISIG;
  return ::tcgetattr(kept_.get(), &state) == 0 && (state.c_lflag & kExpected) == kExpected;
}

}  // namespace zanctl
