#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "lumodevice/io/clock.hpp"
#include "lumodevice/io/serial_port.hpp"
#include "simulator/links/connection.hpp"

namespace zansim {

/// What is behind one COM port.
struct SerialSocket {
  enum class State : std::uint8_t {
    Missing,  ///< the port does not exist
    Free,     ///< it can be opened
    InUse,    ///< another program holds it
    Broken,   ///< the device cannot be opened
  };
  State state = State::Missing;
  Instrument* instrument = nullptr;  ///< null: nobody answers
  std::int32_t baud = 0;  ///< the instrument's line speed with 8 data bits and no parity;
                          ///< 0: a USB virtual port, whose settings mean nothing
};

/// The serial devices of a simulated machine: bytes take their time on the line, and those sent
/// with other settings than the instrument's are lost. Clock and instruments must outlive it, and
/// it every line that it opened.
class SimulatedSerialDevices : public lumodevice::io::SerialDevices {
 public:
  static constexpr int kPorts = 16;

  explicit SimulatedSerialDevices(lumodevice::io::Clock& clock) : clock_(clock) {}

  /// `number` is 1 to 16.
  [[nodiscard]] SerialSocket& port(int number) {
    return sockets_.at(static_cast<std::size_t>(number - 1));
  }
  /// Makes the port exist with an instrument on it.
  void plug(int number, Instrument& instrument, std::int32_t baud = 0);

  [[nodiscard]] std::unique_ptr<lumodevice::io::SerialLine> open(
      int number, const lumodevice::io::SerialSettings& settings) override;

 private:
  lumodevice::io::Clock& clock_;
  std::array<SerialSocket, kPorts> sockets_;
  std::array<bool, kPorts> open_{};
};

}  // namespace zansim
