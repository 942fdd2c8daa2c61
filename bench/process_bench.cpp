// What a whole run of the terminal host costs: wall time and peak memory of a connect to the
// simulated instrument on virtual time, against a C++ program that does nothing.
//
// Usage: process_bench ZANCTL EMPTY_PROGRAM

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "bench/table.hpp"

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

}  // namespace

int main(int count, char** words) {
  if (count != 3) {
    std::fputs("usage: process_bench ZANCTL EMPTY_PROGRAM\n", stderr);
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
}
