#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/zanctl/output/table.hpp"

namespace zanctl {

/// What a help page takes at most, in columns.
inline constexpr std::size_t kPageWidth = 80;

/// The text in lines of at most `width` columns, broken at blanks; a longer word stands alone.
[[nodiscard]] std::vector<std::string> wrapped(std::string_view text, std::size_t width);

/// An aligned table no wider than a page: what the last column has no room for goes on below.
[[nodiscard]] std::string helpTable(const std::vector<Row>& rows, const std::string& indent);

}  // namespace zanctl
