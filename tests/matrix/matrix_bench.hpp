#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "tests/slow/slow_bench.hpp"

namespace lumodevice::matrix {

/// A bench whose link can be taken away and given back.
class MatrixBench : public slow::SlowBench {
 public:
  using SlowBench::SlowBench;

  /// The instrument's next answer is the last one before its links are gone for two seconds.
  void vanishForAWhile();
  /// Another program takes the instrument for itself as soon as it can get it.
  void lockElsewhere();
  /// No fault any more, and nobody else has the instrument. What was lost stays lost.
  void heal();

  /// The port, or something of the VISA library, is open.
  [[nodiscard]] bool linkIsOpen();
  /// What the panel shows of the channel that is chosen and the load sees otherwise: "chkLoad 1 for
  /// 0". Nothing for an empty or greyed box: it says that the setting is not known.
  [[nodiscard]] std::string untruths();
  /// What a read-back leaves: a channel and a mode are chosen, and no box is empty or greyed.
  [[nodiscard]] bool isReadBack();

  /// A control of the panel with the query that tells what it should show.
  struct Shown;

 private:
  [[nodiscard]] std::string known(const Shown& shown);
  [[nodiscard]] std::string chosenMode();
  void everyPass();
  void takeLock();

  std::optional<toolkit::EventLoop::Duration> goneSince_;
  bool returns_ = false;
  std::optional<zansim::SimulatedVisa> otherProgram_;
  bool otherHasIt_ = false;
  toolkit::Subscription passes_ = loop.observePasses([this] { everyPass(); });
};

}  // namespace lumodevice::matrix
