#include "hosts/zanctl/output/progress.hpp"

#include <chrono>

namespace zanctl {

namespace {

constexpr std::string_view kErase = "\r\x1B[K";

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
  const std::string line = what_ + " ... " + std::to_string(seconds) + " s";
  if (line != shown_) {
    erase();
    terminal_.write(line);
    shown_ = line;
  }
}

void Progress::erase() {
  if (!shown_.empty()) {
    terminal_.write(kErase);
    shown_.clear();
  }
}

}  // namespace zanctl
