#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace zansim {

/// What stands before the data of a definite-length block: "#", the number of digits, the digits.
struct BlockHeader {
  std::size_t size;    ///< bytes of the header itself
  std::size_t length;  ///< bytes of data that it promises
};

/// Nothing where `text` does not begin with such a header.
[[nodiscard]] std::optional<BlockHeader> blockHeader(std::string_view text);

/// The data of the block that is all of `text`; nothing where it is anything else.
[[nodiscard]] std::optional<std::string_view> blockData(std::string_view text);

/// Appends a block of `data`, at most 999 999 999 bytes, with no more digits than its length needs.
void appendBlock(std::string& text, std::string_view data);

}  // namespace zansim
