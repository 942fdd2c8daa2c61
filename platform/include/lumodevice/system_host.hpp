#pragma once

#include <iosfwd>
#include <map>
#include <string>

#include "lumodevice/export.hpp"
#include "lumodevice/host.hpp"

namespace lumodevice {

/// The host of a program that operates real instruments. The header is the same on every operating
/// system. Link the library LumoDevice::system.
///
///     lumodevice::ZANCtrl load(lumodevice::systemHost({.ports = {{3, "/dev/ttyUSB0"}}}));
///     if (load.AutoConnect()) {
///       load.SendCmd(":LOAD ON");
///     }

/// What a host wants otherwise than systemHost() has it. What a pointer leads to must outlive
/// every component that is given the host.
struct LUMODEVICE_API SystemOptions {
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
  /// See Host. A host that was written for interleaved exchanges chooses them.
  Exchanges exchanges = Exchanges::InTurn;
  /// See Host.
  bool observing = false;
  /// See Host.
  std::string address = {};
};

/// The machine that the program runs on: real time, its VISA library with VISA COM over it, its
/// serial devices, a folder as drive C: and the system's clock. Opens nothing. Throws
/// io::IoFault(VI_ERROR_LIBRARY_NFOUND) when a VISA library that was named cannot be loaded; its
/// text says why.
[[nodiscard]] LUMODEVICE_API Host systemHost(const SystemOptions& options = {});

}  // namespace lumodevice
