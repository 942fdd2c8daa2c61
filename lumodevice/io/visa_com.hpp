#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "lumodevice/export.hpp"
#include "lumodevice/io/bytes.hpp"
#include "lumodevice/io/fault.hpp"

/// The parts of the VISA COM 3.0 object model that the component uses. Every call throws
/// VisaComFault.
///
///     const auto device = host.visaCom.createFormattedIO488();
///     device->setIO(host.visaCom.createResourceManager()->Open("GPIB0::7::INSTR", 0, 2000, ""));
///     device->WriteString("*IDN?\n", true);
///     std::cout << device->ReadString();
namespace lumodevice::io {

inline constexpr std::uint32_t E_VISA_SYSTEM_ERROR = 0x80040000;
inline constexpr std::uint32_t E_VISA_TMO = 0x80040015;
inline constexpr std::uint32_t E_VISA_NSUP_FMT = 0x80040041;
inline constexpr std::uint32_t E_VISA_COM_NOT_INSTALLED = 0x80040154;

/// End modes of a serial-like resource.
inline constexpr int kSerialEndNone = 0;
inline constexpr int kSerialEndTerminationCharacter = 2;

/// Buffers of the formatted-I/O object, one bit each.
inline constexpr int kInputBuffer = 0x10;
inline constexpr int kOutputBuffer = 0x20;

/// An open session (IMessage, with ISerial's end modes). It is closed when its last holder lets it
/// go.
class LUMODEVICE_API MessageSession {
 public:
  virtual ~MessageSession() = default;
  /// Milliseconds.
  virtual void setTimeout(std::int32_t milliseconds) = 0;
  virtual void setTerminationCharacterEnabled(bool enabled) = 0;
  /// Throws for a resource that is not serial-like.
  virtual void setSerialEndIn(int mode) = 0;
  virtual void setSerialEndOut(int mode) = 0;
  /// Drops what the instrument has sent and nobody has read, where that can be done without asking
  /// the instrument, and tells what it was.
  virtual std::string discardUnread() { return {}; }
};

/// The formatted-I/O object (IFormattedIO488): one read and one write buffer over a session.
class LUMODEVICE_API FormattedIO488 {
 public:
  virtual ~FormattedIO488() = default;
  /// The session, or null. Setting one drops whatever is buffered.
  [[nodiscard]] virtual std::shared_ptr<MessageSession> IO() const = 0;
  virtual void setIO(std::shared_ptr<MessageSession> session) = 0;

  /// Buffers `data`; with `flushAndEnd` the whole buffer goes out with END on its last byte. No
  /// terminator is added.
  virtual void WriteString(std::string_view data, bool flushAndEnd) = 0;
  /// One message up to its end as the session defines it, terminator included.
  virtual std::string ReadString() = 0;
  /// The data bytes of a definite-length block of unsigned bytes. Without `seekToBlock` the first
  /// byte must be "#"; with `flushToEnd` the rest of the message is read and dropped.
  virtual Bytes ReadIEEEBlock(bool seekToBlock, bool flushToEnd) = 0;
  /// `command` as it stands, then "#", one digit, the byte count and the bytes.
  virtual void WriteIEEEBlock(std::string_view command, std::span<const std::uint8_t> data,
                              bool flushAndEnd) = 0;
  virtual void FlushWrite(bool sendEnd) = 0;
  virtual void SetBufferSize(int bufferMask, std::int32_t bytes) = 0;
};

class LUMODEVICE_API ResourceManager {
 public:
  virtual ~ResourceManager() = default;
  virtual std::shared_ptr<MessageSession> Open(std::string_view resourceName,
                                               std::int32_t accessMode, std::int32_t openTimeout,
                                               std::string_view optionString) = 0;
};

/// Makes the two objects; throws E_VISA_COM_NOT_INSTALLED where VISA COM is not installed.
class LUMODEVICE_API VisaCom {
 public:
  virtual ~VisaCom() = default;
  [[nodiscard]] virtual std::shared_ptr<ResourceManager> createResourceManager() = 0;
  [[nodiscard]] virtual std::shared_ptr<FormattedIO488> createFormattedIO488() = 0;
};

}  // namespace lumodevice::io
