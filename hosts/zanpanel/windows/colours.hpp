#pragma once

#include <QtGui/QColor>
#include <QtGui/QPalette>
#include <cstddef>

namespace zanpanel {

/// The colours that say something, for the palette of a widget, light or dark. A quantity has the
/// same one in its read-out and in its curve; all of them can be told apart by those who see red
/// and green alike.
struct Colours {
  explicit Colours(const QPalette& palette);

  bool dark;
  QColor volts;
  QColor amperes;
  QColor watts;
  /// The load is on.
  QColor on;
  QColor alarm;
  QColor onAlarm;  ///< texts on `on` and `alarm`
  QColor faint;    ///< readings that are old, lines of a grid
  /// Of the channels whose curves are shown together, counted from 0; after eight they come again.
  [[nodiscard]] QColor ofChannel(std::size_t index) const;
};

/// A palette of that kind for the whole program.
[[nodiscard]] QPalette lightPalette();
[[nodiscard]] QPalette darkPalette();

}  // namespace zanpanel
