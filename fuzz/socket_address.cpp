// Any bytes at all as the name of a raw socket: of all ways to cut it into interface, host, port
// and class the one that makes sense is taken, and its name reads back.

#include "platform/builtin/socket_address.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "fuzz/require.hpp"

namespace {

using lumodevice::fuzz::require;
using lumodevice::platform::parseSocketAddress;
using lumodevice::platform::SocketAddress;

constexpr std::string_view kSeparator = "::";
constexpr std::int64_t kLargestBoard = 2'147'483'647;
constexpr std::int64_t kLargestPort = 65'535;

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

/// The number that digits alone make, up to `largest`.
std::optional<std::int64_t> number(std::string_view digits, std::int64_t largest) {
  if (digits.empty() || !std::ranges::all_of(digits, isDigit)) return {};
  std::int64_t value = 0;
  for (const char digit : digits) {
    value = value * 10 + (digit - '0');
    if (value > largest) return {};
  }
  return value;
}

std::string upper(std::string_view text) {
  std::string made(text);
  for (char& c : made) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  return made;
}

/// A host without its brackets; nothing for what is none.
std::optional<std::string> hostIn(std::string_view text) {
  const bool bracketed = text.size() > 2 && text.front() == '[' && text.back() == ']';
  if (bracketed) text = text.substr(1, text.size() - 2);
  const auto fits = [&](char c) {
    const bool blank = (c >= '\0' && c <= ' ') || c == '\x7F';
    const bool searching = std::string_view("?*[](){}|\\").find(c) != std::string_view::npos;
    return !blank && !searching && (bracketed || c != ':');
  };
  if (text.empty() || !std::ranges::all_of(text, fits)) return {};
  return std::string(text);
}

std::optional<SocketAddress> inParts(std::string_view interface, std::string_view host,
                                     std::string_view port, std::string_view end) {
  if (upper(end) != "SOCKET" || !upper(interface).starts_with("TCPIP")) return {};
  const std::string_view digits = interface.substr(5);
  const auto board =
      digits.empty() ? std::optional<std::int64_t>(0) : number(digits, kLargestBoard);
  const auto portNumber = number(port, kLargestPort);
  const auto name = hostIn(host);
  if (!board || !portNumber || *portNumber == 0 || !name) return {};
  return SocketAddress{.board = static_cast<int>(*board),
                       .host = *name,
                       .port = static_cast<std::uint16_t>(*portNumber)};
}

bool same(const std::optional<SocketAddress>& a, const std::optional<SocketAddress>& b) {
  if (!a || !b) return !a && !b;
  return a->board == b->board && a->host == b->host && a->port == b->port;
}

/// Tries every three separators.
std::optional<SocketAddress> inAnyParts(std::string_view name) {
  const auto next = [&](std::size_t from) { return name.find(kSeparator, from); };
  constexpr auto kNone = std::string_view::npos;
  std::optional<SocketAddress> found;
  for (auto a = next(0); a != kNone; a = next(a + 1)) {
    for (auto b = next(a + 2); b != kNone; b = next(b + 1)) {
      for (auto c = next(b + 2); c != kNone; c = next(c + 1)) {
        const auto address = inParts(name.substr(0, a), name.substr(a + 2, b - a - 2),
                                     name.substr(b + 2, c - b - 2), name.substr(c + 2));
        require(!address || !found, "a name makes sense in one way");
        if (address) found = address;
      }
    }
  }
  return found;
}

std::string nameOf(const SocketAddress& address) {
  const bool bracketed = address.host.find(':') != std::string::npos;
  return "TCPIP" + std::to_string(address.board) +
         "::" + (bracketed ? '[' + address.host + ']' : address.host) +
         "::" + std::to_string(address.port) + "::SOCKET";
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view name(reinterpret_cast<const char*>(data), size);
  const auto address = parseSocketAddress(name);
  require(same(address, inAnyParts(name)), "a name is cut where it makes sense");
  if (address) require(same(address, parseSocketAddress(nameOf(*address))), "a name reads back");
  return 0;
}
