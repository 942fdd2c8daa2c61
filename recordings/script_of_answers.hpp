#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "recordings/recording.hpp"

namespace lumodevice::recordings {

/// What came over one resource (a VISA resource, a serial port) after each command, as a recording
/// has it, and how far a host has come in it.
///
/// A host that does what the recorded one did is answered as that one was. One that does it in
/// another order is, too: a command is looked for among the next kFarthest that were recorded, then
/// among those that were passed over. A query that was answered before is answered so once more, at
/// most kMostRepeats times before the host comes back to what was recorded, and never once the
/// recording is over: what was not measured is not told. All else is a mistake of the host's.
class ScriptOfAnswers {
 public:
  using Duration = WireEvent::Duration;
  static constexpr std::size_t kFarthest = 64;
  static constexpr int kMostRepeats = 8;

  /// What came, in the order in which it came.
  struct Piece {
    Duration after{0};  ///< the command began to be sent
    std::string bytes;
    /// How the read ended that brought it.
    std::int32_t status = 0;
    std::string fault;
  };
  struct Step {
    const Entry* sent = nullptr;
    std::vector<Piece> pieces;
    bool used = false;
  };
  /// An attempt to open it, and what came before anything was sent.
  struct Opening {
    const Entry* entry = nullptr;
    std::vector<Piece> pieces;
  };

  void add(const Entry& entry);

  [[nodiscard]] bool serial() const { return serial_; }
  [[nodiscard]] std::size_t size() const { return steps_.size(); }

  /// The next recorded attempt to open it. One more than were recorded begins the recording again,
  /// unless the last one failed.
  [[nodiscard]] const Opening& open();
  /// The step for a command; null when there is none. The line end of a command plays no part.
  [[nodiscard]] const Step* take(std::string_view command);
  /// What the recording has next; null at its end.
  [[nodiscard]] const Entry* expected() const;
  /// Whether a command that goes on could still be one that take() would find.
  [[nodiscard]] bool mayBegin(std::string_view bytes) const;

  /// What was answered when a text attribute was asked for last; null when it never was.
  [[nodiscard]] const Entry* attribute(std::uint32_t number) const;
  /// What setting an attribute came to.
  [[nodiscard]] std::int32_t settingStatus(std::uint32_t number) const;

 private:
  [[nodiscard]] std::optional<std::size_t> find(std::string_view command);

  bool serial_ = false;
  std::vector<Opening> openings_;
  std::vector<Step> steps_;
  bool inStep_ = false;
  std::map<std::uint32_t, const Entry*> attributes_;
  std::map<std::uint32_t, std::int32_t> settings_;
  std::size_t nextOpening_ = 0;
  std::size_t next_ = 0;
  int repeats_ = 0;
};

}  // namespace lumodevice::recordings
