#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>

#include "hosts/zanctl/output/output.hpp"
#include "platform/whole_files.hpp"

/// The files that a command line names. What cannot be used throws Unusable, which says why.
namespace zanctl {

/// Stands for standard input or output.
inline constexpr std::string_view kStandardStream = "-";

/// The bytes of a file or of standard input; of more than `most` bytes it cannot be read.
[[nodiscard]] std::string readBytes(const std::string& file, std::size_t most,
                                    std::istream& standardInput);

/// Room for what will be written to a file, so that nobody waits for what cannot be kept. Standard
/// output needs none.
[[nodiscard]] std::optional<lumodevice::platform::Room> roomFor(const std::string& file,
                                                                std::uint64_t bytes,
                                                                const Output& standardOutput);

/// Replaces the file as a whole, or writes to standard output.
void writeBytes(const std::string& file, std::string_view bytes, Output& standardOutput);

}  // namespace zanctl
