#include "platform/windows/serial_settings.hpp"

#include <array>
#include <optional>
#include <string>

#include "platform/windows/text.hpp"

namespace lumodevice::windows {

namespace {

[[noreturn]] void refuse(const io::SerialSettings& settings) {
  throw io::SerialFault(io::kSerialInvalidValue,
                        "the serial device cannot do " + std::to_string(settings.baud) + "," +
                            settings.parity + "," + std::to_string(settings.dataBits) + "," +
                            settings.stopBits);
}

std::optional<BYTE> parityOf(char parity) {
  struct Parity {
    char letter;
    BYTE number;
  };
  constexpr std::array kParities{Parity{'n', NOPARITY}, Parity{'o', ODDPARITY},
                                 Parity{'e', EVENPARITY}, Parity{'m', MARKPARITY},
                                 Parity{'s', SPACEPARITY}};
  for (const Parity& known : kParities) {
    if (known.letter == parity) return known.number;
  }
  return {};
}

/// With five data bits a second stop bit is half a bit long, and with more it is a whole one.
std::optional<BYTE> stopOf(const io::SerialSettings& settings) {
  if (settings.stopBits == "1") return ONESTOPBIT;
  if (settings.stopBits != (settings.dataBits == 5 ? "1.5" : "2")) return {};
  return settings.dataBits == 5 ? ONE5STOPBITS : TWOSTOPBITS;
}

[[noreturn]] void failGone() {
  throw io::SerialFault(io::kSerialUnavailable,
                        "the serial device is gone: " + errorText(::GetLastError()));
}

/// A device that does not know the settings says so in several ways; one that is gone in others.
bool tellsOfSettings(DWORD error) {
  return error == ERROR_INVALID_PARAMETER || error == ERROR_NOT_SUPPORTED;
}

}  // namespace

void applySerialSettings(HANDLE device, const io::SerialSettings& settings) {
  const auto parity = parityOf(settings.parity);
  const auto stop = stopOf(settings);
  if (!parity || !stop || settings.dataBits < 5 || settings.dataBits > 8 || settings.baud <= 0) {
    refuse(settings);
  }
  DCB line{};
  line.DCBlength = sizeof line;
  if (::GetCommState(device, &line) == 0) failGone();
  line = {};
  line.DCBlength = sizeof line;
  line.BaudRate = static_cast<DWORD>(settings.baud);
  line.ByteSize = static_cast<BYTE>(settings.dataBits);
  line.Parity = *parity;
  line.StopBits = *stop;
  line.fBinary = TRUE;
  line.fDtrControl = DTR_CONTROL_ENABLE;
  line.fRtsControl = RTS_CONTROL_ENABLE;
  line.XonChar = 17;
  line.XoffChar = 19;
  if (::SetCommState(device, &line) == 0) {
    if (tellsOfSettings(::GetLastError())) refuse(settings);
    failGone();
  }
  // Some drivers are content when they could do any of it; what the device really does is asked.
  DCB set{};
  set.DCBlength = sizeof set;
  if (::GetCommState(device, &set) == 0) failGone();
  if (set.BaudRate != line.BaudRate || set.ByteSize != line.ByteSize || set.Parity != line.Parity ||
      set.StopBits != line.StopBits) {
    refuse(settings);
  }
}

}  // namespace lumodevice::windows
