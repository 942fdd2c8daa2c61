#pragma once

#include "hosts/zanctl/output/mistake.hpp"
#include "hosts/zanctl/station/station.hpp"

namespace zanctl {

/// The command `files`: lists the component's files on drive C:, saves a memory file of the
/// instrument or sends one.
[[nodiscard]] ExitStatus runFiles(Station& station, const Options& options);

}  // namespace zanctl
