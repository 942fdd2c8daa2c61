#include "hosts/zanctl/output/preview.hpp"

#include <algorithm>
#include <vector>

namespace zanctl {

namespace {

using lumodevice::toolkit::Colour;
using lumodevice::toolkit::Picture;

struct Mean {
  int red = 0;
  int green = 0;
  int blue = 0;
};

Mean meanColour(const Picture& picture, int left, int top, int width, int height) {
  Mean sum;
  for (int y = top; y < top + height; ++y) {
    for (int x = left; x < left + width; ++x) {
      const Colour point = picture.point(x, y);
      sum.red += point.red;
      sum.green += point.green;
      sum.blue += point.blue;
    }
  }
  const int count = width * height;
  return {sum.red / count, sum.green / count, sum.blue / count};
}

std::string colourText(const Mean& colour) {
  return std::to_string(colour.red) + ';' + std::to_string(colour.green) + ';' +
         std::to_string(colour.blue);
}

}  // namespace

std::string preview(const Picture& picture, int step, std::string_view indent) {
  constexpr std::string_view kUpperHalf = "\xE2\x96\x80";
  std::string lines;
  for (int top = 0; top + 2 * step <= picture.height(); top += 2 * step) {
    lines += indent;
    for (int left = 0; left + step <= picture.width(); left += step) {
      lines.append("\x1B[38;2;").append(colourText(meanColour(picture, left, top, step, step)));
      lines.append(";48;2;").append(colourText(meanColour(picture, left, top + step, step, step)));
      lines += 'm';
      lines += kUpperHalf;
    }
    lines += "\x1B[0m\n";
  }
  return lines;
}

std::string previewInShades(const Picture& picture, int step, std::string_view indent) {
  constexpr std::string_view kShades = " .:-=+*#%@";
  std::vector<std::vector<int>> rows;
  int brightest = 1;
  for (int top = 0; top + 2 * step <= picture.height(); top += 2 * step) {
    rows.emplace_back();
    for (int left = 0; left + step <= picture.width(); left += step) {
      const Mean mean = meanColour(picture, left, top, step, 2 * step);
      rows.back().push_back(mean.red + mean.green + mean.blue);
      brightest = std::max(brightest, rows.back().back());
    }
  }
  std::string lines;
  for (const std::vector<int>& row : rows) {
    std::string line(indent);
    for (const int brightness : row) {
      line += kShades[static_cast<std::size_t>(brightness) * (kShades.size() - 1) /
                      static_cast<std::size_t>(brightest)];
    }
    line.erase(line.find_last_not_of(' ') + 1);
    lines += line + '\n';
  }
  return lines;
}

}  // namespace zanctl
