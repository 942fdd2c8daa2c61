#include "hosts/zanpanel/windows/program.hpp"

#include <QtCore/QTimer>
#include <QtGui/QIcon>
#include <QtWidgets/QApplication>
#include <cstdio>
#include <optional>

#include "hosts/zanpanel/program/memory.hpp"
#include "hosts/zanpanel/program/options.hpp"
#include "hosts/zanpanel/windows/instrument_page.hpp"
#include "hosts/zanpanel/windows/panel_style.hpp"
#include "hosts/zanpanel/windows/scenes.hpp"
#include "hosts/zanpanel/windows/shell.hpp"

namespace zanpanel {

namespace {

constexpr int kWrongCommandLine = 2;

/// Help and mistakes need no display.
std::optional<Options> optionsOf(int count, char** words, QString& told) {
  const QCoreApplication withoutDisplay(count, words);
  return parseOptions(QCoreApplication::arguments(), told);
}

Palette paletteOf(const Options& options, const Memory& memory) {
  if (options.palette != Palette::System) {
    return options.palette;
  }
  const QString remembered = memory.palette();
  return remembered == "light"  ? Palette::Light
         : remembered == "dark" ? Palette::Dark
                                : Palette::System;
}

}  // namespace

int runProgram(int count, char** words, const std::function<void()>& onOpen) {
  std::optional<Options> options;
  QString told;
  try {
    options = optionsOf(count, words, told);
  } catch (const WrongCommandLine& wrong) {
    (void)std::fprintf(stderr, "zanpanel: %s (see zanpanel --help)\n", wrong.what());
    return kWrongCommandLine;
  }
  if (!options) {
    (void)std::fputs(told.toLocal8Bit().constData(), stdout);
    return 0;
  }
  QApplication program(count, words);
  QApplication::setApplicationName("zanpanel");
  QApplication::setDesktopFileName("zanpanel");
  QApplication::setStyle(new PanelStyle);
  QApplication::setQuitOnLastWindowClosed(false);
  QApplication::setWindowIcon(QIcon(":/zanpanel.png"));

  Memory memory(options->forgetful);
  applyPalette(paletteOf(*options, memory));
  Desk desk(*options, memory);
  InstrumentPage* const page = desk.openFirst();
  if (page == nullptr) {
    return 1;
  }
  if (onOpen) {
    onOpen();
  }
  if (options->screenshot) {
    QTimer::singleShot(
        0, page, [&] { takePicture(desk.first(), *page, options->scene, *options->screenshot); });
  } else if (options->connect) {
    QTimer::singleShot(0, page, [page] { page->connectNow(); });
  }
  return QApplication::exec();
}

}  // namespace zanpanel
