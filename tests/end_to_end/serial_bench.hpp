#pragma once

#include <initializer_list>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/builtin/builtin_visa.hpp"
#include "platform/posix/serial_devices.hpp"
#include "simulator/links/server.hpp"
#include "tests/end_to_end/real_panel.hpp"
#include "tests/platform/temporary_folder.hpp"
#include "tests/support/scaled_loop.hpp"

namespace lumodevice::end_to_end {

/// A simulated load on a pseudo-terminal. It works while the loop waits, and its time is the
/// loop's.
class LoadOnTerminal {
 public:
  LoadOnTerminal(toolkit::EventLoop& loop, std::string link);

  /// With a `baud` other than 0 it understands no other speed.
  void plug(std::int32_t baud = 0);
  void unplug() { server_.reset(); }
  void serve(toolkit::EventLoop::Duration span);

  zansim::Instrument instrument;
  /// The messages that arrived.
  std::vector<std::string> heard;

 private:
  support::LoopClock clock_;
  std::string link_;
  std::unique_ptr<zansim::Server> server_;
};

/// Serial ports over terminals, with a note of each that was opened: "COM3 9600".
class NotedTerminals : public io::SerialDevices {
 public:
  explicit NotedTerminals(std::map<int, std::string> given) : devices_(std::move(given)) {}
  [[nodiscard]] std::unique_ptr<io::SerialLine> open(int port,
                                                     const io::SerialSettings& settings) override;
  std::vector<std::string> opened;

 private:
  posix::TermiosDevices devices_;
};

/// A component whose COM ports are pseudo-terminals with simulated loads. All are
/// plugged in and understand every speed; the serial link is chosen.
class SerialBench {
 public:
  explicit SerialBench(std::initializer_list<int> ports);

  [[nodiscard]] LoadOnTerminal& load(int port) { return *loads_.at(port); }
  [[nodiscard]] RealPanel& panel() { return *panel_; }
  /// The component goes; loads and ports stay.
  void endComponent() { panel_.reset(); }

  /// Lets the panel work for a while.
  void run(std::chrono::milliseconds span) { loop.runFor(span); }

  /// Chooses the port, and presses the connect button until the instrument was heard in time.
  void connectByHand(int port);

  /// The ports opened since the last time, one a line.
  std::string opened();

  support::ScaledLoop loop;

 private:
  posix::TemporaryFolder folder_;
  std::map<int, std::unique_ptr<LoadOnTerminal>> loads_;
  platform::BuiltinVisa visa_;
  std::optional<NotedTerminals> devices_;
  std::optional<RealPanel> panel_;
};

}  // namespace lumodevice::end_to_end
