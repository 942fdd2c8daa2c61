#include "recordings/recording.hpp"

#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <system_error>
#include <utility>

#include "recordings/recorder.hpp"

namespace lumodevice::recordings {

namespace {

/// No line of a recording is as long: the largest block is 16 MB, and a byte takes four.
constexpr std::size_t kLongestLine = std::size_t{80} << 20;

[[noreturn]] void refuse(const std::string& place, const std::string& why) {
  throw RecordingFault(place + ": " + why);
}

/// Reads one file to its end, or to where it was cut.
class FileReader {
 public:
  FileReader(Recording& recording, std::string file)
      : recording_(recording), file_(std::move(file)), stream_(file_, std::ios::binary) {
    std::error_code missing;
    if (!std::filesystem::is_regular_file(file_, missing)) {
      refuse(file_, missing ? missing.message() : "is no regular file");
    }
    if (!stream_) {
      refuse(file_, std::generic_category().message(errno));
    }
    recording_.files.push_back(file_);
  }

  /// The number in its head.
  int read(bool last) {
    std::string line;
    while (std::getline(stream_, line)) {
      ++line_;
      if (stream_.eof()) {
        takeRest(line, last);
        break;
      }
      take(line);
    }
    if (line_ == 0 && !last) {
      refuse(file_, "is empty");
    }
    return part_;
  }

 private:
  [[nodiscard]] std::string place() const { return file_ + ':' + std::to_string(line_); }

  /// Only the newest file can have been cut.
  void takeRest(const std::string& line, bool last) {
    if (line_ == 1 && !kFirstLine.starts_with(line)) {
      refuse(place(), "this is no recording");
    }
    if (!last) {
      refuse(place(), "the line has no end");
    }
    recording_.cut = true;
  }

  void take(const std::string& line) {
    if (line_ == 1 && line != kFirstLine) {
      refuse(place(), "this is no recording");
    }
    if (line.size() > kLongestLine) {
      refuse(place(), "the line is too long");
    }
    if (recording_.begins.empty() && line.starts_with(kBegins)) {
      recording_.begins = line.substr(kBegins.size());
    }
    if (line.starts_with(kPart)) {
      part_ = std::atoi(line.c_str() + kPart.size());
    }
    try {
      if (auto entry = entryIn(line)) {
        entry->file = recording_.files.size() - 1;
        entry->line = line_;
        recording_.entries.push_back(std::move(*entry));
      }
    } catch (const EntryFault& fault) {
      refuse(place(), fault.what());
    }
  }

  Recording& recording_;
  std::string file_;
  std::ifstream stream_;
  std::size_t line_ = 0;
  int part_ = 1;
};

}  // namespace

std::string Recording::placeOf(const Entry& entry) const {
  return files.at(entry.file) + ':' + std::to_string(entry.line);
}

Recording readRecording(const std::filesystem::path& file) {
  int oldest = 0;
  std::error_code missing;
  while (std::filesystem::exists(partOf(file, oldest + 1), missing)) {
    ++oldest;
  }
  Recording recording;
  int before = 0;
  for (int number = oldest; number >= 0; --number) {
    const int part = FileReader(recording, partOf(file, number).string()).read(number == 0);
    if (before != 0 && part != before + 1 && !recording.cut) {
      refuse(recording.files.back(), "does not follow " + recording.files.end()[-2]);
    }
    recording.beginningGone = recording.beginningGone || (before == 0 && part > 1);
    before = part;
  }
  return recording;
}

}  // namespace lumodevice::recordings
