#pragma once

#include <cstddef>
#include <fstream>
#include <iosfwd>
#include <string>
#include <string_view>

#include "hosts/zanctl/output/output.hpp"

/// The files that a command line names. What cannot be used throws Unusable, which says why.
namespace zanctl {

/// Stands for standard input or output.
inline constexpr std::string_view kStandardStream = "-";

[[nodiscard]] std::ifstream openToRead(const std::string& file);

/// The bytes of a file or of standard input, the first `most` of them.
[[nodiscard]] std::string readBytes(const std::string& file, std::size_t most,
                                    std::istream& standardInput);

/// Sees beforehand whether a file could be written, so that nobody waits for what cannot be kept.
void checkWritable(const std::string& file, const Output& standardOutput);

/// Replaces the file, or writes to standard output.
void writeBytes(const std::string& file, std::string_view bytes, Output& standardOutput);

}  // namespace zanctl
