#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace zansim {

/// Errors of the SCPI error queue.
enum class Error : std::int16_t {
  None = 0,
  DataType = -104,
  ParameterNotAllowed = -108,
  MissingParameter = -109,
  UndefinedHeader = -113,
  InvalidNumber = -121,
  InvalidSuffix = -131,
  InvalidBlock = -161,
  SettingsConflict = -221,
  OutOfRange = -222,
  TooMuchData = -223,
  IllegalParameter = -224,
  HardwareMissing = -241,
  DeviceSpecific = -300,
  QueueOverflow = -350,
  InputOverrun = -363,
  QueryInterrupted = -410,
  QueryUnterminated = -420,
  QueryDeadlocked = -430,
};

/// Bits of the standard event status register.
inline constexpr unsigned kOperationComplete = 0x01;
inline constexpr unsigned kQueryError = 0x04;
inline constexpr unsigned kDeviceError = 0x08;
inline constexpr unsigned kExecutionError = 0x10;
inline constexpr unsigned kCommandError = 0x20;
inline constexpr unsigned kPowerOn = 0x80;

/// The error queue and the standard event status register.
class Status {
 public:
  static constexpr std::size_t kDepth = 20;

  /// Queues the error and sets its bit. A full queue keeps its entries but the last, which becomes
  /// QueueOverflow.
  void report(Error error);
  /// The oldest error, taken out of the queue; None when it is empty.
  Error take();
  [[nodiscard]] std::size_t count() const { return count_; }

  void set(unsigned bits) { events_ |= bits; }
  /// The register, which reading clears.
  unsigned takeEvents();
  /// Empties queue and register.
  void clear();

 private:
  std::array<Error, kDepth> queue_{};
  std::size_t first_ = 0;
  std::size_t count_ = 0;
  unsigned events_ = kPowerOn;
};

/// As ":SYST:ERR?" answers it: -113,"Undefined header".
[[nodiscard]] std::string errorText(Error error);

/// True for an error after which the rest of a program message is not carried out.
[[nodiscard]] constexpr bool isCommandError(Error error) {
  const int number = static_cast<int>(error);
  return number <= -100 && number > -200;
}

}  // namespace zansim
