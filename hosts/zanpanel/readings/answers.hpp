#pragma once

#include <optional>
#include <string_view>

namespace zanpanel {

/// The one number that an answer is, perhaps between blanks; none for anything else: what is shown
/// or recorded as a number came as one.
[[nodiscard]] std::optional<double> numberIn(std::string_view answer);

/// The state of the load in the answer to ":LOAD?".
[[nodiscard]] std::optional<bool> loadStateIn(std::string_view answer);

/// Whether an answer to ":SYST:ERR?" is an entry of the error queue, not the word that it is empty.
[[nodiscard]] bool isError(std::string_view answer);

}  // namespace zanpanel
