#pragma once

#include "tests/support/panel_bench.hpp"

namespace lumodevice::support {

/// What must hold of a component at any time between operations, whatever ran into whatever: lists
/// and their selections fit, the pointer is no hourglass, the auto query's timer follows its box,
/// and without a link nothing is sent.
void expectConsistent(PanelBench& bench);

/// The next command and channel selection do what they should, if need be after a connect on the
/// link that is chosen. Undoes what the operator may have typed into the console.
void expectUsable(PanelBench& bench);

/// A component that says it is connected answers a command: the first one, or the second where the
/// first brought the answer of a serial query that a command cut off.
[[nodiscard]] bool keepsItsWord(PanelBench& bench);

}  // namespace lumodevice::support
