#include "hosts/zanctl/links/visa_resources.hpp"

#include <cstdint>

namespace zanctl {

using namespace lumodevice::io;

std::vector<std::string> visaResources(Visa& visa) {
  std::vector<std::string> found;
  ViSession manager = 0;
  if (visa.viOpenDefaultRM(manager) < VI_SUCCESS) {
    return found;
  }
  ViFindList list = 0;
  std::uint32_t count = 0;
  std::string resource;
  if (visa.viFindRsrc(manager, "?*", list, count, resource) >= VI_SUCCESS) {
    // A library that promises more than it names ends the list where it fails.
    do {
      found.push_back(resource);
    } while (found.size() < count && visa.viFindNext(list, resource) >= VI_SUCCESS);
    visa.viClose(list);
  }
  visa.viClose(manager);
  return found;
}

}  // namespace zanctl
