// A host with an event loop of its own: poll() waits for the keyboard and for the component's
// timers at once. Every line that is typed goes to the instrument; the read-outs are printed when
// they change.
//
//   own_loop              a simulated instrument that lives fifty times as fast
//   own_loop VISA-LIBRARY the first ZAN load that this library finds

#include <chrono>
#include <deque>
#include <iostream>
#include <poll.h>
#include <string>
#include <unistd.h>

#include "lumodevice/toolkit/controls.hpp"
#include "lumodevice/zan_ctrl.hpp"

namespace {

using namespace lumodevice;
using toolkit::EventLoop;

/// Watches standard input beside the timers. Its time may run faster than the wall's.
class PollLoop : public EventLoop {
 public:
  explicit PollLoop(int faster) : faster_(faster) {}

  [[nodiscard]] Duration now() const override {
    return (std::chrono::steady_clock::now() - start_) * faster_;
  }

  // A wait of the component: nothing is delivered before it is over.
  void idle(Duration span) override { wait(span, false); }

  /// Processes events until a line was typed; false when there will be none.
  bool nextLine(std::string& line) {
    while (lines_.empty() && open_) {
      processEvents();
      const Duration next = nextDue().value_or(now() + std::chrono::seconds(1)) - now();
      if (lines_.empty()) wait(next, open_);
    }
    if (lines_.empty()) return false;
    line = lines_.front();
    lines_.pop_front();
    return true;
  }

 protected:
  // Runs inside processEvents(), so perhaps in the middle of an operation: input is kept for later,
  // for a command sent now would run within another one.
  void deliverInput() override {
    pollfd input{STDIN_FILENO, POLLIN, 0};
    while (open_ && ::poll(&input, 1, 0) > 0) {
      char bytes[256];
      const ssize_t count = ::read(STDIN_FILENO, bytes, sizeof bytes);
      open_ = count > 0;
      typed_.append(bytes, open_ ? static_cast<std::size_t>(count) : 0);
    }
    for (std::size_t end; (end = typed_.find('\n')) != std::string::npos;
         typed_.erase(0, end + 1)) {
      lines_.push_back(typed_.substr(0, end));
    }
  }

 private:
  void wait(Duration span, bool untilInput) const {
    const auto end = std::chrono::steady_clock::now() + span / faster_;
    pollfd input{STDIN_FILENO, POLLIN, 0};
    for (auto left = span / faster_; left > Duration(0);
         left = end - std::chrono::steady_clock::now()) {
      const auto milliseconds = std::chrono::ceil<std::chrono::milliseconds>(left).count();
      if (::poll(&input, untilInput ? 1 : 0, static_cast<int>(milliseconds)) > 0) return;
    }
  }

  int faster_;
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
  bool open_ = true;
  std::string typed_;
  std::deque<std::string> lines_;
};

/// Prints the read-outs; the power is the last of the three to change.
class ReadOuts : public toolkit::View {
 public:
  explicit ReadOuts(toolkit::Surface& panel) : panel_(panel) { panel_.attach(*this); }
  ~ReadOuts() override { panel_.detach(*this); }
  ReadOuts(const ReadOuts&) = delete;
  ReadOuts& operator=(const ReadOuts&) = delete;

  void changed(const toolkit::Control& control, toolkit::Property, int) override {
    if (control.name() == "txtPower") {
      std::cout << "  " << text("txtVoltage") << " V  " << text("txtCurrent") << " A  "
                << text("txtPower") << " W\n";
    }
  }

 private:
  [[nodiscard]] std::string text(const char* name) const {
    return panel_.get<toolkit::TextBox>(name, 0).text();
  }
  toolkit::Surface& panel_;
};

bool run(PollLoop& loop, const Host& host) {
  ZANCtrl load(host);
  if (!load.AutoConnect()) {
    std::cerr << "own_loop: no ZAN load found\n";
    return false;
  }
  std::cout << load.IDN() << load.ChCount() << " channels; type commands, or an end of file\n";
  const ReadOuts readOuts(load.surface());
  load.AutoQuery(true);
  for (std::string line; loop.nextLine(line);) {
    load.AutoQuery(false);  // its queries would otherwise overtake the command
    load.SendCmd(line);
    std::cout << line;
    if (line.find('?') != std::string::npos) std::cout << " -> " << load.ResultStr();
    std::cout << std::endl;
    load.AutoQuery(true);
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  const bool real = argc > 1;
  PollLoop loop(real ? 1 : 50);
  try {
    const bool done = run(loop, real ? Host::system({.loop = &loop, .visaLibrary = argv[1]})
                                     : Host::simulated({.loop = &loop}));
    return done ? 0 : 1;
  } catch (const io::IoFault& fault) {
    std::cerr << "own_loop: " << fault.what() << '\n';
    return 1;
  }
}
