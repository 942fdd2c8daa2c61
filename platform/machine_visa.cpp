#include "platform/machine_visa.hpp"

#include <utility>

#include "lumodevice/io/fault.hpp"

namespace lumodevice::platform {

std::string VisaLibraryResult::failureText() const {
  std::string text;
  for (const VisaLibraryFailure& failure : failures) {
    if (!text.empty()) text += "; ";
    text.append(failure.name).append(": ").append(failure.reason);
  }
  return text;
}

MachineVisa::MachineVisa(const std::optional<std::string>& library) {
  if (library) {
    VisaLibraryResult loaded = loadVisaLibrary(*library);
    if (loaded.library == nullptr) {
      throw io::IoFault(io::VI_ERROR_LIBRARY_NFOUND,
                        "cannot load the VISA library: " + loaded.failureText());
    }
    visa_ = std::move(loaded.library);
    name_ = loaded.name;
  }
}

io::Visa& MachineVisa::target() {
  if (visa_ == nullptr) {
    VisaLibraryResult loaded = loadVisaLibrary();
    if (loaded.library != nullptr) {
      visa_ = std::move(loaded.library);
      name_ = loaded.name;
    } else {
      visa_ = builtinVisa();
      name_ = "built-in layer";
      failures_ = std::move(loaded.failures);
    }
  }
  return *visa_;
}

}  // namespace lumodevice::platform
