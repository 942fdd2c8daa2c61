#pragma once

#include <map>
#include <memory>
#include <string>

#include "lumodevice/io/serial_port.hpp"
#include "lumodevice/toolkit/event_loop.hpp"
#include "tests/support/instrument.hpp"
#include "tests/support/script.hpp"

namespace lumodevice::support {

/// A serial device and what is plugged into it.
struct SerialSocket {
  /// Null when nothing ever answers.
  Instrument* instrument = nullptr;
  /// The rate that the instrument understands; it hears nothing at any other one.
  int baud = 38400;
  /// Bytes on their way to the port, kept while it is closed.
  Inbox inbox = {};
};

/// Serial devices that answer from a script. The journal shows "COM3 open 38400,n,8,1",
/// "COM3 configure ...", "COM3 write ...", "COM3 read ..." (only when something was there, or when
/// it fails) and "COM3 close"; a call that fails throws SerialFault with the code given to the
/// script. Must outlive its lines.
class ScriptedSerialDevices : public io::SerialDevices {
 public:
  ScriptedSerialDevices(Script& script, toolkit::EventLoop& clock)
      : script_(script), clock_(clock) {}

  /// The ports that exist; opening any other one fails with 8002.
  std::map<int, SerialSocket> ports;

  /// Lets a port receive bytes that nobody asked for.
  void say(int port, const Reply& reply) { ports.at(port).inbox.put(reply, clock_.now()); }

  [[nodiscard]] std::unique_ptr<io::SerialLine> open(int port,
                                                     const io::SerialSettings& settings) override;

 private:
  class Line;

  Script& script_;
  toolkit::EventLoop& clock_;
};

}  // namespace lumodevice::support
