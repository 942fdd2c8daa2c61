#pragma once

namespace zansim {

/// A source at one instant.
struct Supply {
  double volts;  ///< electromotive force
  double ohms;   ///< internal resistance

  [[nodiscard]] double terminalVolts(double amps) const { return volts - ohms * amps; }

  /// The current at which the terminals hold `terminal` volts: 0 where they hold less anyway,
  /// infinite where the source has no resistance.
  [[nodiscard]] double ampsAtVolts(double terminal) const;
  /// The current into a resistance. Together the two resistances are above 0.
  [[nodiscard]] double ampsAtOhms(double load) const { return volts / (ohms + load); }
  /// The least current at which the load takes `watts`; infinite where the source never gives them.
  [[nodiscard]] double ampsAtWatts(double watts) const;
};

}  // namespace zansim
