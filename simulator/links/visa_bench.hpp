#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lumodevice/io/clock.hpp"
#include "lumodevice/io/visa.hpp"
#include "simulator/links/connection.hpp"

namespace zansim {

class SimulatedVisa;

/// What a resource's name begins with.
enum class Interface : std::uint8_t { Usb, Gpib, Serial };

/// VISA's number for it.
[[nodiscard]] constexpr std::uint16_t interfaceType(Interface interface) {
  switch (interface) {
    case Interface::Gpib:
      return 1;
    case Interface::Serial:
      return 4;
    case Interface::Usb:
      break;
  }
  return 7;
}

/// What the name of a resource says.
struct VisaName {
  Interface interface = Interface::Usb;
  std::uint16_t board = 0;
  /// As the resource is listed; in capitals, with board number and class, where there is none.
  std::string full;
};

/// None for a text that names no resource of a known kind.
[[nodiscard]] std::optional<VisaName> parseVisaName(std::string_view name);

/// One resource that a VISA library finds.
class VisaResource {
 public:
  /// A name as listed ("USB0::0x5A41::0x0001::SIM00001::INSTR", "GPIB0::5::INSTR", "ASRL1::INSTR").
  /// Throws std::invalid_argument for another kind of name. Without an instrument nobody answers
  /// there.
  VisaResource(std::string resourceName, std::string nameOfInterface, Instrument* instrument);

  const std::string name;
  const std::string interfaceName;
  const Interface interface;
  /// A USB resource then takes the serial end modes, without effect, as a serial resource does.
  bool takesSerialEndModes;
  /// Bytes that programs wrote to it.
  std::uint64_t bytesWritten = 0;

  [[nodiscard]] Connection* connection() { return connection_ ? &*connection_ : nullptr; }
  /// Of the instrument behind it; none where nobody answers.
  [[nodiscard]] const Configuration* configuration() const { return configuration_; }
  [[nodiscard]] bool isPresent() const { return !connection_ || !connection_->isLost(); }

 private:
  friend class SimulatedVisa;
  /// A session of one of the programs.
  struct Holder {
    const SimulatedVisa* program;
    lumodevice::io::ViSession session;
    friend bool operator==(const Holder&, const Holder&) = default;
  };

  std::optional<Connection> connection_;
  const Configuration* configuration_ = nullptr;
  std::optional<Holder> lockedBy_;
};

/// The resources of one machine, which all of its programs see, in the order in which they are
/// found. Instruments and clock must outlive it, and it every SimulatedVisa over it.
class VisaBench {
 public:
  explicit VisaBench(lumodevice::io::Clock& clock) : clock_(clock) {}

  /// The resource stays where it is until the bench is gone.
  VisaResource& add(std::string name, std::string interfaceName, Instrument* instrument = nullptr);

  /// The usual bench: a serial port that nothing answers on and the instrument on USB.
  void addUsual(Instrument& instrument);

  /// The resource that a program means by `name` (any case, board 0 and "::INSTR" may be left out),
  /// or null. `known` tells whether it is a name at all.
  [[nodiscard]] VisaResource* find(std::string_view name, bool& known) const;

  [[nodiscard]] const std::vector<std::unique_ptr<VisaResource>>& resources() const {
    return resources_;
  }
  [[nodiscard]] lumodevice::io::Clock& clock() const { return clock_; }

 private:
  lumodevice::io::Clock& clock_;
  std::vector<std::unique_ptr<VisaResource>> resources_;
};

}  // namespace zansim
