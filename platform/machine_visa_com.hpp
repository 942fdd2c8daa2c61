#pragma once

#include <memory>

#include "lumodevice/io/visa.hpp"
#include "lumodevice/io/visa_com.hpp"

namespace lumodevice::platform {

/// VISA COM where the machine has it, else over the VISA library, which must outlive it.
[[nodiscard]] std::unique_ptr<io::VisaCom> machineVisaCom(io::Visa& visa);

}  // namespace lumodevice::platform
