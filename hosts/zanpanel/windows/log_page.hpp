#pragma once

#include <QtWidgets/QWidget>
#include <deque>
#include <functional>
#include <string_view>

class QCheckBox;
class QLineEdit;
class QPlainTextEdit;

namespace zanpanel {

/// Lines that come one after the other, each with its time: the wire, the commands, the error
/// queue. They can be filtered, held still, saved and cleared; the youngest ten thousand are kept.
class LogPage : public QWidget {
 public:
  /// `name` is what the file is called that it is saved in.
  explicit LogPage(const QString& name, QWidget* parent = nullptr);

  void add(const QString& line);
  /// What a double click on a line does with it.
  void onChosen(std::function<void(const QString& line)> chosen);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  [[nodiscard]] bool passes(const QString& line) const;
  void showAll();
  void save();

  QString name_;
  std::deque<QString> lines_;
  std::function<void(const QString&)> chosen_;
  QLineEdit* filter_;
  QCheckBox* hold_;
  QPlainTextEdit* text_;
};

/// Bytes as they are written between quotes: what is no printable character as \n, \r, \t or \xHH;
/// of many the first ones and how many there are.
[[nodiscard]] QString shownBytes(std::string_view bytes);

}  // namespace zanpanel
