#include "platform/posix/serial_devices.hpp"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <poll.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <system_error>
#include <termios.h>

#include "platform/device_list.hpp"
#include "platform/posix/file_descriptor.hpp"
#include "platform/posix/serial_settings.hpp"
#include "platform/posix/wait_ready.hpp"

namespace lumodevice::posix {

namespace {

using platform::Deadline;

/// What one call takes at most, so that a device that never stops sending cannot hold its reader.
constexpr int kPiecesPerReceive = 16;

class TermiosLine : public io::SerialLine {
 public:
  TermiosLine(FileDescriptor device, std::chrono::milliseconds writeTimeout)
      : device_(std::move(device)),
        writeTimeout_(static_cast<std::uint32_t>(writeTimeout.count())) {}

  /// What was not sent is dropped: closing must not wait for a device that takes nothing.
  ~TermiosLine() override {
    ::tcflush(device_.get(), TCIOFLUSH);
    ::ioctl(device_.get(), TIOCNXCL);
  }

  TermiosLine(const TermiosLine&) = delete;
  TermiosLine& operator=(const TermiosLine&) = delete;

  /// Raises DTR, which tells the instrument that someone listens, and drops what came before.
  void start(const io::SerialSettings& settings) {
    configure(settings);
    int ready = TIOCM_DTR;
    ::ioctl(device_.get(), TIOCMBIS, &ready);
    ::tcflush(device_.get(), TCIOFLUSH);
  }

  void configure(const io::SerialSettings& settings) override {
    applySerialSettings(device_.get(), settings);
  }

  void write(std::string_view data) override {
    const Deadline deadline(writeTimeout_);
    while (!data.empty()) {
      const ssize_t size = ::write(device_.get(), data.data(), data.size());
      if (size > 0) {
        data.remove_prefix(static_cast<std::size_t>(size));
      } else if (size < 0 && errno != EAGAIN && errno != EINTR) {
        throw io::SerialFault(io::kSerialUnavailable, "the serial device is gone: " +
                                                          std::generic_category().message(errno));
      } else if (!waitReady(device_.get(), POLLOUT, deadline)) {
        throw io::SerialFault(io::kSerialDeviceBusy, "the serial device does not take the bytes");
      }
    }
  }

  /// Nothing to read is EAGAIN; an end of file is what a hung-up terminal reads as. What came
  /// before the end is handed over first, and the next call tells of it.
  void receive(std::string& queue) override {
    std::array<char, 4096> piece;
    for (int pieces = 0; pieces < kPiecesPerReceive; ++pieces) {
      const ssize_t size = ::read(device_.get(), piece.data(), piece.size());
      if (size > 0) {
        queue.append(piece.data(), static_cast<std::size_t>(size));
        continue;
      }
      const bool waits = size < 0 && (errno == EAGAIN || errno == EINTR);
      if (waits || pieces > 0) return;
      throw io::SerialFault(io::kSerialReadError, "the serial device is gone");
    }
  }

 private:
  FileDescriptor device_;
  std::uint32_t writeTimeout_;
};

[[noreturn]] void failOpen(const std::string& path, int error) {
  if (error == EBUSY) {
    throw io::SerialFault(io::kSerialAlreadyOpen, path + " is in use by another program");
  }
  std::string what = "cannot open " + path + ": " + std::generic_category().message(error);
  if (error == EACCES) what += "; " + platform::permissionAdvice(path);
  throw io::SerialFault(error == EACCES ? io::kSerialNoPermission : io::kSerialUnavailable, what);
}

/// The kernel has a node for every built-in port that a machine might have; those without a UART
/// are of type 0.
bool hasUart(const SystemRoots& roots, const std::string& name) {
  const std::string type = firstLine(roots.sys / "class" / "tty" / name / "type");
  return !type.empty() && type != "0";
}

}  // namespace

std::vector<std::string> listSerialDevices(const SystemRoots& roots) {
  std::vector<std::string> devices;
  for (const std::string& name : numberedEntries(roots.dev, "ttyS")) {
    if (hasUart(roots, name)) devices.push_back((roots.dev / name).string());
  }
  for (const char* kind : {"ttyUSB", "ttyACM"}) {
    for (const std::string& name : numberedEntries(roots.dev, kind)) {
      devices.push_back((roots.dev / name).string());
    }
  }
  return devices;
}

std::string TermiosDevices::deviceOf(int port) const {
  if (const auto named = named_.find(port); named != named_.end()) return named->second;
  if (!given_.empty()) {
    const auto device = given_.find(port);
    return device == given_.end() ? std::string() : device->second;
  }
  const auto devices = listSerialDevices(options_.roots);
  if (port < 1 || static_cast<std::size_t>(port) > devices.size()) return {};
  return devices[static_cast<std::size_t>(port) - 1];
}

/// A device that stands behind no port takes the last free one.
int TermiosDevices::portNamed(std::string_view device) {
  std::error_code missing;
  const auto same = [&](const std::string& other) {
    return other == device || std::filesystem::equivalent(other, device, missing);
  };
  int free = 0;
  for (int port = 1; port <= kPorts; ++port) {
    const std::string behind = deviceOf(port);
    if (behind.empty()) {
      free = port;
    } else if (same(behind)) {
      return port;
    }
  }
  if (free != 0) named_.emplace(free, device);
  return free;
}

std::unique_ptr<io::SerialLine> TermiosDevices::open(int port, const io::SerialSettings& settings) {
  const std::string path = deviceOf(port);
  if (path.empty()) {
    throw io::SerialFault(io::kSerialInvalidPort, "there is no COM" + std::to_string(port));
  }
  FileDescriptor device(::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
  if (!device) failOpen(path, errno);
  if (::isatty(device.get()) == 0) failOpen(path, ENOTTY);
  // TIOCEXCL alone does not stop a privileged program, nor does flock() stop one that never asks.
  if (::flock(device.get(), LOCK_EX | LOCK_NB) != 0) failOpen(path, EBUSY);
  ::ioctl(device.get(), TIOCEXCL);
  auto line = std::make_unique<TermiosLine>(std::move(device), options_.writeTimeout);
  line->start(settings);
  return line;
}

}  // namespace lumodevice::posix

namespace lumodevice::platform {

std::unique_ptr<MachineSerialDevices> machineSerialDevices(std::map<int, std::string> given) {
  return std::make_unique<posix::TermiosDevices>(std::move(given));
}

}  // namespace lumodevice::platform
