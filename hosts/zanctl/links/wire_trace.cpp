#include "hosts/zanctl/links/wire_trace.hpp"

#include <algorithm>
#include <array>
#include <cinttypes>
#include <cstdio>

#include "hosts/zanctl/output/escape.hpp"

namespace zanctl {

namespace {

constexpr std::size_t kLongestWhole = 64;
constexpr std::size_t kShownOfBinary = 32;
// No answer of an instrument is as long; a device that never ends its line must not fill the disk.
constexpr std::size_t kLongestText = 1024;
constexpr std::size_t kShownOfText = 256;

/// A definite-length block, or anything with bytes that no line of text has.
bool isBinary(std::string_view bytes) {
  const bool block = bytes.size() > 1 && bytes[0] == '#' && bytes[1] >= '1' && bytes[1] <= '9';
  return block || std::ranges::any_of(bytes, [](char byte) {
           const bool lineCharacter = byte == '\n' || byte == '\r' || byte == '\t';
           return !lineCharacter && (byte < ' ' || byte > '~');
         });
}

}  // namespace

std::string quotedBytes(std::string_view bytes) {
  const bool whole =
      bytes.size() <= kLongestWhole || (bytes.size() <= kLongestText && !isBinary(bytes));
  if (whole) {
    return '"' + escaped(bytes) + '"';
  }
  const std::size_t shown = isBinary(bytes) ? kShownOfBinary : kShownOfText;
  return '"' + escaped(bytes.substr(0, shown)) + "...\" +" + std::to_string(bytes.size()) +
         " bytes";
}

void WireTrace::take(const lumodevice::recordings::WireEvent& told) {
  using lumodevice::recordings::WireAct;
  switch (told.act) {
    case WireAct::Open:
      if (told.link != 0) {
        event("open ", escaped(told.name));
      }
      break;
    case WireAct::Close:
      event("close ", escaped(told.name));
      break;
    case WireAct::Sending:
      event("send ", quotedBytes(told.bytes));
      break;
    case WireAct::Received:
      if (!told.serial || !told.bytes.empty()) {
        event("recv ", quotedBytes(told.bytes));
      }
      break;
    case WireAct::Dropped:
      event("drop ", quotedBytes(told.bytes));
      break;
    default:
      break;
  }
}

void WireTrace::showedBox(std::string_view text) {
  event("box ", '"' + escaped(text) + '"');
}

void WireTrace::event(std::string_view what, std::string_view detail) {
  const std::int64_t micros =
      std::chrono::duration_cast<std::chrono::microseconds>(loop_.now()).count();
  std::array<char, 40> stamp{};
  (void)std::snprintf(stamp.data(), stamp.size(), "%" PRId64 ".%03" PRId64 " ", micros / 1000,
                      micros % 1000);
  output_.line(std::string(stamp.data()).append(what).append(detail));
}

}  // namespace zanctl
