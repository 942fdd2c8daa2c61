#include "tests/support/scripted_serial.hpp"

namespace lumodevice::support {

namespace {

std::string settingsText(const io::SerialSettings& settings) {
  return std::to_string(settings.baud) + ',' + settings.parity + ',' +
         std::to_string(settings.dataBits) + ',' + settings.stopBits;
}

std::string portName(int port) {
  return "COM" + std::to_string(port);
}

void check(int code, const std::string& call) {
  if (code != 0) {
    throw io::SerialFault(code, call);
  }
}

}  // namespace

class ScriptedSerialDevices::Line : public io::SerialLine {
 public:
  Line(ScriptedSerialDevices& devices, int port, int baud)
      : devices_(devices), port_(port), baud_(baud) {}
  ~Line() override { devices_.script_.note(portName(port_) + " close"); }
  Line(const Line&) = delete;
  Line& operator=(const Line&) = delete;

  void configure(const io::SerialSettings& settings) override {
    const std::string line = portName(port_) + " configure " + settingsText(settings);
    check(devices_.script_.call(line), line);
    baud_ = settings.baud;
  }

  void write(std::string_view data) override {
    const std::string line = portName(port_) + " write " + escaped(data);
    check(devices_.script_.call(line), line);
    SerialSocket& socket = devices_.ports.at(port_);
    if (socket.instrument != nullptr && socket.baud == baud_) {
      socket.inbox.put(socket.instrument->hear(data), devices_.clock_.now());
    }
  }

  void receive(std::string& queue) override {
    const std::string line = portName(port_) + " read";
    check(devices_.script_.quietCall(line), line);
    const std::string bytes = devices_.ports.at(port_).inbox.take(devices_.clock_.now());
    if (!bytes.empty()) {
      devices_.script_.note(line + ' ' + escaped(bytes));
      queue += bytes;
    }
  }

 private:
  ScriptedSerialDevices& devices_;
  int port_;
  int baud_;
};

std::unique_ptr<io::SerialLine> ScriptedSerialDevices::open(int port,
                                                            const io::SerialSettings& settings) {
  const std::string line = portName(port) + " open " + settingsText(settings);
  check(script_.call(line), line);
  if (!ports.contains(port)) {
    throw io::SerialFault(io::kSerialInvalidPort, line);
  }
  return std::make_unique<Line>(*this, port, settings.baud);
}

}  // namespace lumodevice::support
