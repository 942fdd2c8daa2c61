#pragma once

#include <cstdint>
#include <optional>

#include "lumodevice/export.hpp"
#include "lumodevice/toolkit/control.hpp"
#include "lumodevice/toolkit/event.hpp"
#include "lumodevice/toolkit/event_loop.hpp"

namespace lumodevice::toolkit {

/// Ticks on its event loop while it is enabled and its interval is not 0: first one interval after
/// it was switched on (or its interval was set), then one interval after each tick began.
///
///     auto& rotation = load.surface().get<toolkit::Timer>("Timer1");
///     rotation.setInterval(500);
class LUMODEVICE_API Timer : public Control {
 public:
  static constexpr Kind kKind = Kind::Timer;
  static constexpr int kLongestInterval = 65535;
  ~Timer() override;
  Event<> tick{*this};
  /// Milliseconds; 0 stops the timer.
  [[nodiscard]] int interval() const { return interval_; }
  /// Restarts the count. Throws PropertyFault(380) outside 0 to 65535.
  void setInterval(int milliseconds);
  /// Without a loop a timer never ticks. The loop must outlive the timer or be left with
  /// leaveLoop().
  void joinLoop(EventLoop& loop);
  void leaveLoop();

 protected:
  friend class Surface;
  friend class EventLoop;
  using Control::Control;
  void enabledChanged() override { arm(); }

 private:
  void arm();
  [[nodiscard]] EventLoop::Duration period() const;

  int interval_ = 0;
  EventLoop* loop_ = nullptr;
  std::optional<EventLoop::Duration> due_;
  bool ticking_ = false;
  std::uint64_t lastPass_ = 0;
};

}  // namespace lumodevice::toolkit
