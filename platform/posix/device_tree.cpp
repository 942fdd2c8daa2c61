#include "platform/posix/device_tree.hpp"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <system_error>
#include <utility>

namespace lumodevice::posix {

std::vector<std::string> numberedEntries(const std::filesystem::path& folder,
                                         std::string_view prefix) {
  std::vector<std::pair<unsigned, std::string>> found;
  std::error_code error;
  for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    if (!name.starts_with(prefix)) continue;
    unsigned number = 0;
    const char* last = name.data() + name.size();
    const auto [stopped, bad] = std::from_chars(name.data() + prefix.size(), last, number);
    if (bad == std::errc() && stopped == last) found.emplace_back(number, name);
  }
  std::sort(found.begin(), found.end());
  std::vector<std::string> names;
  names.reserve(found.size());
  for (auto& [number, name] : found) names.push_back(std::move(name));
  return names;
}

std::string cleanedText(std::string text, std::string_view forbidden) {
  // A VISA descriptor made of such texts must stay well below VI_FIND_BUFLEN.
  constexpr std::size_t kLongestText = 100;
  text.resize(std::min(text.size(), kLongestText));
  for (char& c : text) {
    if (c < ' ' || c > '~' || forbidden.find(c) != std::string_view::npos) c = '_';
  }
  return text;
}

std::string firstLine(const std::filesystem::path& file) {
  std::ifstream stream(file);
  std::string line;
  std::getline(stream, line);
  line.erase(line.find_last_not_of(" \t\r") + 1);
  return line;
}

}  // namespace lumodevice::posix
