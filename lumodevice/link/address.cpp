#include "lumodevice/link/address.hpp"

#include <algorithm>
#include <charconv>

#include "lumodevice/text/text.hpp"

namespace lumodevice::link {

namespace {

constexpr std::string_view kPort = "COM";
constexpr int kHighestPort = 16;

char capital(char character) {
  return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A')
                                              : character;
}

/// Of "COM3"; 0 for what is no port.
std::int16_t portIn(std::string_view text) {
  if (!std::ranges::equal(text.substr(0, kPort.size()), kPort, {}, capital)) {
    return 0;
  }
  text.remove_prefix(kPort.size());
  std::int16_t port = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), port);
  const bool whole = error == std::errc() && end == text.data() + text.size();
  return whole && port >= 1 && port <= kHighestPort ? port : std::int16_t{0};
}

/// What serial numbers are made of, so that none is taken for a search expression.
bool mayBeSerialNumber(std::string_view text) {
  return !text.empty() && std::ranges::all_of(text, [](char character) {
    const char upper = capital(character);
    return (upper >= 'A' && upper <= 'Z') || (character >= '0' && character <= '9') ||
           character == '-' || character == '_' || character == '.';
  });
}

}  // namespace

std::optional<Address> parseAddress(std::string_view text, io::SerialDevices& devices) {
  const std::string trimmed = text::Trim(text);
  if (const std::int16_t port = portIn(trimmed); port != 0) {
    return Address{.port = port, .resource = {}};
  }
  if (trimmed.starts_with('/')) {
    const auto port = static_cast<std::int16_t>(devices.portNamed(trimmed));
    return port == 0 ? std::nullopt : std::optional(Address{.port = port, .resource = {}});
  }
  if (text::contains(trimmed, "::")) {
    return Address{.resource = trimmed};
  }
  if (mayBeSerialNumber(trimmed)) {
    return Address{.resource = "?*::" + trimmed + "::?*INSTR"};
  }
  return std::nullopt;
}

}  // namespace lumodevice::link
