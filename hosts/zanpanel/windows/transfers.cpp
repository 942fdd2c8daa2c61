#include "hosts/zanpanel/windows/transfers.hpp"

#include <QtCore/QFileInfo>
#include <QtCore/QSaveFile>
#include <QtGui/QAction>
#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>
#include <QtPrintSupport/QPrintDialog>
#include <QtPrintSupport/QPrinter>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QProgressBar>
#include <algorithm>
#include <array>
#include <utility>

#include "hosts/zanpanel/program/drive_files.hpp"
#include "hosts/zanpanel/report/print.hpp"

namespace zanpanel {

namespace {

/// The memory files: what they are called, where the component puts them, what fetches them.
struct MemoryFile {
  const char* caption;
  const char* place;
  const char* suggestion;
  void (*get)(lumodevice::ZANCtrl&);
};
constexpr std::array kMemoryFiles{
    MemoryFile{"Save &sequences as…", "C:\\temp\\ZANSeq.a", "sequences.a",
               [](lumodevice::ZANCtrl& load) { (void)load.GetSeqFile(); }},
    MemoryFile{"Save system s&ettings as…", "C:\\temp\\ZANProg.b", "system.b",
               [](lumodevice::ZANCtrl& load) { (void)load.GetSysFile(); }},
    MemoryFile{"Save &presets as…", "C:\\temp\\zanbank.dev", "presets.dev",
               [](lumodevice::ZANCtrl& load) { (void)load.GetPresetFile(""); }}};
constexpr const char* kScreen = "C:\\temp\\ZAN.bmp";

}  // namespace

Transfers::Transfers(Instrument& instrument, QWidget& window, Wait wait)
    : instrument_(instrument),
      window_(window),
      wait_(std::move(wait)),
      progress_(new QProgressBar(&window)) {
  progress_->setMaximumWidth(160);
  progress_->setAccessibleName(QObject::tr("Transfer"));
  progress_->hide();
}

void Transfers::fill(QMenu& menu) {
  QObject::connect(menu.addAction(QObject::tr("Save the s&creen as…")), &QAction::triggered,
                   &window_, [this] { saveScreen(); });
  QObject::connect(menu.addAction(QObject::tr("Cop&y the screen")), &QAction::triggered, &window_,
                   [this] { copyScreen(); });
  QObject::connect(menu.addAction(QObject::tr("P&rint the screen…")), &QAction::triggered, &window_,
                   [this] { printScreen(); });
  menu.addSeparator();
  for (std::size_t i = 0; i < kMemoryFiles.size(); ++i) {
    QObject::connect(menu.addAction(QObject::tr(kMemoryFiles.at(i).caption)), &QAction::triggered,
                     &window_, [this, i] { saveMemoryFile(i); });
  }
  QObject::connect(menu.addAction(QObject::tr("&Open system settings and send…")),
                   &QAction::triggered, &window_, [this] { sendSystemFile(); });
}

void Transfers::received(std::string_view bytes) {
  if (!underWay_) {
    return;
  }
  received_ += static_cast<qsizetype>(bytes.size());
  // "#6122880" says how much is to come.
  constexpr qsizetype kHead = 64;
  if (expected_ == 0 && head_.size() < kHead) {
    head_.append(bytes.data(), static_cast<qsizetype>(std::min<std::size_t>(bytes.size(), kHead)));
    const qsizetype at = head_.indexOf('#');
    const int digits = at < 0 ? 0 : head_.mid(at + 1, 1).toInt();
    if (digits > 0 && head_.size() >= at + 2 + digits) {
      expected_ = head_.mid(at + 2, digits).toLongLong() + at + 2 + digits;
    }
  }
  progress_->setRange(0, expected_ > 0 ? static_cast<int>(expected_) : 0);
  progress_->setValue(static_cast<int>(std::min(received_, expected_)));
}

void Transfers::finished(const QString& text, bool good) {
  underWay_ = false;
  progress_->hide();
  if (!good) {
    QMessageBox::warning(&window_, QObject::tr("Instrument"), text);
  }
}

void Transfers::begin() {
  underWay_ = true;
  received_ = expected_ = 0;
  head_.clear();
  progress_->setRange(0, 0);
  progress_->show();
}

QString Transfers::why() {
  const lumodevice::Failure failure = instrument_.load().failure();
  return failure.kind == lumodevice::FailureKind::None
             ? QObject::tr(
                   "the VISA library link carries no screens and no files; choose VISA COM "
                   "or the serial port")
             : QString::fromStdString(failure.sentence);
}

QImage Transfers::takeScreen() {
  bool taken = false;
  wait_([&] {
    begin();
    taken = instrument_.load().GetBMPFile();
  });
  QImage screen;
  const auto bytes = taken ? readFile(instrument_.drive(), kScreen) : std::nullopt;
  const bool good = bytes && screen.loadFromData(*bytes);
  finished(QObject::tr("The screen did not come: %1.").arg(why()), good);
  return good ? screen : QImage();
}

void Transfers::saveScreen() {
  const QImage screen = takeScreen();
  if (screen.isNull()) {
    return;
  }
  const QString file =
      QFileDialog::getSaveFileName(&window_, QObject::tr("Save the screen"), "screen.png",
                                   QObject::tr("Pictures (*.png *.bmp)"));
  if (!file.isEmpty() && !screen.save(file)) {
    finished(QObject::tr("%1 cannot be written.").arg(file), false);
  }
}

void Transfers::copyScreen() {
  const QImage screen = takeScreen();
  if (!screen.isNull()) {
    QGuiApplication::clipboard()->setImage(screen);
  }
}

void Transfers::printScreen() {
  const QImage screen = takeScreen();
  if (screen.isNull()) {
    return;
  }
  QPrinter printer(QPrinter::HighResolution);
  QPrintDialog dialog(&printer, &window_);
  if (dialog.exec() == QDialog::Accepted && !printPicture(screen, printer)) {
    finished(QObject::tr("The printer takes nothing."), false);
  }
}

void Transfers::saveMemoryFile(std::size_t which) {
  const MemoryFile& memory = kMemoryFiles.at(which);
  wait_([&] {
    begin();
    memory.get(instrument_.load());
  });
  const auto content = readFile(instrument_.drive(), memory.place);
  const bool came = received_ > 0 && content && !content->isEmpty();
  finished(QObject::tr("The file did not come: %1.").arg(why()), came);
  if (!came) {
    return;
  }
  const QString file =
      QFileDialog::getSaveFileName(&window_, QObject::tr("Save"), memory.suggestion);
  QSaveFile output(file);
  if (!file.isEmpty() && (!output.open(QIODevice::WriteOnly) ||
                          output.write(*content) != content->size() || !output.commit())) {
    finished(QObject::tr("%1 cannot be written.").arg(file), false);
  }
}

void Transfers::sendSystemFile() {
  constexpr qsizetype kSystemFile = 5580;
  const QString name = QFileDialog::getOpenFileName(&window_, QObject::tr("Open system settings"));
  if (name.isEmpty()) {
    return;
  }
  QFile file(name);
  if (!QFileInfo(name).isFile() || !file.open(QIODevice::ReadOnly)) {
    finished(QObject::tr("%1 cannot be read.").arg(name), false);
    return;
  }
  const QByteArray content = file.read(kSystemFile + 1);
  if (content.size() != kSystemFile) {
    finished(QObject::tr("%1 is no file of system settings: it has not %2 bytes.")
                 .arg(name)
                 .arg(kSystemFile),
             false);
    return;
  }
  bool sent = false;
  wait_([&] {
    sent = writeFile(instrument_.drive(), "ZANProgUpload.b", content) &&
           instrument_.load().SendSysFile();
  });
  finished(QObject::tr("The file was not sent: %1.").arg(why()), sent);
}

}  // namespace zanpanel
