#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace zanctl {

/// The kinds of link that an operator of the panel can choose.
enum class Link { Visa, VisaCom, Serial };

/// The link in the middle of a sentence.
[[nodiscard]] constexpr std::string_view nameOf(Link link) {
  switch (link) {
    case Link::Serial:
      return "the serial port";
    case Link::VisaCom:
      return "VISA COM";
    case Link::Visa:
      break;
  }
  return "the VISA library";
}

/// What the links lead to.
struct LinkOptions {
  bool simulate = false;
  bool virtualTime = false;
  /// A recording that is played back in the place of instruments.
  std::optional<std::string> replay;
  /// None: the platform's usual names, then the built-in layer.
  std::optional<std::string> visaLibrary;
  /// Port number to device; empty: the machine's own serial devices.
  std::map<int, std::string> ports;
};

}  // namespace zanctl
