#include "hosts/zanpanel/windows/log_page.hpp"

#include <QtCore/QEvent>
#include <QtCore/QSaveFile>
#include <QtGui/QFontDatabase>
#include <QtGui/QTextBlock>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>
#include <utility>

namespace zanpanel {

namespace {

constexpr std::size_t kMostLines = 10000;
constexpr std::size_t kMostBytes = 200;

}  // namespace

LogPage::LogPage(const QString& name, QWidget* parent)
    : QWidget(parent),
      name_(name),
      filter_(new QLineEdit(this)),
      hold_(new QCheckBox(tr("Hold"), this)),
      text_(new QPlainTextEdit(this)) {
  setObjectName(name);
  filter_->setPlaceholderText(tr("Show lines with…"));
  filter_->setClearButtonEnabled(true);
  filter_->setAccessibleName(tr("Filter"));
  hold_->setToolTip(tr("Shows nothing new until it is let go; lines go on being kept"));
  auto* const saveButton = new QPushButton(tr("Save…"), this);
  auto* const clearButton = new QPushButton(tr("Clear"), this);
  text_->setReadOnly(true);
  text_->setLineWrapMode(QPlainTextEdit::NoWrap);
  text_->setMaximumBlockCount(static_cast<int>(kMostLines));
  text_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  text_->setAccessibleName(name);
  text_->viewport()->installEventFilter(this);

  auto* const all = new QVBoxLayout(this);
  auto* const bar = new QHBoxLayout;
  bar->addWidget(filter_, 1);
  bar->addWidget(hold_);
  bar->addWidget(saveButton);
  bar->addWidget(clearButton);
  all->addLayout(bar);
  all->addWidget(text_, 1);
  QObject::connect(filter_, &QLineEdit::textChanged, this, [this] { showAll(); });
  QObject::connect(hold_, &QCheckBox::toggled, this, [this](bool held) {
    if (!held) {
      showAll();
    }
  });
  QObject::connect(saveButton, &QPushButton::clicked, this, [this] { save(); });
  QObject::connect(clearButton, &QPushButton::clicked, this, [this] {
    lines_.clear();
    text_->clear();
  });
}

void LogPage::onChosen(std::function<void(const QString& line)> chosen) {
  chosen_ = std::move(chosen);
}

bool LogPage::passes(const QString& line) const {
  return filter_->text().isEmpty() || line.contains(filter_->text(), Qt::CaseInsensitive);
}

void LogPage::add(const QString& line) {
  lines_.push_back(line);
  if (lines_.size() > kMostLines) {
    lines_.pop_front();
  }
  if (!hold_->isChecked() && passes(line)) {
    text_->appendPlainText(line);
  }
}

void LogPage::showAll() {
  QString text;
  for (const QString& line : lines_) {
    if (passes(line)) {
      text += text.isEmpty() ? line : '\n' + line;
    }
  }
  text_->setPlainText(text);
  text_->moveCursor(QTextCursor::End);
}

void LogPage::save() {
  const QString file =
      QFileDialog::getSaveFileName(this, tr("Save"), name_ + ".txt", tr("Text (*.txt)"));
  if (file.isEmpty()) {
    return;
  }
  QSaveFile output(file);
  QByteArray all;
  for (const QString& line : lines_) {
    all += line.toUtf8() + '\n';
  }
  if (!output.open(QIODevice::WriteOnly) || output.write(all) != all.size() || !output.commit()) {
    QMessageBox::warning(this, tr("Save"), tr("%1 cannot be written.").arg(file));
  }
}

bool LogPage::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::MouseButtonDblClick && chosen_) {
    chosen_(text_->textCursor().block().text());
  }
  return QWidget::eventFilter(watched, event);
}

QString shownBytes(std::string_view bytes) {
  QString text;
  const std::string_view shown = bytes.substr(0, kMostBytes);
  for (const char byte : shown) {
    const auto code = static_cast<unsigned char>(byte);
    switch (byte) {
      case '\n':
        text += "\\n";
        break;
      case '\r':
        text += "\\r";
        break;
      case '\t':
        text += "\\t";
        break;
      case '"':
      case '\\':
        text += '\\';
        text += QLatin1Char(byte);
        break;
      default:
        if (code < 0x20 || code > 0x7e) {
          text += QStringLiteral("\\x%1").arg(code, 2, 16, QLatin1Char('0'));
        } else {
          text += QLatin1Char(byte);
        }
    }
  }
  text = '"' + text + '"';
  return shown.size() == bytes.size() ? text
                                      : text + QStringLiteral("… %1 bytes").arg(bytes.size());
}

}  // namespace zanpanel
