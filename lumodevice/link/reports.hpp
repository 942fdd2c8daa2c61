#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "lumodevice/failure.hpp"
#include "lumodevice/link/link_fault.hpp"
#include "lumodevice/toolkit/event.hpp"
#include "lumodevice/toolkit/frames.hpp"

namespace lumodevice::link {

/// What the host is told beside answers: why the last operation failed, and that the link was lost
/// or regained.
class Reports {
 public:
  explicit Reports(const toolkit::Form& panel) : linkLost(panel), linkRegained(panel) {}

  /// Told once for each loss, when the exchange that met it is over.
  toolkit::Event<const Failure&> linkLost;
  /// The instrument that was lost answers again, over the same link or a new one.
  toolkit::Event<> linkRegained;

  /// What the component does with a link whose instrument has gone, before linkLost is told; false
  /// where there is none to lose.
  std::function<bool()> leaveLink = [] { return true; };

  /// Of the last connect, exchange or transfer.
  [[nodiscard]] const Failure& failure() const { return failure_; }
  [[nodiscard]] bool failed() const { return failure_.kind != FailureKind::None; }

  /// A connect, an exchange or a transfer begins.
  void begin() { failure_ = {}; }
  /// It has failed; `more` is what the sentence does not say.
  void fail(FailureKind kind, std::string_view more = {});
  void fail(const Fault& fault, bool opening = false);

  /// Runs a step that talks to the instrument; true when no Fault ended it. A link whose instrument
  /// went meanwhile is lost.
  template <typename Step>
  bool transfer(Step&& step) {
    bool done = false;
    begin();
    try {
      step();
      done = true;
    } catch (const Fault& fault) {
      fail(fault);
    }
    if (failure_.kind == FailureKind::Vanished) {
      lose();
    }
    return done;
  }

  /// The instrument of the link has gone, as the failure says.
  void lose();
  [[nodiscard]] bool lost() const { return lost_; }

  /// What an exchange came to. An instrument that leaves as many readings in a row without an
  /// answer as `kMostUnanswered` is lost; the link stays, and is regained with the next answer.
  static constexpr int kMostUnanswered = 3;
  void answered();
  void unansweredReading();

  /// The instrument of a link.
  struct Instrument {
    std::string identity;  ///< its answer, without the line end
    std::string address;   ///< as connectTo() takes it
  };
  /// A connect has reached an instrument.
  void reached(std::string_view identity, std::string_view address);
  /// That connect is over, and the link still stands.
  void connected();
  /// The one of the last link; its texts are "" before the first.
  [[nodiscard]] const Instrument& instrument() const { return instrument_; }

 private:
  void tellLoss();

  Failure failure_;
  Instrument instrument_;
  bool lost_ = false;
  bool regains_ = false;
  int unanswered_ = 0;
};

}  // namespace lumodevice::link
