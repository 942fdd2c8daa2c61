#include "hosts/zanctl/links/serial_witness.hpp"

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace zanctl {

using namespace lumodevice::io;

namespace {

constexpr std::string_view kNameADevice = "name the device with --port COMn=DEVICE";

std::string portName(int port) {
  return "COM" + std::to_string(port);
}

bool isAboutPermission(const std::pair<const int, std::string>& refused) {
  return refused.second.find(std::generic_category().message(EACCES)) != std::string::npos;
}

}  // namespace

std::unique_ptr<SerialLine> WitnessedSerialDevices::open(int port, const SerialSettings& settings) {
  try {
    auto line = devices_.open(port, settings);
    opened_.insert(port);
    refused_.erase(port);
    return line;
  } catch (const SerialFault& fault) {
    if (fault.number() != kSerialInvalidPort) {
      refused_.insert_or_assign(port, fault.what());
    }
    throw;
  }
}

std::string WitnessedSerialDevices::advice() const {
  std::string text;
  for (const auto& [port, reason] : refused_) {
    text += portName(port) + ": " + reason + "; ";
  }
  std::string answerless;
  for (const int port : opened_) {
    answerless += (answerless.empty() ? "" : ", ") + portName(port);
  }
  if (!answerless.empty()) {
    return text + "no ZAN answered on " + answerless +
           "; check its power, cable and baud rate, or " + std::string(kNameADevice);
  }
  // Another name is of no help where the right device only lacks the permission.
  if (!refused_.empty() && std::ranges::all_of(refused_, isAboutPermission)) {
    text.erase(text.size() - std::string_view("; ").size());
    return text;
  }
  return text + (refused_.empty() ? "there is no COM port; " : "") + std::string(kNameADevice);
}

std::unique_ptr<SerialLine> RefusingSerialDevices::open(int port, const SerialSettings&) {
  if (!asked_) {
    errors_.line("zanctl: --virtual-time cannot run a real serial device: it answers in real time");
  }
  asked_ = true;
  throw SerialFault(kSerialUnavailable, portName(port) + " is not used in virtual time");
}

}  // namespace zanctl
