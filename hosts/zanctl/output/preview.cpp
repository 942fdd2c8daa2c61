#include "hosts/zanctl/output/preview.hpp"

namespace zanctl {

namespace {

using lumodevice::toolkit::Colour;
using lumodevice::toolkit::Picture;

std::string meanColour(const Picture& picture, int left, int top, int step) {
  int red = 0;
  int green = 0;
  int blue = 0;
  for (int y = top; y < top + step; ++y) {
    for (int x = left; x < left + step; ++x) {
      const Colour point = picture.point(x, y);
      red += point.red;
      green += point.green;
      blue += point.blue;
    }
  }
  const int count = step * step;
  return std::to_string(red / count) + ';' + std::to_string(green / count) + ';' +
         std::to_string(blue / count);
}

}  // namespace

std::string preview(const Picture& picture, int step, std::string_view indent) {
  constexpr std::string_view kUpperHalf = "\xE2\x96\x80";
  std::string lines;
  for (int top = 0; top + 2 * step <= picture.height(); top += 2 * step) {
    lines += indent;
    for (int left = 0; left + step <= picture.width(); left += step) {
      lines.append("\x1B[38;2;").append(meanColour(picture, left, top, step));
      lines.append(";48;2;").append(meanColour(picture, left, top + step, step)).append("m");
      lines += kUpperHalf;
    }
    lines += "\x1B[0m\n";
  }
  return lines;
}

}  // namespace zanctl
