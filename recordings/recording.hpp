#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "recordings/entry.hpp"

namespace lumodevice::recordings {

/// What cannot be read as a recording; the text names the file, the line and what is wrong.
class RecordingFault : public std::runtime_error {
 public:
  using runtime_error::runtime_error;
};

/// A recording as it was read.
struct Recording {
  std::vector<Entry> entries;
  /// The files that it is made of, the oldest first.
  std::vector<std::string> files;
  /// When it began, "2031-03-07T11:59:55.250+01:00"; "" where no head says it.
  std::string begins;
  /// Its last line has no end: the program was killed, or the file cut. What is whole was read.
  bool cut = false;
  /// The file in which the recording begins is gone: there were more than were kept.
  bool beginningGone = false;

  /// "bench.rec:12", for messages.
  [[nodiscard]] std::string placeOf(const Entry& entry) const;
};

/// Reads FILE, and FILE.1, FILE.2 and so on where they are there: the older ones first. Throws
/// RecordingFault.
[[nodiscard]] Recording readRecording(const std::filesystem::path& file);

}  // namespace lumodevice::recordings
