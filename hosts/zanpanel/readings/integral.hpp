#pragma once

#include <optional>

#include "hosts/zanpanel/readings/series.hpp"

namespace zanpanel {

/// What a reading adds up to over the hours: amperes to ampere-hours, watts to watt-hours. Between
/// two readings the mean of both counts; over a pause, or a longer silence than is usual, nothing.
class Integral {
 public:
  /// Two readings that are further apart do not belong together.
  explicit Integral(Moment longestStep) : longestStep_(longestStep) {}

  void setLongestStep(Moment step) { longestStep_ = step; }
  void add(Moment at, double value);
  /// Nothing counts from the last reading to the next one.
  void pause() { last_.reset(); }
  void reset();

  /// The value times hours.
  [[nodiscard]] double total() const;

 private:
  Moment longestStep_;
  std::optional<CurvePoint> last_;
  double valueMilliseconds_ = 0;
};

/// Charge and energy that went into the load while it was on.
class Counters {
 public:
  explicit Counters(Moment longestStep) : charge_(longestStep), energy_(longestStep) {}

  void setLongestStep(Moment step);
  void current(Moment at, double amperes);
  void power(Moment at, double watts);
  /// As the instrument reports it. The counters stand still until it has said that it is on.
  void load(bool on);
  /// The link is lost, or another channel is read.
  void pause();
  void reset();

  [[nodiscard]] double ampereHours() const { return charge_.total(); }
  [[nodiscard]] double wattHours() const { return energy_.total(); }
  [[nodiscard]] bool counting() const { return on_; }

 private:
  Integral charge_;
  Integral energy_;
  bool on_ = false;
};

}  // namespace zanpanel
