#include "lumodevice/io/serial_port.hpp"

#include <array>
#include <charconv>
#include <optional>
#include <utility>

namespace lumodevice::io {

namespace {

constexpr int kHighestPort = 16;
constexpr std::string_view kParities = "emnosEMNOS";
constexpr std::size_t kParityCount = kParities.size() / 2;
constexpr std::array<std::string_view, 3> kStopBits{"1", "1.5", "2"};

std::string_view withoutBlanks(std::string_view text) {
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::optional<std::int32_t> wholeNumber(std::string_view text, std::int32_t lowest) {
  std::int32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || number < lowest) return {};
  return number;
}

bool setBaud(SerialSettings& settings, std::string_view field) {
  const auto baud = wholeNumber(field, 1);
  if (baud) settings.baud = *baud;
  return baud.has_value();
}

bool setParity(SerialSettings& settings, std::string_view field) {
  const auto place = field.size() == 1 ? kParities.find(field[0]) : std::string_view::npos;
  if (place == std::string_view::npos) return false;
  settings.parity = kParities[place % kParityCount];
  return true;
}

bool setDataBits(SerialSettings& settings, std::string_view field) {
  const auto bits = wholeNumber(field, 4);
  if (!bits || *bits > 8) return false;
  settings.dataBits = *bits;
  return true;
}

bool setStopBits(SerialSettings& settings, std::string_view field) {
  for (const std::string_view known : kStopBits) {
    if (field != known) continue;
    settings.stopBits = known;
    return true;
  }
  return false;
}

/// The fields of `text` over `settings`; nothing for a bad value or a field too many.
std::optional<SerialSettings> merged(SerialSettings settings, std::string_view text) {
  constexpr std::array setters{setBaud, setParity, setDataBits, setStopBits};
  for (const auto setter : setters) {
    const auto comma = text.find(',');
    const std::string_view field = withoutBlanks(text.substr(0, comma));
    if (!field.empty() && !setter(settings, field)) return {};
    if (comma == std::string_view::npos) return settings;
    text.remove_prefix(comma + 1);
  }
  return {};
}

[[noreturn]] void refuseSettings(std::string_view text) {
  throw SerialFault(kSerialInvalidValue, "invalid serial settings \"" + std::string(text) + "\"");
}

}  // namespace

void SerialPort::setCommPort(int port) {
  if (port < 1 || port > kHighestPort) {
    throw SerialFault(kSerialInvalidPort, "no such port: COM" + std::to_string(port));
  }
  if (line_)
    throw SerialFault(kSerialInvalidWhileOpen, "the port number is fixed while it is open");
  port_ = port;
}

std::string SerialPort::Settings() const {
  if (!refused_.empty()) return refused_;
  return std::to_string(settings_.baud) + ',' + settings_.parity + ',' +
         std::to_string(settings_.dataBits) + ',' + settings_.stopBits;
}

void SerialPort::setSettings(std::string_view settings) {
  const auto wanted = merged(settings_, settings);
  if (line_) {
    if (!wanted) refuseSettings(settings);
    line_->configure(*wanted);
  }
  refused_ = wanted ? std::string_view() : settings;
  if (wanted) settings_ = *wanted;
}

void SerialPort::setPortOpen(bool open) {
  if (!open) {
    line_.reset();
    queue_.clear();
    return;
  }
  if (line_) throw SerialFault(kSerialAlreadyOpen, "the port is already open");
  if (!refused_.empty()) refuseSettings(refused_);
  line_ = devices_.open(port_, settings_);
}

void SerialPort::Output(std::string_view data) {
  if (!line_) throw SerialFault(kSerialNotOpen, "the port is not open");
  if (data.empty()) return;
  leaves(data);
  line_->write(data);
}

std::string SerialPort::Input() {
  if (!line_) throw SerialFault(kSerialNotOpen, "the port is not open");
  line_->receive(queue_);
  return std::exchange(queue_, {});
}

std::size_t SerialPort::InBufferCount() {
  if (!line_) return 0;
  line_->receive(queue_);
  return queue_.size();
}

}  // namespace lumodevice::io
