#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "platform/builtin/instrument_session.hpp"
#include "platform/posix/file_descriptor.hpp"
#include "platform/posix/usbtmc_devices.hpp"

namespace lumodevice::posix {

/// An instrument behind the kernel's USBTMC driver (Linux 4.20 or later). A read that brings fewer
/// bytes than asked ended with END.
///
/// While a session is open no other process gets one: the device is locked with a record lock,
/// which several sessions of one process share. Such a lock falls as soon as the process closes any
/// of its descriptors of the device, so every write takes it again.
class UsbtmcSession : public platform::InstrumentSession {
 public:
  /// Null on failure, with the reason in `status`: VI_ERROR_NPERMISSION where the user may not use
  /// the device, VI_ERROR_RSRC_LOCKED where another process does.
  [[nodiscard]] static std::unique_ptr<UsbtmcSession> open(const UsbtmcDevice& device,
                                                           io::ViStatus& status);

  UsbtmcSession(FileDescriptor device, std::string interfaceName);

  [[nodiscard]] io::ViStatus read(std::span<char> buffer, std::uint32_t& count) override;
  [[nodiscard]] io::ViStatus write(std::string_view data, std::uint32_t& count) override;

  /// Nothing: the driver keeps no bytes between reads. What was not read is still in the
  /// instrument, which drops it itself when the next message comes, and only asking would get it
  /// out.
  std::string discardUnread() override { return {}; }

 protected:
  io::ViStatus applySettings() override;

 private:
  [[nodiscard]] bool waitFor(short events) const;
  [[nodiscard]] bool endedMessage(bool wasShort) const;

  FileDescriptor device_;
  bool kernelTimesOut_ = false;
};

}  // namespace lumodevice::posix
