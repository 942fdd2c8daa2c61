#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "lumodevice/export.hpp"
#include "lumodevice/io/fault.hpp"

namespace lumodevice::io {

/// Numbers of SerialFault.
inline constexpr int kSerialInvalidValue = 380;
inline constexpr int kSerialInvalidWhileOpen = 8000;
inline constexpr int kSerialInvalidPort = 8002;
inline constexpr int kSerialAlreadyOpen = 8005;
inline constexpr int kSerialNotOpen = 8018;
inline constexpr int kSerialDeviceBusy = 8019;
inline constexpr int kSerialReadError = 8020;
inline constexpr int kSerialUnavailable = 68;
inline constexpr int kSerialNoPermission = 70;

struct LUMODEVICE_API SerialSettings {
  std::int32_t baud = 9600;
  char parity = 'n';           ///< e even, m mark, n none, o odd, s space
  int dataBits = 8;            ///< 4 to 8
  std::string stopBits = "1";  ///< "1", "1.5" or "2"
};

/// An open serial device. Closed on destruction. No call blocks: what has not arrived is not waited
/// for, and a write that the device does not take within its own time-out throws.
class LUMODEVICE_API SerialLine {
 public:
  virtual ~SerialLine() = default;
  /// Takes effect at once. Throws SerialFault(380) for settings that the device refuses.
  virtual void configure(const SerialSettings& settings) = 0;
  /// Throws SerialFault(8019) when the device does not take the bytes, 68 when it is gone.
  virtual void write(std::string_view data) = 0;
  /// Appends all bytes received so far to `queue`. Throws SerialFault(8020) when the device is
  /// gone.
  virtual void receive(std::string& queue) = 0;
};

/// The machine's serial devices behind the port numbers 1 to 16.
///
///     const auto line = host.serialDevices.open(3, {.baud = 38400});
///     line->write("*IDN?\n");
class LUMODEVICE_API SerialDevices {
 public:
  virtual ~SerialDevices() = default;
  /// Throws SerialFault: 8002 for a port that does not exist, 8005 for one in use by another
  /// program, 70 for one that this user may not open, 68 for a device that cannot be opened, 380
  /// for settings that it refuses.
  [[nodiscard]] virtual std::unique_ptr<SerialLine> open(int port,
                                                         const SerialSettings& settings) = 0;
  /// The number of the port that stands for a device of the machine ("/dev/ttyUSB0"); 0 where none
  /// does.
  [[nodiscard]] virtual int portNamed(std::string_view /*device*/) { return 0; }
};

/// The serial port control: the properties that the component uses, with their error numbers, and
/// the receive queue.
class LUMODEVICE_API SerialPort {
 public:
  enum class InputModes { Text = 0, Binary = 1 };

  explicit SerialPort(SerialDevices& devices) : devices_(devices) {}
  virtual ~SerialPort() = default;
  SerialPort(const SerialPort&) = delete;
  SerialPort& operator=(const SerialPort&) = delete;

  /// 1 to 16. Throws 8002 outside them, 8000 while the port is open.
  [[nodiscard]] int CommPort() const { return port_; }
  void setCommPort(int port);

  /// "BBBB,P,D,S"; fields that are left out keep their values, so "9600" sets the baud rate alone.
  /// A bad value throws 380 when the port is opened, or at once while it is open.
  [[nodiscard]] std::string Settings() const;
  void setSettings(std::string_view settings);

  /// Opening an open port throws 8005; closing a closed one does nothing. Closing empties the
  /// queue.
  [[nodiscard]] bool PortOpen() const { return line_ != nullptr; }
  void setPortOpen(bool open);

  /// Writes bytes as they are. Throws 8018 on a closed port.
  void Output(std::string_view data);

  /// Takes all that was received out of the queue; "" when nothing waits. Throws 8018 on a closed
  /// port.
  [[nodiscard]] std::string Input();

  /// How Input reads; both modes give the bytes unchanged here, the mode is kept as it was set.
  [[nodiscard]] InputModes InputMode() const { return inputMode_; }
  void setInputMode(InputModes mode) { inputMode_ = mode; }

  /// The number of bytes that wait in the queue; 0 on a closed port.
  [[nodiscard]] std::size_t InBufferCount();

 protected:
  /// Told of what is about to be written; what it throws keeps it from being.
  virtual void leaves(std::string_view /*data*/) {}

 private:
  SerialDevices& devices_;
  std::unique_ptr<SerialLine> line_;
  std::string queue_;
  SerialSettings settings_;
  std::string refused_;  ///< the text set while the port was closed that opening it will refuse
  int port_ = 1;
  InputModes inputMode_ = InputModes::Text;
};

}  // namespace lumodevice::io
