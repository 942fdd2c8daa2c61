#pragma once

#include <optional>
#include <string>

#include "hosts/zanpanel/discharge/stop_conditions.hpp"
#include "hosts/zanpanel/readings/monitor.hpp"

namespace zanpanel {

/// Takes charge out of a source until a condition is met, then switches the load off and looks
/// whether it is. The counters of its channel begin anew with it.
class Discharge {
 public:
  enum class State {
    Idle,       ///< none has been started, or it was dismissed
    Running,    ///< the load is on, and the readings come
    Unwatched,  ///< no readings come: the load may be on, and nothing would switch it off
    Off,        ///< over, and the instrument has said that the load is off
    Unsure,     ///< over, and it has not
  };

  /// All must outlive it.
  Discharge(lumodevice::ZANCtrl& load, Monitor& monitor);

  /// Why it cannot be started now; none when it can.
  [[nodiscard]] std::optional<std::string> hindrance(const StopConditions& conditions) const;
  /// Switches the load on where it is off. Nothing when there is a hindrance.
  void start(const StopConditions& conditions);
  /// By hand, for the reason given.
  void stop(const std::string& why);
  /// Asks again whether the load is off, where that is not sure, after telling it to.
  void confirmAgain();
  /// Looks after it; to be called a few times a second.
  void look();

  [[nodiscard]] State state() const { return state_; }
  [[nodiscard]] bool underWay() const {
    return state_ == State::Running || state_ == State::Unwatched;
  }
  [[nodiscard]] const StopConditions& conditions() const { return conditions_; }
  [[nodiscard]] Progress progress() const;
  /// Why it is over, and what became of the load.
  [[nodiscard]] const std::string& outcome() const { return outcome_; }
  [[nodiscard]] const std::string& channel() const { return channel_; }
  [[nodiscard]] Moment begin() const { return begin_; }
  [[nodiscard]] Moment end() const { return underWay() ? monitor_.now() : end_; }

 private:
  [[nodiscard]] ChannelRecord& record() const;
  void finish(const std::string& why);
  [[nodiscard]] bool chooseOwnChannel();
  [[nodiscard]] bool switchOff();

  lumodevice::ZANCtrl& load_;
  Monitor& monitor_;
  State state_ = State::Idle;
  StopConditions conditions_;
  std::string channel_;
  std::string outcome_;
  std::string why_;
  Moment begin_{0};
  Moment end_{0};
  /// It has been on since the start.
  bool wasOn_ = false;
  bool switching_ = false;
};

}  // namespace zanpanel
