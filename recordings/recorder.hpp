#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "lumodevice/io/clock.hpp"
#include "recordings/line_file.hpp"
#include "recordings/wire_tap.hpp"

namespace lumodevice::recordings {

/// What a recording may take: files of that many bytes each, and that many of them. When FILE is
/// full it becomes FILE.1, what was FILE.1 becomes FILE.2, and the last one goes.
struct Bounds {
  std::uint64_t bytes = std::uint64_t{64} << 20;
  int files = 16;
};

/// FILE.1, FILE.2 and so on; FILE itself is number 0.
[[nodiscard]] std::filesystem::path partOf(const std::filesystem::path& file, int number);

/// Writes down what a tap tells, an event a line.
class Recorder {
 public:
  /// Told once, why nothing is recorded any more: what was recorded so far is there, whole.
  using Failed = std::function<void(const std::string& why)>;

  /// Begins a new recording in the place of one that was there; `program` is told in its head.
  /// Throws WriteFault. All that is referred to must outlive it.
  Recorder(WireTap& tap, const toolkit::EventLoop& loop, const io::WallClock& wallClock,
           std::filesystem::path file, const Bounds& bounds, std::string program, Failed failed);

  /// A remark that plays no part when the recording is played back.
  void note(std::string_view text);

 private:
  void take(const WireEvent& event);
  void write(const std::string& line);
  void begin(int part);
  void turn();

  const toolkit::EventLoop& loop_;
  const io::WallClock& wallClock_;
  std::filesystem::path path_;
  Bounds bounds_;
  std::string program_;
  WireEvent::Duration start_;
  std::optional<LineFile> file_;
  std::uint64_t head_ = 0;
  int part_ = 1;
  /// What is open, for the head of a further file.
  std::map<std::uint32_t, std::string> links_;
  Failed failed_;
  toolkit::Subscription tapping_;
};

}  // namespace lumodevice::recordings
