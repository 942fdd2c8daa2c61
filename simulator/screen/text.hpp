#pragma once

#include <string>
#include <string_view>

#include "simulator/load/channel.hpp"

namespace zansim {

/// A number in at most seven characters, of which the first is a minus or five digits and a point
/// take six: "1.2340", "-380.12", "9.9E37". Never a negative zero; "-----" for what is no number.
[[nodiscard]] std::string screenNumber(double value);

/// What is kept constant: "current".
[[nodiscard]] std::string_view quantityText(Regulation regulation);
/// "OCP"; empty for none.
[[nodiscard]] std::string_view tripText(Trip trip);

}  // namespace zansim
