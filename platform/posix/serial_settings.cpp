#include "platform/posix/serial_settings.hpp"

#include <array>
#include <cerrno>
#include <optional>
#include <system_error>
#include <termios.h>

namespace lumodevice::posix {

namespace {

struct BaudRate {
  std::int32_t baud;
  speed_t speed;
};

constexpr std::array kBaudRates{
    BaudRate{50, B50},           BaudRate{75, B75},           BaudRate{110, B110},
    BaudRate{134, B134},         BaudRate{150, B150},         BaudRate{200, B200},
    BaudRate{300, B300},         BaudRate{600, B600},         BaudRate{1200, B1200},
    BaudRate{1800, B1800},       BaudRate{2400, B2400},       BaudRate{4800, B4800},
    BaudRate{9600, B9600},       BaudRate{19200, B19200},     BaudRate{38400, B38400},
    BaudRate{57600, B57600},     BaudRate{115200, B115200},   BaudRate{230400, B230400},
    BaudRate{460800, B460800},   BaudRate{500000, B500000},   BaudRate{576000, B576000},
    BaudRate{921600, B921600},   BaudRate{1000000, B1000000}, BaudRate{1152000, B1152000},
    BaudRate{1500000, B1500000}, BaudRate{2000000, B2000000}, BaudRate{2500000, B2500000},
    BaudRate{3000000, B3000000}, BaudRate{3500000, B3500000}, BaudRate{4000000, B4000000}};

constexpr tcflag_t kFrameFlags = CSIZE | PARENB | PARODD | CMSPAR | CSTOPB;

[[noreturn]] void refuse(const io::SerialSettings& settings) {
  throw io::SerialFault(io::kSerialInvalidValue,
                        "the serial device cannot do " + std::to_string(settings.baud) + "," +
                            settings.parity + "," + std::to_string(settings.dataBits) + "," +
                            settings.stopBits);
}

speed_t speedOf(const io::SerialSettings& settings) {
  for (const auto& [baud, speed] : kBaudRates) {
    if (baud == settings.baud) return speed;
  }
  refuse(settings);
}

std::optional<tcflag_t> sizeFlags(int dataBits) {
  switch (dataBits) {
    case 5:
      return CS5;
    case 6:
      return CS6;
    case 7:
      return CS7;
    case 8:
      return CS8;
    default:
      return {};
  }
}

std::optional<tcflag_t> parityFlags(char parity) {
  switch (parity) {
    case 'n':
      return 0;
    case 'e':
      return PARENB;
    case 'o':
      return PARENB | PARODD;
    case 's':
      return PARENB | CMSPAR;
    case 'm':
      return PARENB | PARODD | CMSPAR;
    default:
      return {};
  }
}

/// With five data bits a second stop bit is half a bit long, and with more it is a whole one.
std::optional<tcflag_t> stopFlags(const io::SerialSettings& settings) {
  if (settings.stopBits == "1") return 0;
  if (settings.stopBits == (settings.dataBits == 5 ? "1.5" : "2")) return CSTOPB;
  return {};
}

tcflag_t frameFlags(const io::SerialSettings& settings) {
  const auto size = sizeFlags(settings.dataBits);
  const auto parity = parityFlags(settings.parity);
  const auto stop = stopFlags(settings);
  if (!size || !parity || !stop) refuse(settings);
  return *size | *parity | *stop;
}

[[noreturn]] void failGone() {
  throw io::SerialFault(io::kSerialUnavailable,
                        "the serial device is gone: " + std::generic_category().message(errno));
}

}  // namespace

void applySerialSettings(int device, const io::SerialSettings& settings) {
  const speed_t speed = speedOf(settings);
  const tcflag_t frame = frameFlags(settings);
  termios line{};
  if (::tcgetattr(device, &line) != 0) failGone();
  ::cfmakeraw(&line);
  line.c_iflag &= ~static_cast<tcflag_t>(IXOFF | IXANY | INPCK);
  line.c_cflag &= ~(kFrameFlags | static_cast<tcflag_t>(HUPCL | CRTSCTS));
  line.c_cflag |= frame | static_cast<tcflag_t>(CLOCAL | CREAD);
  line.c_cc[VMIN] = 1;
  line.c_cc[VTIME] = 0;
  ::cfsetispeed(&line, speed);
  ::cfsetospeed(&line, speed);
  if (::tcsetattr(device, TCSANOW, &line) != 0) {
    if (errno == EINVAL) refuse(settings);
    failGone();
  }
  // tcsetattr() is content when it could do any of it; what the device really does must be asked.
  termios set{};
  if (::tcgetattr(device, &set) != 0) failGone();
  if ((set.c_cflag & kFrameFlags) != frame || ::cfgetospeed(&set) != speed) refuse(settings);
}

}  // namespace lumodevice::posix
