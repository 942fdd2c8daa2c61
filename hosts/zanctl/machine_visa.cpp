#include "hosts/zanctl/machine_visa.hpp"

#include <array>
#include <cstdio>

#include "hosts/zanctl/mistake.hpp"
#include "platform/posix/builtin_visa.hpp"
#include "platform/posix/visa_library.hpp"

namespace zanctl {

namespace {

namespace posix = lumodevice::posix;
using namespace lumodevice::io;

std::string statusText(ViStatus status) {
  switch (status) {
    case VI_ERROR_NPERMISSION:
      return "no permission; a udev rule or a group has to give it";
    case VI_ERROR_RSRC_LOCKED:
    case VI_ERROR_RSRC_BUSY:
      return "in use by another program";
    default:
      std::array<char, 24> hexadecimal{};
      (void)std::snprintf(hexadecimal.data(), hexadecimal.size(), "VISA status 0x%08X",
                          static_cast<unsigned>(status));
      return hexadecimal.data();
  }
}

}  // namespace

MachineVisa::MachineVisa(const std::optional<std::string>& library) {
  if (library) {
    posix::VisaLibraryResult loaded = posix::loadVisaLibrary(*library);
    if (loaded.library == nullptr) {
      throw WrongCommandLine("cannot load the VISA library: " + loaded.failureText());
    }
    visa_ = std::move(loaded.library);
    name_ = loaded.name;
  }
}

Visa& MachineVisa::target() {
  if (visa_ == nullptr) {
    posix::VisaLibraryResult loaded = posix::loadVisaLibrary();
    if (loaded.library != nullptr) {
      visa_ = std::move(loaded.library);
      name_ = loaded.name;
    } else {
      visa_ = std::make_unique<posix::BuiltinVisa>();
      name_ = "the built-in layer";
      for (const posix::VisaLibraryFailure& failure : loaded.failures) {
        tried_ += (tried_.empty() ? "" : ", ") + failure.name;
        if (failure.reason != posix::kNoSuchFile) {
          broken_ += (broken_.empty() ? "" : ", ") + failure.name + " " + failure.reason;
        }
      }
    }
  }
  return *visa_;
}

MachineVisa::ViStatus MachineVisa::viOpen(ViSession resourceManager, const std::string& descriptor,
                                          std::uint32_t accessMode, std::uint32_t openTimeout,
                                          ViSession& instrument) {
  const ViStatus status =
      ForwardingVisa::viOpen(resourceManager, descriptor, accessMode, openTimeout, instrument);
  if (status < VI_SUCCESS) {
    refused_.insert_or_assign(descriptor, status);
  } else {
    refused_.erase(descriptor);
    opened_ = true;
  }
  return status;
}

std::string MachineVisa::advice() const {
  std::string text;
  for (const auto& [descriptor, status] : refused_) {
    text += descriptor + " cannot be opened (" + statusText(status) + "); ";
  }
  if (!broken_.empty()) {
    text +=
        "no VISA library can be used (" + broken_ + "; name another with --visa-library PATH); ";
  } else if (!tried_.empty()) {
    text +=
        "no VISA library is installed (tried " + tried_ + "; name one with --visa-library PATH); ";
  }
  const bool nothing = !opened_ && refused_.empty();
  text += nothing ? name_ + " sees no instrument"
                  : std::string("no ") + (refused_.empty() ? "" : "other ") + "resource of " +
                        name_ + " answers as a ZAN";
  return text + "; check its power and cable, or for a serial device try --link serial";
}

}  // namespace zanctl
