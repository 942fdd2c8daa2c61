#include "hosts/zanctl/links/visa_witness.hpp"

#include <array>
#include <cstdio>

#include "platform/device_list.hpp"

namespace zanctl {

namespace {

namespace platform = lumodevice::platform;
using namespace lumodevice::io;

std::string permissionText(const std::string& resource) {
  const std::string advice = platform::permissionAdviceForResource(resource);
  return "no permission; " + (advice.empty() ? "a udev rule or a group has to give it" : advice);
}

std::string statusText(const std::string& resource, ViStatus status) {
  switch (status) {
    case VI_ERROR_NPERMISSION:
      return permissionText(resource);
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

std::string joined(const auto& names) {
  std::string text;
  for (const std::string& name : names) {
    text += (text.empty() ? "" : ", ") + name;
  }
  return text;
}

}  // namespace

std::string whyNoLibrary(const std::vector<platform::VisaLibraryFailure>& failures) {
  std::vector<std::string> missing;
  std::string broken;
  for (const platform::VisaLibraryFailure& failure : failures) {
    if (failure.absent) {
      missing.push_back(failure.name);
    } else {
      broken.append(failure.name).append(": ").append(failure.reason).append("; ");
    }
  }
  if (failures.empty()) {
    return "";
  }
  if (broken.empty()) {
    return "no VISA library is installed (tried " + joined(missing) +
           "; name one with --visa-library PATH)";
  }
  return "no VISA library can be used (" + broken +
         (missing.empty() ? "" : "not there: " + joined(missing) + "; ") +
         "name another with --visa-library PATH)";
}

WitnessedVisa::ViStatus WitnessedVisa::viOpen(ViSession resourceManager,
                                              const std::string& descriptor,
                                              std::uint32_t accessMode, std::uint32_t openTimeout,
                                              ViSession& instrument) {
  const ViStatus status = platform::MachineVisa::viOpen(resourceManager, descriptor, accessMode,
                                                        openTimeout, instrument);
  if (status < VI_SUCCESS) {
    refused_.insert_or_assign(descriptor, status);
    opened_.erase(descriptor);
  } else {
    opened_.insert(descriptor);
    refused_.erase(descriptor);
  }
  return status;
}

std::string WitnessedVisa::advice() const {
  std::string text;
  for (const auto& [descriptor, status] : refused_) {
    text += descriptor + " cannot be opened (" + statusText(descriptor, status) + "); ";
  }
  const std::string other = refused_.empty() ? "" : "other ";
  if (failures().empty()) {
    return text + "no " + other + "resource of " + name() +
           " answers as a ZAN; check its power and cable, or for a serial device try --link serial";
  }
  text += whyNoLibrary(failures()) + ", and ";
  if (opened_.empty()) {
    return text + "the built-in layer sees no " + other +
           "USB instrument; for a serial device try --link serial";
  }
  return text + "over the built-in layer no ZAN answered on " + joined(opened_) +
         "; check its power and cable, or for a serial device try --link serial";
}

}  // namespace zanctl
