#include "hosts/zanctl/output/wrap.hpp"

#include <algorithm>

#include "hosts/zanctl/output/escape.hpp"

namespace zanctl {

std::vector<std::string> wrapped(std::string_view text, std::size_t width) {
  std::vector<std::string> lines(1);
  while (!text.empty()) {
    const std::string_view word = text.substr(0, text.find(' '));
    text.remove_prefix(std::min(word.size() + 1, text.size()));
    const std::size_t taken = columns(lines.back());
    if (taken > 0 && taken + 1 + columns(word) > width) {
      lines.emplace_back();
    }
    lines.back().append(lines.back().empty() ? "" : " ").append(word);
  }
  return lines;
}

std::string helpTable(const std::vector<Row>& rows, const std::string& indent) {
  constexpr std::size_t kBetween = 2;
  std::vector<std::size_t> widths;
  for (const Row& row : rows) {
    widths.resize(std::max(widths.size(), row.size()));
    for (std::size_t i = 0; i + 1 < row.size(); ++i) {
      widths[i] = std::max(widths[i], columns(row[i]));
    }
  }
  std::size_t left = indent.size();
  for (std::size_t i = 0; i + 1 < widths.size(); ++i) {
    left += widths[i] + kBetween;
  }
  std::vector<Row> broken;
  for (const Row& row : rows) {
    Row part = row;
    for (std::string& line : wrapped(row.back(), kPageWidth - left)) {
      part.back() = std::move(line);
      broken.push_back(part);
      part.assign(row.size(), "");
    }
  }
  return alignedTable(broken, indent);
}

}  // namespace zanctl
