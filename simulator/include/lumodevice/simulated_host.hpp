#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "lumodevice/export.hpp"
#include "lumodevice/host.hpp"

namespace lumodevice {

/// The host of a program that tries itself out where there is no instrument. Link the library
/// LumoDevice::simulator.
///
///     lumodevice::ZANCtrl load(lumodevice::simulatedHost({.virtualTime = true}));
///     if (load.AutoConnect()) {
///       load.SendCmd(":FETC:VOLT?");
///       std::cout << load.ResultStr() << " V\n";
///     }

/// What a host wants otherwise than simulatedHost() has it. What a pointer leads to must outlive
/// every component that is given the host.
struct LUMODEVICE_API SimulatedOptions {
  /// Null: a loop of its own. The instrument lives in the time of the loop.
  toolkit::EventLoop* loop = nullptr;
  /// The loop of its own runs on a clock that jumps instead of waiting.
  bool virtualTime = false;
  /// The folder that is drive C:, created when something is first put there. Empty: the variable
  /// LUMODEVICE_DRIVE_C, else "lumodevice/drive_c" where data of the user's programs lies.
  std::string driveC = {};
  /// The modules in the slots, as in "2021L,2021R,0,2040". Empty: the usual ones.
  std::string modules = {};
  /// What hangs on a channel: "CHANNEL=VOLTS,OHMS" or, a battery, "CHANNEL=VOLTS,OHMS,AMPEREHOURS".
  /// The others have a usual source.
  std::vector<std::string> sources = {};
  std::string serialNumber = "SIM00001";
  /// How late answers come, each "MS", at random "A-B" or "A-B,seed=N" (milliseconds), or that of
  /// one query behind its header: ":FETC:VOLT?=300".
  std::vector<std::string> latencies = {};
  /// Readings tell what was asked: voltages 10.0001 and on, currents 20.0002 and on, powers 30.0003
  /// and on, each with a number of its own.
  bool numberedReadings = false;
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

/// A bench with one simulated instrument, on USB behind VISA and VISA COM and on COM3 at 9600
/// baud. Nothing real is touched but drive C:. Throws std::invalid_argument for slots, sources
/// or latencies that cannot be.
[[nodiscard]] LUMODEVICE_API Host simulatedHost(const SimulatedOptions& options = {});

}  // namespace lumodevice
