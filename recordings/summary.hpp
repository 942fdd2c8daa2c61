#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "recordings/recording.hpp"

namespace lumodevice::recordings {

/// A command with what came of it.
struct Exchange {
  const Entry* sent = nullptr;
  bool query = false;
  /// When the answer was whole, or what there was of it; none where nothing came.
  std::optional<WireEvent::Duration> answered = std::nullopt;
  std::uint64_t bytesReceived = 0;
  [[nodiscard]] bool unanswered() const { return query && !answered; }
  [[nodiscard]] WireEvent::Duration took() const {
    return answered.value_or(sent->end) - sent->begin;
  }
};

/// What was done over one resource, however often it was opened.
struct LinkSummary {
  std::string name;
  std::size_t openings = 0;
  std::vector<Exchange> exchanges;
  std::uint64_t bytesSent = 0;
  std::uint64_t bytesReceived = 0;
  /// Calls that failed. That a read brought nothing in its time is none.
  std::vector<const Entry*> errors;
};

/// The entries are those of the recording, which must outlive it.
struct Summary {
  std::vector<LinkSummary> links;
  WireEvent::Duration begin{0};
  WireEvent::Duration end{0};
};

[[nodiscard]] Summary summaryOf(const Recording& recording);

/// "VISA status 0xBFFF0015", "8020: the serial device is gone".
[[nodiscard]] std::string faultText(const Entry& entry);

/// The time line as a drawing: a lane a link, its exchanges, in red what was not answered or
/// failed.
[[nodiscard]] std::string timeLine(const Recording& recording, const Summary& summary);

}  // namespace lumodevice::recordings
