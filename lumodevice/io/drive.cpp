#include "lumodevice/io/drive.hpp"

#include <string>

namespace lumodevice::io {

void Drive::replace(std::string_view path, std::span<const std::uint8_t> data) {
  const std::string fresh = std::string(path) + ".new";
  const auto removeFresh = [&] {
    if (fileExists(fresh)) remove(fresh);
  };
  removeFresh();
  try {
    open(fresh)->put(data);
    rename(fresh, path);
  } catch (const DriveFault&) {
    attempt(removeFresh);
    throw;
  }
}

void Drive::expectRoom(std::string_view /*path*/, std::size_t /*bytes*/) const {}

}  // namespace lumodevice::io
