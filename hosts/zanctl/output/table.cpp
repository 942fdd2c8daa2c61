#include "hosts/zanctl/output/table.hpp"

#include <algorithm>

#include "hosts/zanctl/output/escape.hpp"

namespace zanctl {

std::string alignedTable(const std::vector<Row>& cells, const std::string& indent) {
  std::vector<Row> rows = cells;
  for (Row& row : rows) {
    std::ranges::transform(row, row.begin(), printable);
  }
  std::vector<std::size_t> widths;
  for (const Row& row : rows) {
    widths.resize(std::max(widths.size(), row.size()));
    for (std::size_t i = 0; i < row.size(); ++i) {
      widths[i] = std::max(widths[i], columns(row[i]));
    }
  }
  std::string table;
  for (const Row& row : rows) {
    std::string line = indent;
    for (std::size_t i = 0; i < row.size(); ++i) {
      line += row[i];
      line.append(widths[i] - columns(row[i]) + 2, ' ');
    }
    line.erase(line.find_last_not_of(' ') + 1);
    table += line + '\n';
  }
  return table;
}

}  // namespace zanctl
