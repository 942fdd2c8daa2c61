#include "platform/posix/usbtmc_session.hpp"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <limits>
#include <linux/usb/tmc.h>
#include <poll.h>
#include <sys/ioctl.h>

#include "platform/posix/wait_ready.hpp"

namespace lumodevice::posix {

namespace {

using platform::Deadline;

/// The driver refuses shorter time-outs.
constexpr std::uint32_t kLeastTimeout = 100;

/// False when another process holds the device.
bool lockDevice(int device) {
  struct flock whole {};
  whole.l_type = F_WRLCK;
  whole.l_whence = SEEK_SET;
  return ::fcntl(device, F_SETLK, &whole) == 0 || (errno != EACCES && errno != EAGAIN);
}

io::ViStatus openStatus(int error) {
  switch (error) {
    case EACCES:
    case EPERM:
      return io::VI_ERROR_NPERMISSION;
    case EBUSY:
      return io::VI_ERROR_RSRC_BUSY;
    case ENOENT:
    case ENODEV:
    case ENXIO:
      return io::VI_ERROR_RSRC_NFOUND;
    default:
      return io::VI_ERROR_SYSTEM_ERROR;
  }
}

io::ViStatus transferStatus(int error) {
  switch (error) {
    case ETIMEDOUT:
      return io::VI_ERROR_TMO;
    case ENODEV:
    case ENXIO:
    case ESHUTDOWN:
    case EPIPE:
      return io::VI_ERROR_CONN_LOST;
    case ENOMEM:
      return io::VI_ERROR_ALLOC;
    default:
      return io::VI_ERROR_IO;
  }
}

}  // namespace

std::unique_ptr<UsbtmcSession> UsbtmcSession::open(const UsbtmcDevice& device,
                                                   io::ViStatus& status) {
  FileDescriptor descriptor(::open(device.path.c_str(), O_RDWR | O_CLOEXEC | O_NOCTTY));
  if (!descriptor) {
    status = openStatus(errno);
    return nullptr;
  }
  if (!lockDevice(descriptor.get())) {
    status = io::VI_ERROR_RSRC_LOCKED;
    return nullptr;
  }
  status = io::VI_SUCCESS;
  return std::make_unique<UsbtmcSession>(std::move(descriptor), device.interfaceName);
}

/// With automatic abort the driver calls off a transfer that timed out, so that the late answer is
/// not taken for the next one's.
UsbtmcSession::UsbtmcSession(FileDescriptor device, std::string interfaceName)
    : InstrumentSession(std::move(interfaceName)), device_(std::move(device)) {
  std::uint8_t on = 1;
  (void)::ioctl(device_.get(), USBTMC_IOCTL_AUTO_ABORT, &on);
  (void)UsbtmcSession::applySettings();
}

/// What the driver or the instrument cannot do is left to the message's own end.
io::ViStatus UsbtmcSession::applySettings() {
  std::uint32_t timeout =
      std::clamp<std::uint32_t>(settings().timeout, kLeastTimeout,
                                static_cast<std::uint32_t>(std::numeric_limits<int>::max()));
  kernelTimesOut_ = ::ioctl(device_.get(), USBTMC_IOCTL_SET_TIMEOUT, &timeout) == 0;
  std::uint8_t end = settings().sendEnd ? 1 : 0;
  (void)::ioctl(device_.get(), USBTMC_IOCTL_EOM_ENABLE, &end);
  usbtmc_termchar terminator{
      .term_char = static_cast<std::uint8_t>(settings().terminator),
      .term_char_enabled = static_cast<std::uint8_t>(settings().terminatorEnabled ? 1 : 0)};
  (void)::ioctl(device_.get(), USBTMC_IOCTL_CONFIG_TERMCHAR, &terminator);
  return io::VI_SUCCESS;
}

/// The driver keeps the time-out itself (and does not answer poll() for plain reads and writes);
/// anything else that stands for a device is waited for here.
bool UsbtmcSession::waitFor(short events) const {
  return kernelTimesOut_ || waitReady(device_.get(), events, Deadline(settings().timeout));
}

bool UsbtmcSession::endedMessage(bool wasShort) const {
  std::uint8_t attributes = 0;
  if (::ioctl(device_.get(), USBTMC_IOCTL_MSG_IN_ATTR, &attributes) != 0) return wasShort;
  return (attributes & 1U) != 0;
}

io::ViStatus UsbtmcSession::read(std::span<char> buffer, std::uint32_t& count) {
  count = 0;
  if (buffer.empty()) return io::VI_SUCCESS_MAX_CNT;
  if (!waitFor(POLLIN)) return io::VI_ERROR_TMO;
  ssize_t size = 0;
  do {
    size = ::read(device_.get(), buffer.data(), buffer.size());
  } while (size < 0 && errno == EINTR);
  if (size < 0) return transferStatus(errno);
  // The driver may bring an empty message; from anything else no byte at all is the end of the
  // line.
  if (size == 0 && !kernelTimesOut_) return io::VI_ERROR_CONN_LOST;
  count = static_cast<std::uint32_t>(size);
  const bool isShort = count < buffer.size();
  if (endedMessage(isShort)) return io::VI_SUCCESS;
  const bool terminated =
      settings().terminatorEnabled && count > 0 && buffer[count - 1] == settings().terminator;
  if (terminated) return io::VI_SUCCESS_TERM_CHAR;
  return isShort ? io::VI_SUCCESS : io::VI_SUCCESS_MAX_CNT;
}

io::ViStatus UsbtmcSession::write(std::string_view data, std::uint32_t& count) {
  count = 0;
  if (!lockDevice(device_.get())) return io::VI_ERROR_RSRC_LOCKED;
  while (count < data.size()) {
    if (!waitFor(POLLOUT)) return io::VI_ERROR_TMO;
    const ssize_t size = ::write(device_.get(), data.data() + count, data.size() - count);
    if (size < 0 && errno != EINTR) return transferStatus(errno);
    if (size == 0) return io::VI_ERROR_IO;
    if (size > 0) count += static_cast<std::uint32_t>(size);
  }
  return io::VI_SUCCESS;
}

}  // namespace lumodevice::posix
