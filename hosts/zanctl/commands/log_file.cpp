#include "hosts/zanctl/commands/log_file.hpp"

#include <array>
#include <cstdio>
#include <system_error>
#include <tuple>
#include <utility>

#include "hosts/zanctl/output/escape.hpp"

namespace zanctl {

namespace {

using lumodevice::io::LocalTime;
using lumodevice::recordings::LineFile;
using lumodevice::recordings::WriteFault;

auto dayOf(const LocalTime& time) {
  return std::tuple(time.year, time.month, time.day);
}

std::string nameTime(const LocalTime& time) {
  std::array<char, 64> text{};
  (void)std::snprintf(text.data(), text.size(), "-%04d%02d%02d-%02d%02d%02d", time.year, time.month,
                      time.day, time.hour, time.minute, time.second);
  return text.data();
}

}  // namespace

LogFile::LogFile(std::filesystem::path name, Turning turning, std::string head, Output& errors)
    : name_(std::move(name)), turning_(turning), head_(std::move(head)), errors_(errors) {}

void LogFile::write(std::string row, const LocalTime& time) {
  if (kept_.size() < kMostKept) {
    kept_.push_back({std::move(row), time});
  } else {
    ++lost_;
  }
  (void)flush();
}

bool LogFile::flush() {
  try {
    while (!kept_.empty()) {
      const Kept& next = kept_.front();
      if (file_ && turnsFor(next)) {
        file_.reset();
      }
      if (!file_) {
        begin(next.time);
      }
      file_->write(next.row);
      kept_.pop_front();
    }
  } catch (const WriteFault& fault) {
    if (!std::exchange(failing_, true)) {
      errors_.line("zanctl: " + escaped(fault.what()) + "; rows are kept until there is room");
    }
    return false;
  }
  if (std::exchange(failing_, false)) {
    errors_.line("zanctl: the rows that were kept are written");
  }
  return true;
}

std::size_t LogFile::takeLost() {
  return std::exchange(lost_, 0);
}

/// A clock that is put back begins no new day.
bool LogFile::turnsFor(const Kept& row) const {
  const bool full = turning_.bytes > 0 && file_->size() > head_.size() &&
                    file_->size() + row.row.size() > turning_.bytes;
  return turnAsked_ || full || (turning_.daily && dayOf(row.time) > dayOf(begun_));
}

/// Of two files that begin in the same second, as after a clock was put back, the later one has a
/// number.
void LogFile::begin(const LocalTime& time) {
  std::filesystem::path file;
  for (int number = 1; number == 1 || std::filesystem::exists(file); ++number) {
    file = name_;
    file.replace_filename(name_.stem().string() + nameTime(time) +
                          (number > 1 ? '_' + std::to_string(number) : "") +
                          name_.extension().string());
  }
  file_.emplace(file, LineFile::Existing::Refused);
  try {
    file_->write(head_);
  } catch (const WriteFault&) {
    file_.reset();
    std::error_code left;
    std::filesystem::remove(file, left);
    throw;
  }
  begun_ = time;
  turnAsked_ = false;
  errors_.line("zanctl: logging to " + escaped(file.string()));
}

}  // namespace zanctl
