#include "simulator/wire/block.hpp"

namespace zansim {

std::optional<BlockHeader> blockHeader(std::string_view text) {
  if (text.size() < 2 || text[0] != '#' || text[1] < '1' || text[1] > '9') {
    return std::nullopt;
  }
  const auto digits = static_cast<std::size_t>(text[1] - '0');
  if (text.size() < 2 + digits) {
    return std::nullopt;
  }
  std::size_t length = 0;
  for (const char c : text.substr(2, digits)) {
    if (c < '0' || c > '9') {
      return std::nullopt;
    }
    length = length * 10 + static_cast<std::size_t>(c - '0');
  }
  return BlockHeader{2 + digits, length};
}

std::optional<std::string_view> blockData(std::string_view text) {
  const std::optional<BlockHeader> header = blockHeader(text);
  if (!header || text.size() - header->size != header->length) {
    return std::nullopt;
  }
  return text.substr(header->size);
}

void appendBlock(std::string& text, std::string_view data) {
  const std::string length = std::to_string(data.size());
  text.append("#").append(std::to_string(length.size())).append(length).append(data);
}

}  // namespace zansim
