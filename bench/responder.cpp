#include "bench/responder.hpp"

#include <arpa/inet.h>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace bench {

namespace {

struct Answer {
  std::string_view command;
  std::string_view text;
};
constexpr Answer kAnswers[] = {{"*IDN?", "LUMO,ZAN-BENCH,1,1.0\n"},
                               {"*RDT?", "2040-80\n"},
                               {":CHAN?", "1\n"},
                               {":Mode?", "CCH\n"},
                               {"", "1.234\n"}};

/// A definite-length block whose data hold every byte.
std::string block(std::size_t size) {
  const std::string length = std::to_string(size);
  std::string text = "#" + std::to_string(length.size()) + length;
  for (std::size_t i = 0; i < size; ++i) {
    text += static_cast<char>(i);
  }
  return text + '\n';
}

std::string_view answerTo(std::string_view line) {
  static const std::string settings = block(kSettingsSize);
  static const std::string dump = block(kDumpSize);
  if (line.starts_with(":SYST:SET?")) {
    return settings;
  }
  if (line.starts_with(":DISP:OUTP?")) {
    return dump;
  }
  for (const Answer& answer : kAnswers) {
    if (line.starts_with(answer.command)) {
      return answer.text;
    }
  }
  return {};
}

/// Answers the lines that arrive on `descriptor` until the other side is gone.
[[noreturn]] void serve(int descriptor) {
  char buffer[4096];
  for (;;) {
    const ssize_t count = read(descriptor, buffer, sizeof buffer);
    if (count <= 0) {
      _exit(0);
    }
    const std::string_view line(buffer, static_cast<std::size_t>(count));
    if (line.find('?') != std::string_view::npos) {
      const std::string_view text = answerTo(line);
      (void)!write(descriptor, text.data(), text.size());
    }
  }
}

[[noreturn]] void acceptForever(int listener) {
  for (;;) {
    const int connection = accept(listener, nullptr, nullptr);
    if (connection < 0) {
      _exit(1);
    }
    const int on = 1;
    setsockopt(connection, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    if (fork() == 0) {
      close(listener);
      serve(connection);
    }
    close(connection);
  }
}

}  // namespace

Responder Responder::onSocket() {
  const int listener = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  if (listener < 0 || bind(listener, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
      listen(listener, 8) != 0 ||
      getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size) != 0) {
    throw std::runtime_error(std::string("no loopback socket: ") + std::strerror(errno));
  }
  const pid_t child = fork();
  if (child == 0) {
    setpgid(0, 0);
    signal(SIGCHLD, SIG_IGN);
    acceptForever(listener);
  }
  setpgid(child, child);
  close(listener);
  return {child, ntohs(address.sin_port)};
}

Responder Responder::onTerminal(int master) {
  const pid_t child = fork();
  if (child == 0) {
    setpgid(0, 0);
    serve(master);
  }
  setpgid(child, child);
  close(master);
  return {child, 0};
}

Responder::~Responder() {
  kill(-child_, SIGTERM);
  waitpid(child_, nullptr, 0);
}

}  // namespace bench
