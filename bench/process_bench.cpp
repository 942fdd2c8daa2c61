// What a whole run of the terminal host costs: wall time and peak memory of a connect to the
// simulated instrument on virtual time, against a C++ program that does nothing.
//
// And what a query costs to somebody at a shell: wall time of zanctl that asks an instrument on a
// loopback socket, against a program of one connect, one send and one receive.
//
// Usage: process_bench ZANCTL EMPTY_PROGRAM RAW_CLIENT

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <fcntl.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "bench/table.hpp"
#include "platform/system_clock.hpp"
#include "simulator/links/server.hpp"

namespace {

constexpr int kRuns = 300;

struct Cost {
  double milliseconds;
  double megabytes;
};

Cost run(const std::vector<std::string>& words) {
  std::vector<char*> arguments;
  for (const std::string& word : words) {
    arguments.push_back(const_cast<char*>(word.c_str()));
  }
  arguments.push_back(nullptr);
  const auto begin = std::chrono::steady_clock::now();
  const pid_t child = vfork();
  if (child == 0) {
    const int nowhere = open("/dev/null", O_WRONLY);
    dup2(nowhere, 1);
    execv(arguments[0], arguments.data());
    _exit(127);
  }
  int status = 0;
  rusage usage{};
  wait4(child, &status, 0, &usage);
  const auto end = std::chrono::steady_clock::now();
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
    std::fprintf(stderr, "process_bench: %s ended with status %d\n", words[0].c_str(), status);
    _exit(1);
  }
  return {std::chrono::duration<double, std::milli>(end - begin).count(),
          static_cast<double>(usage.ru_maxrss) / 1024};
}

/// A simulated load on a loopback socket, in a process of its own.
class LoadOnSocket {
 public:
  LoadOnSocket() : port_(server_.listenTcp(0)), child_(fork()) {
    while (child_ == 0) {
      server_.step(std::chrono::milliseconds(1000));
    }
  }
  ~LoadOnSocket() {
    kill(child_, SIGKILL);
    waitpid(child_, nullptr, 0);
  }
  LoadOnSocket(const LoadOnSocket&) = delete;
  LoadOnSocket& operator=(const LoadOnSocket&) = delete;
  [[nodiscard]] std::string port() const { return std::to_string(port_); }

 private:
  zansim::Instrument instrument_;
  lumodevice::platform::SystemClock clock_;
  zansim::Server server_{instrument_, clock_};
  std::uint16_t port_;
  pid_t child_;
};

void queryOnSocket(const std::string& zanctl, const std::string& rawClient) {
  const LoadOnSocket load;
  const std::string resource = "TCPIP0::127.0.0.1::" + load.port() + "::SOCKET";
  std::vector<double> ours;
  std::vector<double> raw;
  for (int i = 0; i < kRuns; ++i) {
    ours.push_back(run({zanctl, "--resource", resource, "send", "*IDN?"}).milliseconds);
    raw.push_back(run({rawClient, load.port(), "*IDN?"}).milliseconds);
  }
  bench::printHead("ms");
  bench::printRatio("zanctl --resource TCPIP0::... send '*IDN?', wall time", bench::median(ours),
                    bench::median(raw), 1.5);
  std::printf("  (aim: under 50 ms)\n");
}

}  // namespace

int main(int count, char** words) {
  if (count != 4) {
    std::fputs("usage: process_bench ZANCTL EMPTY_PROGRAM RAW_CLIENT\n", stderr);
    return 2;
  }
  const std::vector<std::string> connect = {words[1], "connect", "--simulate", "--virtual-time"};
  const std::vector<std::string> nothing = {words[2]};
  std::vector<double> connectTimes;
  std::vector<double> nothingTimes;
  double connectMemory = 0;
  double nothingMemory = 0;
  for (int i = 0; i < kRuns; ++i) {
    const Cost connectCost = run(connect);
    const Cost nothingCost = run(nothing);
    connectTimes.push_back(connectCost.milliseconds);
    nothingTimes.push_back(nothingCost.milliseconds);
    connectMemory = std::max(connectMemory, connectCost.megabytes);
    nothingMemory = std::max(nothingMemory, nothingCost.megabytes);
  }
  const double connectTime = bench::median(connectTimes);
  const double nothingTime = bench::median(nothingTimes);
  bench::printHead("ms");
  bench::printRatio("zanctl connect --simulate --virtual-time, wall time", connectTime, nothingTime,
                    (nothingTime + 2) / nothingTime);
  std::printf("  %.2f ms above the empty program (aim: at most 2 ms)\n", connectTime - nothingTime);
  bench::printHead("MB");
  bench::printRatio("the same, peak memory", connectMemory, nothingMemory, 8 / nothingMemory);
  queryOnSocket(words[1], words[3]);
}
