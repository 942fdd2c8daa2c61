#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/support/panel_bench.hpp"

namespace lumodevice::support {

/// Something that an operator, a host or a timer does to a component, whatever its state.
struct Act {
  std::string name;
  std::function<void(PanelBench&)> run;
  /// Changes the link or the channel: the acts that pull the ground from under others.
  bool moves = false;
  /// One call of the component; else several, between which it must still be there.
  bool single = true;
};

/// Every button, box, option and picture of the panel clicked, every member called, each timer's
/// tick, the texts and keys of the fields, the entries of the lists, and a connect over every link.
[[nodiscard]] std::vector<Act> allActs();

/// Puts the bench's instrument on every link, with answers to all that the acts ask.
void plugEverywhere(PanelBench& bench);

}  // namespace lumodevice::support
