#pragma once

#include <cstdint>
#include <functional>
#include <iosfwd>
#include <string>

#include "lumodevice/export.hpp"
#include "lumodevice/host.hpp"

namespace lumodevice {

/// A bench kept as a file, and played back: all that goes over the links, with its times. Link the
/// library LumoDevice::recordings. docs/recordings.md has the format and what playing back allows.
///
///     {
///       lumodevice::ZANCtrl load(lumodevice::recorded(lumodevice::systemHost(), "bench.rec"));
///       load.AutoConnect();
///     }
///     lumodevice::ZANCtrl again(lumodevice::replayedHost("bench.rec", {.virtualTime = true}));
///     again.AutoConnect();  // as it was

/// What a recording may take on the disk.
struct LUMODEVICE_API RecordingOptions {
  /// Bytes of one file; when it is full it becomes FILE.1, FILE.1 becomes FILE.2 and so on.
  std::uint64_t bytes = std::uint64_t{64} << 20;
  /// Files that are kept, FILE included; 1 or more.
  int files = 16;
};

/// The same host, whose links are recorded in `file` (in the place of a recording that was there)
/// while a component uses it. Each line is handed to the system as it happens. A disk that fills
/// ends the recording, never the work. The host's VISA COM must be the one over its VISA library,
/// as the ready-made hosts have it, or std::invalid_argument is thrown; std::runtime_error where
/// the file cannot be made.
[[nodiscard]] LUMODEVICE_API Host recorded(const Host& host, const std::string& file,
                                           const RecordingOptions& options = {});

/// What a host wants otherwise than replayedHost() has it. What a pointer leads to must outlive
/// every component that is given the host.
struct LUMODEVICE_API ReplayOptions {
  /// Null: a loop of its own. The recording lives in the time of the loop.
  toolkit::EventLoop* loop = nullptr;
  /// The loop of its own runs on a clock that jumps instead of waiting.
  bool virtualTime = false;
  /// As in SystemOptions.
  std::string driveC = {};
  /// Told of what was asked that the recording has not: its place, what it has, what came. Null: a
  /// line on standard error.
  std::function<void(const std::string& text)> mistaken = nullptr;
  /// Null: each box is a line on standard error.
  InformationBox informationBox = nullptr;
  /// See Host.
  std::ostream* log = nullptr;
  /// See Host. Those that were recorded play back best.
  Exchanges exchanges = Exchanges::InTurn;
  /// See Host.
  bool observing = false;
  /// See Host.
  std::string address = {};
};

/// The instruments of a recording in the place of real ones: each command is answered as it was,
/// and as late. Its clock begins when the recording began. Nothing real is touched but drive C:.
/// Throws std::runtime_error, saying the place, where the file is no recording.
[[nodiscard]] LUMODEVICE_API Host replayedHost(const std::string& file,
                                               const ReplayOptions& options = {});

}  // namespace lumodevice
