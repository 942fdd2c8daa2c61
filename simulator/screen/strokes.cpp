#include "simulator/screen/strokes.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <iterator>

namespace zansim {
namespace {

struct Point {
  double x;
  double y;
};

/// One move of the pen, in tenths of a capital's height from its top left: a curve from one point
/// to another, drawn towards a third.
struct Stroke {
  char letter;
  Point from;
  Point towards;
  Point to;
};

constexpr Stroke line(char letter, Point from, Point to) {
  return {letter, from, {(from.x + to.x) / 2, (from.y + to.y) / 2}, to};
}
constexpr Stroke dot(char letter, Point at) {
  return {letter, at, at, at};
}

constexpr Stroke kStrokes[] = {
    {'0', {3, 0}, {6, 0}, {6, 3.2}},
    line('0', {6, 3.2}, {6, 6.8}),
    {'0', {6, 6.8}, {6, 10}, {3, 10}},
    {'0', {3, 10}, {0, 10}, {0, 6.8}},
    line('0', {0, 6.8}, {0, 3.2}),
    {'0', {0, 3.2}, {0, 0}, {3, 0}},
    line('1', {1.2, 2}, {3.6, 0}),
    line('1', {3.6, 0}, {3.6, 10}),
    {'2', {0.1, 2.9}, {0.1, 0}, {3, 0}},
    {'2', {3, 0}, {6, 0}, {6, 2.8}},
    {'2', {6, 2.8}, {6, 4.3}, {4.4, 5.8}},
    line('2', {4.4, 5.8}, {0, 10}),
    line('2', {0, 10}, {6, 10}),
    {'3', {0.2, 2}, {0.6, 0}, {3, 0}},
    {'3', {3, 0}, {5.8, 0}, {5.8, 2.4}},
    {'3', {5.8, 2.4}, {5.8, 4.7}, {3, 4.7}},
    line('3', {2.2, 4.7}, {3, 4.7}),
    {'3', {3, 4.7}, {6, 4.7}, {6, 7.3}},
    {'3', {6, 7.3}, {6, 10}, {3, 10}},
    {'3', {3, 10}, {0.4, 10}, {0, 7.8}},
    line('4', {4.5, 0}, {0, 7}),
    line('4', {0, 7}, {6, 7}),
    line('4', {4.5, 0}, {4.5, 10}),
    line('5', {5.6, 0}, {0.8, 0}),
    line('5', {0.8, 0}, {0.5, 4.4}),
    {'5', {0.5, 4.4}, {1.6, 3.6}, {3, 3.6}},
    {'5', {3, 3.6}, {6, 3.6}, {6, 6.8}},
    {'5', {6, 6.8}, {6, 10}, {3, 10}},
    {'5', {3, 10}, {0.6, 10}, {0, 8}},
    {'6', {5.5, 1.4}, {4.8, 0}, {3.2, 0}},
    {'6', {3.2, 0}, {0, 0}, {0, 5.2}},
    line('6', {0, 5.2}, {0, 6.9}),
    {'6', {0, 6.9}, {0, 10}, {3, 10}},
    {'6', {3, 10}, {6, 10}, {6, 6.9}},
    {'6', {6, 6.9}, {6, 3.9}, {3, 3.9}},
    {'6', {3, 3.9}, {0, 3.9}, {0, 6.9}},
    line('7', {0, 0}, {6, 0}),
    {'7', {6, 0}, {2.4, 4}, {2.2, 10}},
    {'8', {3, 0}, {5.7, 0}, {5.7, 2.4}},
    {'8', {5.7, 2.4}, {5.7, 4.7}, {3, 4.7}},
    {'8', {3, 4.7}, {0.3, 4.7}, {0.3, 2.4}},
    {'8', {0.3, 2.4}, {0.3, 0}, {3, 0}},
    {'8', {3, 4.7}, {6, 4.7}, {6, 7.3}},
    {'8', {6, 7.3}, {6, 10}, {3, 10}},
    {'8', {3, 10}, {0, 10}, {0, 7.3}},
    {'8', {0, 7.3}, {0, 4.7}, {3, 4.7}},
    {'9', {0.5, 8.6}, {1.2, 10}, {2.8, 10}},
    {'9', {2.8, 10}, {6, 10}, {6, 4.8}},
    line('9', {6, 4.8}, {6, 3.1}),
    {'9', {6, 3.1}, {6, 0}, {3, 0}},
    {'9', {3, 0}, {0, 0}, {0, 3.1}},
    {'9', {0, 3.1}, {0, 6.1}, {3, 6.1}},
    {'9', {3, 6.1}, {6, 6.1}, {6, 3.1}},
    dot('.', {0, 10}),
    line('-', {0, 5.4}, {3.6, 5.4}),
    line('+', {0, 5.4}, {4, 5.4}),
    line('+', {2, 3.4}, {2, 7.4}),
    line('/', {0, 10}, {4, 0}),
    line('%', {0, 10}, {6, 0}),
    dot('%', {0.6, 1}),
    dot('%', {5.4, 9}),
    line('A', {0, 10}, {3, 0}),
    line('A', {3, 0}, {6, 10}),
    line('A', {1.1, 6.6}, {4.9, 6.6}),
    line('B', {0, 0}, {0, 10}),
    line('B', {0, 0}, {3, 0}),
    {'B', {3, 0}, {5.2, 0}, {5.2, 2.4}},
    {'B', {5.2, 2.4}, {5.2, 4.7}, {3, 4.7}},
    line('B', {0, 4.7}, {3, 4.7}),
    {'B', {3, 4.7}, {5.8, 4.7}, {5.8, 7.3}},
    {'B', {5.8, 7.3}, {5.8, 10}, {3, 10}},
    line('B', {3, 10}, {0, 10}),
    {'C', {6, 2.6}, {5.6, 0}, {3.2, 0}},
    {'C', {3.2, 0}, {0, 0}, {0, 3.6}},
    line('C', {0, 3.6}, {0, 6.4}),
    {'C', {0, 6.4}, {0, 10}, {3.2, 10}},
    {'C', {3.2, 10}, {5.6, 10}, {6, 7.4}},
    line('D', {0, 0}, {0, 10}),
    line('D', {0, 0}, {2.6, 0}),
    {'D', {2.6, 0}, {6, 0}, {6, 3.6}},
    line('D', {6, 3.6}, {6, 6.4}),
    {'D', {6, 6.4}, {6, 10}, {2.6, 10}},
    line('D', {2.6, 10}, {0, 10}),
    line('E', {0, 0}, {0, 10}),
    line('E', {0, 0}, {5, 0}),
    line('E', {0, 4.8}, {4.2, 4.8}),
    line('E', {0, 10}, {5, 10}),
    line('F', {0, 0}, {0, 10}),
    line('F', {0, 0}, {5, 0}),
    line('F', {0, 4.8}, {4.2, 4.8}),
    {'G', {6, 2.4}, {5.6, 0}, {3.2, 0}},
    {'G', {3.2, 0}, {0, 0}, {0, 3.6}},
    line('G', {0, 3.6}, {0, 6.4}),
    {'G', {0, 6.4}, {0, 10}, {3.2, 10}},
    {'G', {3.2, 10}, {6, 10}, {6, 7}},
    line('G', {6, 7}, {6, 5.4}),
    line('G', {6, 5.4}, {3.6, 5.4}),
    line('H', {0, 0}, {0, 10}),
    line('H', {6, 0}, {6, 10}),
    line('H', {0, 4.8}, {6, 4.8}),
    line('I', {0, 0}, {0, 10}),
    line('J', {4.4, 0}, {4.4, 7}),
    {'J', {4.4, 7}, {4.4, 10}, {2.2, 10}},
    {'J', {2.2, 10}, {0, 10}, {0, 7.4}},
    line('K', {0, 0}, {0, 10}),
    line('K', {5.6, 0}, {0, 6}),
    line('K', {2, 4}, {6, 10}),
    line('L', {0, 0}, {0, 10}),
    line('L', {0, 10}, {5, 10}),
    line('M', {0, 10}, {0, 0}),
    line('M', {0, 0}, {3.5, 6}),
    line('M', {3.5, 6}, {7, 0}),
    line('M', {7, 0}, {7, 10}),
    line('N', {0, 10}, {0, 0}),
    line('N', {0, 0}, {6, 10}),
    line('N', {6, 10}, {6, 0}),
    {'O', {3.2, 0}, {6.4, 0}, {6.4, 3.6}},
    line('O', {6.4, 3.6}, {6.4, 6.4}),
    {'O', {6.4, 6.4}, {6.4, 10}, {3.2, 10}},
    {'O', {3.2, 10}, {0, 10}, {0, 6.4}},
    line('O', {0, 6.4}, {0, 3.6}),
    {'O', {0, 3.6}, {0, 0}, {3.2, 0}},
    line('P', {0, 10}, {0, 0}),
    line('P', {0, 0}, {3, 0}),
    {'P', {3, 0}, {5.8, 0}, {5.8, 2.7}},
    {'P', {5.8, 2.7}, {5.8, 5.4}, {3, 5.4}},
    line('P', {3, 5.4}, {0, 5.4}),
    {'Q', {3.2, 0}, {6.4, 0}, {6.4, 3.6}},
    line('Q', {6.4, 3.6}, {6.4, 6.4}),
    {'Q', {6.4, 6.4}, {6.4, 10}, {3.2, 10}},
    {'Q', {3.2, 10}, {0, 10}, {0, 6.4}},
    line('Q', {0, 6.4}, {0, 3.6}),
    {'Q', {0, 3.6}, {0, 0}, {3.2, 0}},
    line('Q', {3.8, 7.2}, {6.6, 10}),
    line('R', {0, 10}, {0, 0}),
    line('R', {0, 0}, {3, 0}),
    {'R', {3, 0}, {5.8, 0}, {5.8, 2.6}},
    {'R', {5.8, 2.6}, {5.8, 5.2}, {3, 5.2}},
    line('R', {3, 5.2}, {0, 5.2}),
    line('R', {3, 5.2}, {6, 10}),
    {'S', {5.6, 2}, {5, 0}, {2.9, 0}},
    {'S', {2.9, 0}, {0.2, 0}, {0.2, 2.4}},
    {'S', {0.2, 2.4}, {0.2, 4.3}, {3, 4.8}},
    {'S', {3, 4.8}, {5.9, 5.4}, {5.9, 7.4}},
    {'S', {5.9, 7.4}, {5.9, 10}, {3, 10}},
    {'S', {3, 10}, {0.6, 10}, {0, 8}},
    line('T', {0, 0}, {6, 0}),
    line('T', {3, 0}, {3, 10}),
    line('U', {0, 0}, {0, 6.8}),
    {'U', {0, 6.8}, {0, 10}, {3, 10}},
    {'U', {3, 10}, {6, 10}, {6, 6.8}},
    line('U', {6, 6.8}, {6, 0}),
    line('V', {0, 0}, {3.1, 10}),
    line('V', {3.1, 10}, {6.2, 0}),
    line('W', {0, 0}, {2.1, 10}),
    line('W', {2.1, 10}, {4.2, 2}),
    line('W', {4.2, 2}, {6.3, 10}),
    line('W', {6.3, 10}, {8.4, 0}),
    line('X', {0, 0}, {6, 10}),
    line('X', {6, 0}, {0, 10}),
    line('Y', {0, 0}, {3, 5}),
    line('Y', {6, 0}, {3, 5}),
    line('Y', {3, 5}, {3, 10}),
    line('Z', {0, 0}, {6, 0}),
    line('Z', {6, 0}, {0, 10}),
    line('Z', {0, 10}, {6, 10}),
};

constexpr double kUnits = 10;
constexpr double kDigitWidth = 6;
constexpr double kBlankWidth = 3;

struct FaceSize {
  int height;
  double pen;  ///< its thickness in pixels
  int gap;     ///< between two letters
};
/// In the order of Face.
constexpr FaceSize kFaceSizes[] = {{11, 1.8, 2}, {18, 2.6, 2}, {30, 4.2, 3}};

constexpr const FaceSize& sizeOf(Face face) {
  return kFaceSizes[static_cast<std::size_t>(face)];
}

double squaredDistance(Point from, Point to) {
  return (from.x - to.x) * (from.x - to.x) + (from.y - to.y) * (from.y - to.y);
}

double distanceToSegment(Point point, Point from, Point to) {
  const double length = squaredDistance(from, to);
  if (length == 0) {
    return std::sqrt(squaredDistance(point, from));
  }
  const double along =
      ((point.x - from.x) * (to.x - from.x) + (point.y - from.y) * (to.y - from.y)) / length;
  const double part = std::clamp(along, 0.0, 1.0);
  return std::sqrt(
      squaredDistance(point, {from.x + part * (to.x - from.x), from.y + part * (to.y - from.y)}));
}

Point on(const Stroke& stroke, double part) {
  const double rest = 1 - part;
  const auto blend = [&](double from, double towards, double to) {
    return rest * rest * from + 2 * rest * part * towards + part * part * to;
  };
  return {blend(stroke.from.x, stroke.towards.x, stroke.to.x),
          blend(stroke.from.y, stroke.towards.y, stroke.to.y)};
}

double distanceToStroke(Point point, const Stroke& stroke) {
  constexpr int kPieces = 10;
  double least = distanceToSegment(point, stroke.from, on(stroke, 1.0 / kPieces));
  for (int piece = 1; piece < kPieces; ++piece) {
    const auto part = [&](int end) { return static_cast<double>(end) / kPieces; };
    least = std::min(
        least, distanceToSegment(point, on(stroke, part(piece)), on(stroke, part(piece + 1))));
  }
  return least;
}

double widthOf(char letter) {
  if (letter >= '0' && letter <= '9') {
    return kDigitWidth;
  }
  double width = -1;
  for (const Stroke& stroke : kStrokes) {
    if (stroke.letter == letter) {
      width = std::max({width, stroke.from.x, stroke.towards.x, stroke.to.x});
    }
  }
  return width < 0 ? kBlankWidth : width;
}

StrokeGlyph drawn(Face face, char letter) {
  const FaceSize& size = sizeOf(face);
  const double scale = (size.height - size.pen) / kUnits;
  StrokeGlyph glyph;
  glyph.width = static_cast<int>(std::ceil(widthOf(letter) * scale + size.pen));
  glyph.advance = glyph.width + size.gap;
  for (int y = 0; y < size.height; ++y) {
    for (int x = 0; x < glyph.width; ++x) {
      const Point centre{(x + 0.5 - size.pen / 2) / scale, (y + 0.5 - size.pen / 2) / scale};
      double distance = size.pen + 1;
      for (const Stroke& stroke : kStrokes) {
        if (stroke.letter == letter) {
          distance = std::min(distance, distanceToStroke(centre, stroke) * scale);
        }
      }
      const double covered = std::clamp(size.pen / 2 - distance + 0.5, 0.0, 1.0);
      glyph.coverage.push_back(
          static_cast<std::uint8_t>(std::lround(covered * StrokeGlyph::kFull)));
    }
  }
  return glyph;
}

/// The letters of one face from the blank to "Z".
struct Letters {
  static constexpr char kFirst = ' ';
  static constexpr char kLast = 'Z';
  explicit Letters(Face face) {
    for (char letter = kFirst; letter <= kLast; ++letter) {
      glyphs.push_back(drawn(face, letter));
    }
  }
  std::vector<StrokeGlyph> glyphs;
};

}  // namespace

int faceHeight(Face face) {
  return sizeOf(face).height;
}

const StrokeGlyph& strokeGlyph(Face face, char character) {
  static const std::array kFaces = {Letters(Face::Badge), Letters(Face::Unit),
                                    Letters(Face::Reading)};
  static_assert(std::size(kFaces) == std::size(kFaceSizes));
  const bool known = character >= Letters::kFirst && character <= Letters::kLast;
  const char letter = known ? character : Letters::kFirst;
  return kFaces[static_cast<std::size_t>(face)]
      .glyphs[static_cast<std::size_t>(letter - Letters::kFirst)];
}

}  // namespace zansim
