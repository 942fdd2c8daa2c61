#pragma once

#include <functional>
#include <iosfwd>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "lumodevice/io/clock.hpp"
#include "lumodevice/io/drive.hpp"
#include "lumodevice/io/serial_port.hpp"
#include "lumodevice/io/visa.hpp"
#include "lumodevice/io/visa_com.hpp"
#include "lumodevice/toolkit/event_loop.hpp"

namespace lumodevice {

/// Shows an information box and returns when the operator has put it away.
using InformationBox = std::function<void(std::string_view text)>;

/// What a host wants otherwise than Host::system() has it. What a pointer leads to must outlive
/// every component that is given the host.
struct SystemOptions {
  /// Null: a loop of its own in real time.
  toolkit::EventLoop* loop = nullptr;
  /// The folder that is drive C:, created when something is first put there. Empty: the variable
  /// LUMODEVICE_DRIVE_C, else "lumodevice/drive_c" where data of the user's programs lies.
  std::string driveC = {};
  /// The VISA shared library. Empty: the variable LUMODEVICE_VISA_LIBRARY, else the first of the
  /// usual ones, else the built-in layer.
  std::string visaLibrary = {};
  /// Port number (1 to 16) to device. Empty: the machine's own serial devices.
  std::map<int, std::string> ports = {};
  /// Null: each box is a line on standard error.
  InformationBox informationBox = nullptr;
  /// See Host.
  std::ostream* log = nullptr;
};

/// What a host wants otherwise than Host::simulated() has it. What a pointer leads to must outlive
/// every component that is given the host.
struct SimulatedOptions {
  /// Null: a loop of its own. The instrument lives in the time of the loop.
  toolkit::EventLoop* loop = nullptr;
  /// The loop of its own runs on a clock that jumps instead of waiting.
  bool virtualTime = false;
  /// As SystemOptions has it.
  std::string driveC = {};
  /// The modules in the slots, as in "2021L,2021R,0,2040". Empty: the usual ones.
  std::string slots = {};
  /// What hangs on a channel: "CHANNEL=VOLTS,OHMS" or, a battery, "CHANNEL=VOLTS,OHMS,AMPEREHOURS".
  /// The others have a usual source.
  std::vector<std::string> sources = {};
  std::string serialNumber = "SIM00001";
  /// Null: each box is a line on standard error.
  InformationBox informationBox = nullptr;
  /// See Host.
  std::ostream* log = nullptr;
};

/// What a host gives the component. Everything referred to must outlive the component, unless
/// `owned` keeps it, and is used on the thread that calls the component alone.
struct Host {
  toolkit::EventLoop& loop;
  io::Visa& visa;
  io::VisaCom& visaCom;
  io::SerialDevices& serialDevices;
  io::Drive& drive;
  io::WallClock& wallClock;
  InformationBox informationBox;
  /// Receives one line for each serial command without an answer; null: nothing is logged.
  std::ostream* log = nullptr;
  /// Keeps alive what is referred to: it goes with the last copy of this host, and each component
  /// holds one. Null where the program sees to that itself.
  std::shared_ptr<void> owned = nullptr;

  /// The machine that the program runs on: real time, its VISA library with VISA COM over it, its
  /// serial devices, a folder as drive C: and the system's clock. Link the library
  /// LumoDevice::system. Opens nothing. Throws io::IoFault(VI_ERROR_LIBRARY_NFOUND) when a VISA
  /// library that was named cannot be loaded; its text says why.
  [[nodiscard]] static Host system(const SystemOptions& options = {});

  /// A bench with one simulated instrument, on USB behind VISA and VISA COM and on COM3 at 9600
  /// baud. Nothing real is touched but drive C:. Link the library LumoDevice::simulator. Throws
  /// std::invalid_argument for slots or sources that cannot be.
  [[nodiscard]] static Host simulated(const SimulatedOptions& options = {});
};

}  // namespace lumodevice
