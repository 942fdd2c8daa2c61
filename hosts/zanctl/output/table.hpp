#pragma once

#include <string>
#include <vector>

namespace zanctl {

using Row = std::vector<std::string>;

/// Lines of printed text, control characters escaped, whose columns stand below each other, two
/// blanks apart; the last column is not filled up. Every line starts with `indent`.
[[nodiscard]] std::string alignedTable(const std::vector<Row>& cells,
                                       const std::string& indent = "");

}  // namespace zanctl
