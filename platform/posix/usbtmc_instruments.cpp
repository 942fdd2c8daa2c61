#include "platform/posix/usbtmc_instruments.hpp"

#include "platform/builtin/builtin_visa.hpp"
#include "platform/posix/usbtmc_session.hpp"
#include "platform/same_name.hpp"
#include "platform/visa_library.hpp"

namespace lumodevice::posix {

std::vector<std::string> UsbtmcInstruments::descriptors() {
  std::vector<std::string> names;
  for (UsbtmcDevice& device : listUsbtmcDevices(roots_)) {
    names.push_back(std::move(device.descriptor));
  }
  return names;
}

std::unique_ptr<platform::InstrumentSession> UsbtmcInstruments::open(std::string_view descriptor,
                                                                     io::ViStatus& status) {
  for (const UsbtmcDevice& device : listUsbtmcDevices(roots_)) {
    if (platform::sameName(device.descriptor, descriptor)) {
      return UsbtmcSession::open(device, status);
    }
  }
  status = io::VI_ERROR_RSRC_NFOUND;
  return nullptr;
}

}  // namespace lumodevice::posix

namespace lumodevice::platform {

std::unique_ptr<io::Visa> builtinVisa() {
  return std::make_unique<BuiltinVisa>(std::make_unique<posix::UsbtmcInstruments>());
}

}  // namespace lumodevice::platform
