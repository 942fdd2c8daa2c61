#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lumodevice/io/visa.hpp"
#include "lumodevice/toolkit/event_loop.hpp"

namespace lumodevice::support {

/// Bytes that arrive some time after the command that they answer.
struct Piece {
  std::chrono::milliseconds after;
  std::string bytes;
};

/// What a command brings.
struct Reply {
  std::vector<Piece> pieces;
  /// Messages that follow, one for each further read.
  std::vector<std::string> further = {};
  /// What viRead returns along with the bytes, where it is to be something out of the ordinary.
  std::optional<io::ViStatus> readStatus = {};
};

[[nodiscard]] Reply answer(std::string bytes, std::chrono::milliseconds after = {});
[[nodiscard]] Reply silence();

/// An instrument that answers from a script, over whatever link it is asked.
class Instrument {
 public:
  /// Answers a command, named without its terminator, with the replies in turn; the last one stays.
  void on(const std::string& command, std::vector<Reply> replies);
  void on(const std::string& command, Reply reply);
  void on(const std::string& command, std::string bytes) { on(command, answer(std::move(bytes))); }

  /// What a command with its terminator brings; silence when the script does not know it.
  [[nodiscard]] Reply hear(std::string_view sent);

  /// Answers what the script does not know.
  std::function<Reply(std::string_view sent)> otherwise;

 private:
  std::map<std::string, std::vector<Reply>, std::less<>> replies_;
};

inline constexpr const char* kIdentity = "LUMO,ZAN-6400,A0001,1.20";

/// Identity kIdentity, two modules in four slots, channel 2 chosen, "0" to every other query; every
/// answer ends in a line feed.
[[nodiscard]] Instrument zanInstrument();

/// The bytes on their way from an instrument, by the clock of the loop.
class Inbox {
 public:
  void put(const Reply& reply, toolkit::EventLoop::Duration now);
  void drop();
  [[nodiscard]] bool empty() const { return pieces_.empty() && further_.empty(); }
  /// When the last of the present message is there.
  [[nodiscard]] toolkit::EventLoop::Duration complete() const;
  /// Takes at most `most` bytes of those of the present message that are there.
  std::string take(toolkit::EventLoop::Duration now, std::size_t most = std::string::npos);

 private:
  struct Arrival {
    toolkit::EventLoop::Duration at;
    std::string bytes;
  };
  std::vector<Arrival> pieces_;
  std::vector<std::string> further_;
};

}  // namespace lumodevice::support
