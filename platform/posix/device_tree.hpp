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
};

/// The names in `folder` that are `prefix` and a number, ordered by the number; none when the
/// folder cannot be read.
[[nodiscard]] std::vector<std::string> numberedEntries(const std::filesystem::path& folder,
                                                       std::string_view prefix);

/// The first line of a small file, without blanks at its end; "" when it cannot be read.
[[nodiscard]] std::string firstLine(const std::filesystem::path& file);

}  // namespace lumodevice::posix
