#include "platform/windows/serial_devices.hpp"

#include <array>
#include <windows.h>

#include "platform/same_name.hpp"
#include "platform/windows/handle.hpp"
#include "platform/windows/serial_settings.hpp"
#include "platform/windows/text.hpp"

namespace lumodevice::windows {

namespace {

constexpr int kHighestPort = 256;
/// What one write may take in all, in milliseconds.
constexpr DWORD kWriteTimeout = 2000;
/// What one call takes at most, so that a device that never stops sending cannot hold its reader.
constexpr int kPiecesPerReceive = 16;

std::string nameOf(int port) {
  return "COM" + std::to_string(port);
}

bool isThere(const std::string& name) {
  std::array<wchar_t, 1024> target{};
  return ::QueryDosDeviceW(wide(name).c_str(), target.data(), static_cast<DWORD>(target.size())) !=
         0;
}

/// "COM3" of "\\.\COM3", which is how a port above COM9 has to be opened.
std::string_view withoutNamespace(std::string_view device) {
  constexpr std::string_view kNamespace = "\\\\.\\";
  return device.starts_with(kNamespace) ? device.substr(kNamespace.size()) : device;
}

class ComLine : public io::SerialLine {
 public:
  explicit ComLine(Handle device) : device_(std::move(device)) {}

  /// What was not sent is dropped: closing must not wait for a device that takes nothing.
  ~ComLine() override { purge(); }

  ComLine(const ComLine&) = delete;
  ComLine& operator=(const ComLine&) = delete;

  /// Reads hand over what has arrived, writes end after their time; what came before is dropped.
  void start(const io::SerialSettings& settings) {
    configure(settings);
    COMMTIMEOUTS times{.ReadIntervalTimeout = MAXDWORD,
                       .ReadTotalTimeoutMultiplier = 0,
                       .ReadTotalTimeoutConstant = 0,
                       .WriteTotalTimeoutMultiplier = 0,
                       .WriteTotalTimeoutConstant = kWriteTimeout};
    if (::SetCommTimeouts(device_.get(), &times) == 0) failGone(io::kSerialUnavailable);
    purge();
  }

  void configure(const io::SerialSettings& settings) override {
    applySerialSettings(device_.get(), settings);
  }

  void write(std::string_view data) override {
    DWORD size = 0;
    if (::WriteFile(device_.get(), data.data(), static_cast<DWORD>(data.size()), &size, nullptr) ==
        0) {
      failGone(io::kSerialUnavailable);
    }
    if (size < data.size()) {
      throw io::SerialFault(io::kSerialDeviceBusy, "the serial device does not take the bytes");
    }
  }

  void receive(std::string& queue) override {
    std::array<char, 4096> piece;
    for (int pieces = 0; pieces < kPiecesPerReceive; ++pieces) {
      DWORD size = 0;
      const bool read = ::ReadFile(device_.get(), piece.data(), piece.size(), &size, nullptr) != 0;
      queue.append(piece.data(), size);
      // What came before the end is handed over first, and the next call tells of it.
      if (pieces == 0 && (!read || (size == 0 && !isThere()))) failGone(io::kSerialReadError);
      if (!read || size == 0) return;
    }
  }

 private:
  /// Not every driver lets a read fail when the device is gone.
  [[nodiscard]] bool isThere() const {
    DWORD errors = 0;
    COMSTAT state{};
    return ::ClearCommError(device_.get(), &errors, &state) != 0;
  }

  [[noreturn]] static void failGone(int number) {
    throw io::SerialFault(number, "the serial device is gone: " + errorText(::GetLastError()));
  }

  void purge() {
    (void)::PurgeComm(device_.get(), PURGE_TXABORT | PURGE_RXABORT | PURGE_TXCLEAR | PURGE_RXCLEAR);
  }

  Handle device_;
};

/// Windows opens a port for one program alone, and has one number for that and for what a user may
/// not open.
[[noreturn]] void failOpen(const std::string& device, DWORD error) {
  switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
      throw io::SerialFault(io::kSerialInvalidPort, "there is no " + device);
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
      throw io::SerialFault(io::kSerialAlreadyOpen, device + " is in use by another program");
    default:
      throw io::SerialFault(
          io::kSerialUnavailable,
          "cannot open " + device + ": " + errorText(error) + " (" + std::to_string(error) + ")");
  }
}

}  // namespace

std::vector<std::string> listComPorts() {
  std::vector<std::string> names;
  for (int port = 1; port <= kHighestPort; ++port) {
    if (isThere(nameOf(port))) names.push_back(nameOf(port));
  }
  return names;
}

std::string ComPorts::deviceOf(int port) const {
  if (const auto named = named_.find(port); named != named_.end()) return named->second;
  if (!given_.empty()) {
    const auto device = given_.find(port);
    return device == given_.end() ? std::string() : device->second;
  }
  return port >= 1 && port <= kPorts && isThere(nameOf(port)) ? nameOf(port) : std::string();
}

int ComPorts::portNamed(std::string_view device) {
  int free = 0;
  for (int port = 1; port <= kPorts; ++port) {
    const std::string behind = deviceOf(port);
    if (behind.empty()) {
      free = port;
    } else if (platform::sameName(withoutNamespace(behind), withoutNamespace(device))) {
      return port;
    }
  }
  if (free != 0) named_.emplace(free, device);
  return free;
}

std::unique_ptr<io::SerialLine> ComPorts::open(int port, const io::SerialSettings& settings) {
  const std::string device = deviceOf(port);
  if (device.empty()) {
    throw io::SerialFault(io::kSerialInvalidPort, "there is no " + nameOf(port));
  }
  const std::wstring path = wide("\\\\.\\" + std::string(withoutNamespace(device)));
  Handle opened(::CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                              0, nullptr));
  if (!opened) failOpen(device, ::GetLastError());
  auto line = std::make_unique<ComLine>(std::move(opened));
  line->start(settings);
  return line;
}

}  // namespace lumodevice::windows

namespace lumodevice::platform {

std::unique_ptr<MachineSerialDevices> machineSerialDevices(std::map<int, std::string> given) {
  return std::make_unique<windows::ComPorts>(std::move(given));
}

}  // namespace lumodevice::platform
