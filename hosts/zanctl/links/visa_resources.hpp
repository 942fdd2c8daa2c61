#pragma once

#include <string>
#include <vector>

#include "lumodevice/io/visa.hpp"

namespace zanctl {

/// The names of all resources that a VISA library finds. Opens its resource manager alone, no
/// resource. Empty when the library finds none or fails.
[[nodiscard]] std::vector<std::string> visaResources(lumodevice::io::Visa& visa);

}  // namespace zanctl
