#include <algorithm>

#include "lumodevice/text/text.hpp"

namespace lumodevice::text {
namespace {

/// The count as a length of at most `most`.
std::size_t length(std::int64_t count, std::size_t most) {
  if (count < 0) throw NumberFault(kInvalidArgument, "a count of characters is negative");
  return static_cast<std::size_t>(std::min<std::uint64_t>(static_cast<std::uint64_t>(count), most));
}

}  // namespace

std::string Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

std::string Left(std::string_view text, std::int64_t count) {
  return std::string(text.substr(0, length(count, text.size())));
}

std::string Right(std::string_view text, std::int64_t count) {
  return std::string(text.substr(text.size() - length(count, text.size())));
}

std::string Mid(std::string_view text, std::int64_t start, std::int64_t count) {
  if (start < 1) throw NumberFault(kInvalidArgument, "positions in a text count from 1");
  return Left(text.substr(length(start - 1, text.size())), count);
}

std::vector<std::string> Split(std::string_view text, char separator) {
  std::vector<std::string> parts;
  if (text.empty()) return parts;
  std::size_t begin = 0;
  for (std::size_t end = 0; (end = text.find(separator, begin)) != std::string_view::npos;
       begin = end + 1) {
    parts.emplace_back(text.substr(begin, end - begin));
  }
  parts.emplace_back(text.substr(begin));
  return parts;
}

bool contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

}  // namespace lumodevice::text
