#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "recordings/wire_tap.hpp"

/// A recording is a text; docs/recordings.md has its lines.
namespace lumodevice::recordings {

/// The first line of each file.
inline constexpr std::string_view kFirstLine = "# LumoDevice wire recording 1";
/// In the head: when it began, by the clock of the bench, and of which file of several it is the
/// head.
inline constexpr std::string_view kBegins = "# begins ";
inline constexpr std::string_view kPart = "# part ";

/// Bytes in quotes: control characters, bytes above 0x7E, quotes and backslashes are \n, \r, \t,
/// \", \\ or \xHH.
[[nodiscard]] std::string inQuotes(std::string_view bytes);

/// The event as a line, its end included. The times count from `start`. "" for one that is not
/// kept: what is about to be sent.
[[nodiscard]] std::string lineOf(const WireEvent& event, WireEvent::Duration start);

/// A line of the program's own, such as an information box.
[[nodiscard]] std::string noteLine(std::string_view text, WireEvent::Duration at);

/// An event as it was read.
struct Entry {
  WireAct act = WireAct::Manager;
  std::uint32_t link = 0;
  std::string name;
  std::string bytes;
  std::uint32_t number = 0;
  std::uint32_t value = 0;
  std::int32_t status = 0;
  bool serial = false;
  std::string fault;
  WireEvent::Duration begin{0};
  WireEvent::Duration end{0};
  /// The file, counted from 0, and the line in it, from 1.
  std::size_t file = 0;
  std::size_t line = 0;
};

/// A line that is none of a recording; the text says what is wrong with it.
class EntryFault : public std::runtime_error {
 public:
  using runtime_error::runtime_error;
};

/// What a line without its end says; none for a remark (#), a note and an empty line. Throws
/// EntryFault.
[[nodiscard]] std::optional<Entry> entryIn(std::string_view line);

}  // namespace lumodevice::recordings
