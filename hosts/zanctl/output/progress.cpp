#include "hosts/zanctl/output/progress.hpp"

#include <chrono>

namespace zanctl {

namespace {

constexpr std::string_view kErase = "\r\x1B[K";
constexpr std::chrono::milliseconds kBetweenDrawings{100};

}  // namespace

void Progress::begin(std::string_view what) {
  end();
  what_ = what;
}

void Progress::tell(std::string_view what) {
  what_ = what;
}

void Progress::end() {
  erase();
  what_.clear();
  begun_ = false;
  of_ = 0;
}

void Progress::show(Duration now) {
  if (!watched_ || what_.empty()) {
    return;
  }
  if (!begun_) {
    begun_ = true;
    start_ = now;
  }
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(now - start_).count();
  if (seconds == 0) {
    return;
  }
  const std::string line = printable(what_) + counted() + " ... " + std::to_string(seconds) + " s";
  // What comes in small pieces is not drawn for each.
  const bool soon = !shown_.empty() && of_ > 0 && now - drawn_ < kBetweenDrawings;
  if (line != shown_ && !soon) {
    erase();
    terminal_.write(line);
    shown_ = line;
    drawn_ = now;
  }
}

std::string Progress::counted() const {
  constexpr std::uint64_t kPercent = 100;
  return of_ == 0 ? ""
                  : ": " + std::to_string(bytes_) + " of " + std::to_string(of_) + " bytes (" +
                        std::to_string(bytes_ * kPercent / of_) + " %)";
}

void Progress::erase() {
  if (!shown_.empty()) {
    terminal_.write(kErase);
    shown_.clear();
  }
}

}  // namespace zanctl
