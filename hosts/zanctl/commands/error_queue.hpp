#pragma once

#include <string>
#include <vector>

#include "hosts/zanctl/output/json_line.hpp"
#include "lumodevice/zan_ctrl.hpp"

namespace zanctl {

/// What the instrument's error queue held, oldest first, as the instrument wrote it; the queue is
/// empty then. None when it did not answer.
struct ErrorQueue {
  std::vector<std::string> errors;
  bool answered = true;
};
[[nodiscard]] ErrorQueue takeErrors(lumodevice::ZANCtrl& component);

/// An error as `--json` prints it: -113,"Undefined header" in its two parts.
[[nodiscard]] Json errorObject(const std::string& error);

}  // namespace zanctl
