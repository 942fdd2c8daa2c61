// A host with an event loop of its own: poll() waits for the keyboard and for the component's
// timers at once. Every line that is typed goes to the instrument; the read-outs are printed when
// they change.
//
//   own_loop              a simulated instrument that lives fifty times as fast
//   own_loop VISA-LIBRARY the first ZAN load that this library finds

#include <algorithm>
#include <chrono>
#include <iostream>
#include <poll.h>
#include <string>
#include <thread>
#include <unistd.h>

#include "lumodevice/simulated_host.hpp"
#include "lumodevice/system_host.hpp"
#include "lumodevice/toolkit/controls.hpp"
#include "lumodevice/zan_ctrl.hpp"

namespace {

using namespace lumodevice;

/// Watches standard input beside the timers. Its time may run faster than the wall's.
class PollLoop : public toolkit::EventLoop {
 public:
  explicit PollLoop(int faster) : faster_(faster) {}

  [[nodiscard]] Duration now() const override {
    return (std::chrono::steady_clock::now() - start_) * faster_;
  }

  /// Lets timers tick until a line was typed; false when there will be none.
  bool nextLine(std::string& line) {
    std::size_t end;
    while ((end = typed_.find('\n')) == std::string::npos) {
      tickDue();
      pollfd input{STDIN_FILENO, POLLIN, 0};
      if (::poll(&input, 1, wallMillisecondsToTick()) > 0) {
        char bytes[256];
        const ssize_t count = ::read(STDIN_FILENO, bytes, sizeof bytes);
        if (count <= 0) return false;
        typed_.append(bytes, static_cast<std::size_t>(count));
      }
    }
    line = typed_.substr(0, end);
    typed_.erase(0, end + 1);
    return true;
  }

 protected:
  // A wait of the component. What is typed meanwhile waits where it is, in the terminal or pipe: a
  // command sent now would run within another one.
  void wait(Duration span) override { std::this_thread::sleep_for(span / faster_); }

 private:
  /// Rounded up; below 0 while no timer runs.
  [[nodiscard]] int wallMillisecondsToTick() const {
    const auto due = nextDue();
    if (!due) return -1;
    const Duration left = std::max(*due - now(), Duration(0)) / faster_;
    return static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(left).count());
  }

  int faster_;
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
  std::string typed_;
};

bool run(PollLoop& loop, const Host& host) {
  ZANCtrl load(host);
  if (!load.AutoConnect()) {
    std::cerr << "own_loop: no ZAN load found\n";
    return false;
  }
  std::cout << load.IDN() << load.ChCount() << " channels; type commands, or an end of file\n";
  const auto readOut = [&](const char* name) {
    return load.surface().get<toolkit::TextBox>(name, 0).text();
  };
  // The power is the last of the three to change.
  const auto watching = load.surface().get<toolkit::TextBox>("txtPower", 0).change.observe([&] {
    std::cout << "  " << readOut("txtVoltage") << " V  " << readOut("txtCurrent") << " A  "
              << readOut("txtPower") << " W\n";
  });
  load.AutoQuery(true);
  for (std::string line; loop.nextLine(line);) {
    load.SendCmd(line);
    std::cout << line;
    if (line.find('?') != std::string::npos) std::cout << " -> " << load.ResultStr();
    std::cout << std::endl;
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  const bool real = argc > 1;
  PollLoop loop(real ? 1 : 50);
  // An information box stands until Enter is pressed; timers tick meanwhile.
  const auto box = [&loop](std::string_view text) {
    std::cout << '[' << text << "] Enter goes on" << std::endl;
    std::string line;
    (void)loop.nextLine(line);
  };
  try {
    const bool done =
        run(loop, real ? systemHost({.loop = &loop, .visaLibrary = argv[1], .informationBox = box})
                       : simulatedHost({.loop = &loop, .informationBox = box}));
    return done ? 0 : 1;
  } catch (const io::IoFault& fault) {
    std::cerr << "own_loop: " << fault.what() << '\n';
    return 1;
  }
}
