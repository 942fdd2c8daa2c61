#include "simulator/links/simulated_serial.hpp"

#include <algorithm>
#include <optional>
#include <utility>

namespace zansim {

using namespace lumodevice::io;

namespace {

constexpr std::int32_t kFastest = 921'600;

void check(const SerialSettings& settings) {
  const bool parityKnown =
      std::string_view("emnos").find(settings.parity) != std::string_view::npos;
  const bool stopKnown =
      settings.stopBits == "1" || settings.stopBits == "1.5" || settings.stopBits == "2";
  const bool bitsKnown = settings.dataBits >= 5 && settings.dataBits <= 8;
  if (settings.baud <= 0 || settings.baud > kFastest || !parityKnown || !stopKnown || !bitsKnown) {
    throw SerialFault(kSerialInvalidValue, "the serial device refuses these settings");
  }
}

/// What a byte takes on the line: one start bit, eight data bits, one stop bit.
Duration byteTime(std::int32_t baud) {
  return baud == 0 ? Duration::zero() : Duration(std::chrono::seconds(10)) / baud;
}

class SimulatedLine : public SerialLine {
 public:
  SimulatedLine(Clock& clock, const SerialSocket& socket, SerialSettings settings, bool& open)
      : clock_(clock), baud_(socket.baud), settings_(std::move(settings)), open_(open) {
    open_ = true;
    if (socket.instrument != nullptr) {
      connection_.emplace(*socket.instrument, Connection::Kind::Stream, byteTime(baud_));
    }
  }
  ~SimulatedLine() override { open_ = false; }
  SimulatedLine(const SimulatedLine&) = delete;
  SimulatedLine& operator=(const SimulatedLine&) = delete;

  void configure(const SerialSettings& settings) override {
    check(settings);
    settings_ = settings;
  }

  void write(std::string_view data) override {
    if (isLost()) {
      throw SerialFault(kSerialUnavailable, "the serial device is gone");
    }
    const Duration setsOut = std::max(clock_.now(), lineFree_);
    lineFree_ = setsOut + byteTime(baud_) * static_cast<Duration::rep>(data.size());
    if (connection_ && understands()) {
      connection_->feed(data, false, lineFree_);
    }
  }

  void receive(std::string& queue) override {
    if (isLost()) {
      throw SerialFault(kSerialReadError, "the serial device is gone");
    }
    std::array<char, 512> bytes{};
    while (connection_) {
      const Connection::Taken taken = connection_->take(bytes, clock_.now());
      if (taken.count == 0) {
        break;
      }
      if (understands()) {
        queue.append(bytes.data(), taken.count);
      }
    }
  }

 private:
  [[nodiscard]] bool understands() const {
    return baud_ == 0 ||
           (settings_.baud == baud_ && settings_.parity == 'n' && settings_.dataBits == 8);
  }
  [[nodiscard]] bool isLost() const { return connection_ && connection_->isLost(); }

  Clock& clock_;
  std::int32_t baud_;
  SerialSettings settings_;
  bool& open_;
  std::optional<Connection> connection_;
  Duration lineFree_ = Duration::zero();
};

}  // namespace

void SimulatedSerialDevices::plug(int number, Instrument& instrument, std::int32_t baud) {
  port(number) = {SerialSocket::State::Free, &instrument, baud};
}

std::unique_ptr<SerialLine> SimulatedSerialDevices::open(int number,
                                                         const SerialSettings& settings) {
  const bool numbered = number >= 1 && number <= kPorts;
  if (!numbered || port(number).state == SerialSocket::State::Missing) {
    throw SerialFault(kSerialInvalidPort, "COM" + std::to_string(number) + " does not exist");
  }
  const SerialSocket& socket = port(number);
  bool& open = open_.at(static_cast<std::size_t>(number - 1));
  if (socket.state == SerialSocket::State::InUse || open) {
    throw SerialFault(kSerialAlreadyOpen, "COM" + std::to_string(number) + " is in use");
  }
  const bool gone = socket.instrument != nullptr && socket.instrument->faults.linksGone();
  if (socket.state == SerialSocket::State::Broken || gone) {
    throw SerialFault(kSerialUnavailable, "COM" + std::to_string(number) + " cannot be opened");
  }
  check(settings);
  return std::make_unique<SimulatedLine>(clock_, socket, settings, open);
}

}  // namespace zansim
