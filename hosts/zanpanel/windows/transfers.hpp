#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtGui/QImage>
#include <functional>
#include <string_view>

#include "hosts/zanpanel/program/instrument.hpp"

class QMenu;
class QProgressBar;
class QWidget;

namespace zanpanel {

/// Something that waits for the instrument.
using Act = std::function<void()>;

/// What an operator fetches from an instrument and sends to it: its screen and its memory files,
/// with the dialogs for their names and a bar that tells how much has come.
class Transfers {
 public:
  /// Runs such an act; nothing else is asked of the instrument meanwhile.
  using Wait = std::function<void(const Act& act)>;

  /// The bar belongs to `window`, over which the dialogs stand.
  Transfers(Instrument& instrument, QWidget& window, Wait wait);

  /// Adds an entry for each to `menu`. They must not be chosen when this has ended.
  void fill(QMenu& menu);
  /// Hidden but for a transfer.
  [[nodiscard]] QProgressBar& progress() { return *progress_; }
  /// Bytes have come over the wire.
  void received(std::string_view bytes);

 private:
  void begin();
  /// Why the last one failed.
  [[nodiscard]] QString why();
  /// Says `text` where it has not gone well.
  void finished(const QString& text, bool good);
  /// Null when it did not come, which was told then.
  [[nodiscard]] QImage takeScreen();
  void saveScreen();
  void copyScreen();
  void printScreen();
  void saveMemoryFile(std::size_t which);
  void sendSystemFile();

  Instrument& instrument_;
  QWidget& window_;
  Wait wait_;
  QProgressBar* progress_;
  bool underWay_ = false;
  qsizetype received_ = 0;
  qsizetype expected_ = 0;
  QByteArray head_;
};

}  // namespace zanpanel
