#pragma once

#include <memory>
#include <string>

#include "hosts/zanctl/links/link_options.hpp"
#include "hosts/zanctl/output/output.hpp"
#include "lumodevice/io/clock.hpp"
#include "lumodevice/io/serial_port.hpp"
#include "lumodevice/io/visa.hpp"
#include "platform/device_list.hpp"

namespace zanctl {

/// What the component reaches instruments through: the simulated ones, or the machine's own.
class Links {
 public:
  Links() = default;
  virtual ~Links() = default;
  Links(const Links&) = delete;
  Links& operator=(const Links&) = delete;

  [[nodiscard]] virtual lumodevice::io::Visa& visa() = 0;
  [[nodiscard]] virtual lumodevice::io::SerialDevices& serialDevices() = 0;

  /// Where the link leads: "simulated", the path of a VISA library, a device, ...; `port` is looked
  /// at for a serial link alone.
  [[nodiscard]] virtual std::string origin(Link link, int port) const = 0;

  /// One line on why a search over that link may have found nothing, and what to try.
  [[nodiscard]] virtual std::string advice(Link link) const = 0;

  /// The serial ports and the USB instruments that there are. None is opened.
  [[nodiscard]] virtual lumodevice::platform::DeviceList devices() = 0;

  /// False when something was asked of the links that they cannot do, or that a recording has not;
  /// it was reported then.
  [[nodiscard]] virtual bool usedRightly() const { return true; }

  /// The date and time where the instruments are, where that is another one than here.
  [[nodiscard]] virtual std::unique_ptr<lumodevice::io::WallClock> wallClock() { return nullptr; }
};

/// A simulated instrument behind each of the links. The clock must outlive them.
[[nodiscard]] std::unique_ptr<Links> simulatedLinks(lumodevice::io::Clock& clock);

/// What the machine has. Throws Unusable when the VISA library that was named cannot be
/// loaded. `errors` must outlive them.
[[nodiscard]] std::unique_ptr<Links> realLinks(const LinkOptions& options, Output& errors);

/// The instruments of a recording, in its time. Throws Unusable for a file that is none. All that
/// is referred to must outlive them.
[[nodiscard]] std::unique_ptr<Links> replayedLinks(const std::string& file,
                                                   lumodevice::io::Clock& clock, Output& errors);

}  // namespace zanctl
