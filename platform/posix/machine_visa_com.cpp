#include "platform/machine_visa_com.hpp"

#include "lumodevice/io/visa_com_over_visa.hpp"

namespace lumodevice::platform {

std::unique_ptr<io::VisaCom> machineVisaCom(io::Visa& visa) {
  return std::make_unique<io::VisaComOverVisa>(visa);
}

}  // namespace lumodevice::platform
