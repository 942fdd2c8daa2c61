#include "platform/builtin/socket_address.hpp"

#include <algorithm>
#include <charconv>

#include "platform/same_name.hpp"

namespace lumodevice::platform {

namespace {

constexpr std::string_view kInterface = "TCPIP";
constexpr std::string_view kClass = "SOCKET";
constexpr std::string_view kSeparator = "::";

/// Of digits alone: a sign is none, in front of a 0 neither.
template <typename Number>
bool wholeNumber(std::string_view text, Number& number) {
  if (text.starts_with('-')) return false;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size();
}

/// What is in no name of a host and no address: blanks, control characters, and what only search
/// expressions have.
bool isForeignToHosts(char c) {
  const auto byte = static_cast<unsigned char>(c);
  constexpr unsigned char kDelete = 0x7F;
  return byte <= ' ' || byte == kDelete ||
         std::string_view("?*[](){}|\\").find(c) != std::string_view::npos;
}

/// Cuts the last field off `text`.
std::string_view takeLast(std::string_view& text) {
  const auto cut = text.rfind(kSeparator);
  if (cut == std::string_view::npos) return {};
  const std::string_view last = text.substr(cut + kSeparator.size());
  text = text.substr(0, cut);
  return last;
}

}  // namespace

std::optional<SocketAddress> parseSocketAddress(std::string_view resource) {
  if (!sameName(takeLast(resource), kClass)) return {};
  SocketAddress address;
  if (!wholeNumber(takeLast(resource), address.port) || address.port == 0) return {};
  const auto cut = resource.find(kSeparator);
  if (cut == std::string_view::npos) return {};
  const std::string_view interface = resource.substr(0, cut);
  if (!sameName(interface.substr(0, kInterface.size()), kInterface)) return {};
  const std::string_view board = interface.substr(kInterface.size());
  if (!board.empty() && !wholeNumber(board, address.board)) return {};
  std::string_view host = resource.substr(cut + kSeparator.size());
  const bool bracketed = host.size() > 2 && host.front() == '[' && host.back() == ']';
  if (bracketed) host = host.substr(1, host.size() - 2);
  if (host.empty() || std::any_of(host.begin(), host.end(), isForeignToHosts)) return {};
  if (!bracketed && host.find(':') != std::string_view::npos) return {};
  address.host = host;
  return address;
}

}  // namespace lumodevice::platform
