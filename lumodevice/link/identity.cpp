#include "lumodevice/link/identity.hpp"

#include "lumodevice/text/text.hpp"

namespace lumodevice::link {

void Identity::ParseIdentity() {
  fields_ = {};
  const auto parts = text::Split(answer_, ',');
  if (parts.size() < 4) {
    return;
  }
  fields_.maker = parts[0];
  fields_.model = parts[1];
  fields_.serialNumber = parts[2];
  fields_.firmwareVersion = parts[3];
  const auto version = text::Split(fields_.firmwareVersion, '.');
  if (version.size() < 2) {
    return;
  }
  for (std::size_t i = 0; i < fields_.versionParts.size() && i < version.size(); ++i) {
    fields_.versionParts[i] = version[i];
  }
}

}  // namespace lumodevice::link
