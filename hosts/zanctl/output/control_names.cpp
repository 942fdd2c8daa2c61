#include "hosts/zanctl/output/control_names.hpp"

#include <algorithm>

namespace zanctl {

std::vector<std::string> namesOfControls(const lumodevice::toolkit::Surface& surface) {
  std::vector<std::string> names;
  for (const auto& control : surface.controls()) {
    if (std::ranges::find(names, control->name()) == names.end()) {
      names.emplace_back(control->name());
    }
  }
  return names;
}

}  // namespace zanctl
