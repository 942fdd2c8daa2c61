#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace lumodevice::posix {

/// Where the system shows its devices; a test puts folders of its own there.
struct SystemRoots {
  std::filesystem::path dev = "/dev";
  std::filesystem::path sys = "/sys";
  std::filesystem::path proc = "/proc";
};

/// The names in `folder` that are `prefix` and a number, ordered by the number; none when the
/// folder cannot be read.
[[nodiscard]] std::vector<std::string> numberedEntries(const std::filesystem::path& folder,
                                                       std::string_view prefix);

/// A text that a device tells of itself, cut to a length that fits anywhere: "_" stands for what
/// does not print and for the `forbidden` characters.
[[nodiscard]] std::string cleanedText(std::string text, std::string_view forbidden = "");

/// The first line of a small file, without blanks at its end; "" when it cannot be read.
[[nodiscard]] std::string firstLine(const std::filesystem::path& file);

}  // namespace lumodevice::posix
