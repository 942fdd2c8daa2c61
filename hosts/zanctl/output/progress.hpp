#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "hosts/zanctl/output/output.hpp"
#include "lumodevice/toolkit/event_loop.hpp"

namespace zanctl {

/// The last line of a terminal while something takes its time: what it is, and the seconds since it
/// began, with what has come of how many bytes where that is known. It comes up after the first
/// second, and is erased before anything else is written and at the end. On an output that is no
/// terminal it does nothing.
class Progress {
 public:
  using Duration = lumodevice::toolkit::EventLoop::Duration;

  /// Must outlive it. Where a terminal cannot erase a line there is none either.
  explicit Progress(Output& terminal, bool erases = true)
      : terminal_(terminal), watched_(terminal.isTerminal() && erases) {}

  /// Whether anybody sees it.
  [[nodiscard]] bool watched() const { return watched_; }

  void begin(std::string_view what);
  /// Tells something else from now on, with the time still running.
  void tell(std::string_view what);
  /// How much of something has come that has so many bytes.
  void count(std::uint64_t bytes, std::uint64_t of) {
    bytes_ = bytes;
    of_ = of;
  }
  void end();

  /// To be called as often as possible while something goes on. The first call behind begin()
  /// starts the time.
  void show(Duration now);
  void erase();

 private:
  [[nodiscard]] std::string counted() const;

  Output& terminal_;
  bool watched_;
  std::string what_;
  bool begun_ = false;
  Duration start_{};
  Duration drawn_{};
  std::uint64_t bytes_ = 0;
  std::uint64_t of_ = 0;  ///< 0: nothing is counted
  std::string shown_;
};

/// What goes on while it lives.
class Activity {
 public:
  Activity(Progress& progress, std::string_view what) : progress_(progress) {
    progress_.begin(what);
  }
  ~Activity() { progress_.end(); }
  Activity(const Activity&) = delete;
  Activity& operator=(const Activity&) = delete;

 private:
  Progress& progress_;
};

/// An output on which a line of progress may stand: it is erased before anything is written.
class OutputUnderProgress : public Output {
 public:
  /// Both must outlive it.
  OutputUnderProgress(Output& target, Progress& progress) : target_(target), progress_(progress) {}
  void write(std::string_view text) override {
    progress_.erase();
    target_.write(text);
  }
  [[nodiscard]] int error() const override { return target_.error(); }
  [[nodiscard]] bool isTerminal() const override { return target_.isTerminal(); }

 private:
  Output& target_;
  Progress& progress_;
};

}  // namespace zanctl
