#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zanctl {

/// The name that was probably meant by a word that is none of them: the one that the fewest letters
/// have to be changed, left out, put in or swapped for, whatever their case; "" when none is near.
[[nodiscard]] std::string_view nearest(std::string_view word,
                                       const std::vector<std::string>& names);

/// "; did you mean NAME?" for the nearest name, or "".
[[nodiscard]] std::string didYouMean(std::string_view word, const std::vector<std::string>& names);

}  // namespace zanctl
