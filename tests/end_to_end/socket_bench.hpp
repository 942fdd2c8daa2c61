#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <thread>
#include <utility>

#include "platform/builtin/builtin_visa.hpp"
#include "platform/posix/serial_devices.hpp"
#include "platform/system_clock.hpp"
#include "simulator/links/server.hpp"
#include "tests/end_to_end/real_panel.hpp"
#include "tests/support/scaled_loop.hpp"

namespace lumodevice::end_to_end {

/// A simulated load on a loopback socket, in a thread of its own and in real time.
class LoadOnSocket {
 public:
  LoadOnSocket();
  ~LoadOnSocket() { halt(); }
  LoadOnSocket(const LoadOnSocket&) = delete;
  LoadOnSocket& operator=(const LoadOnSocket&) = delete;

  /// "TCPIP0::127.0.0.1::PORT::SOCKET"
  [[nodiscard]] const std::string& resource() const { return resource_; }

  /// Looks at the instrument, or changes it, while it holds still.
  void with(const std::function<void(zansim::Instrument&)>& act);
  void fault(const std::string& text);
  void healthy();
  /// Closes its end of every connection, and listens no more.
  void vanish();
  /// Listens again at the same address, without a fault.
  void comeBack();

 private:
  void start();
  void halt();

  zansim::Instrument instrument_;
  lumodevice::platform::SystemClock clock_;
  std::optional<zansim::Server> server_{std::in_place, instrument_, clock_};
  std::uint16_t port_;
  std::string resource_;
  std::atomic<bool> stop_ = false;
  std::thread thread_;
};

enum class Variant { VisaLibrary, VisaCom };

/// A component over the built-in VISA layer.
class SocketBench {
 public:
  explicit SocketBench(Variant variant);

  /// As an operator who knows the address does it.
  void connect(const std::string& resource);

  support::ScaledLoop loop;

 private:
  platform::BuiltinVisa visa_;
  posix::TermiosDevices devices_{{{1, "/nowhere"}}};

 public:
  RealPanel panel{loop, visa_, devices_};
};

}  // namespace lumodevice::end_to_end
