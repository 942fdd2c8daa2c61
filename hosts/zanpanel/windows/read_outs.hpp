#pragma once

#include <QtWidgets/QFrame>
#include <QtWidgets/QLabel>

#include "hosts/zanpanel/program/instrument.hpp"

class QHBoxLayout;

namespace zanpanel {

/// The readings of the channel as they are read from three metres: voltage, current, power, charge
/// and energy, the state of the load. What was not refreshed is grey and says how old it is; a lost
/// link, a trip and a value beyond the range stand across.
class ReadOuts : public QFrame {
 public:
  /// The instrument must outlive it.
  explicit ReadOuts(Instrument& instrument, QWidget* parent = nullptr);

  /// Shows how things stand.
  void refresh();
  /// Small: the digits shrink with the window.
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  struct Value {
    QLabel* digits = nullptr;
    QLabel* unit = nullptr;
    QLabel* remark = nullptr;
  };
  Value addValue(QHBoxLayout& row, const QString& unit, const QString& name);
  void show(const Value& value, const std::optional<Latest>& latest, const QColor& colour);
  void showCounters();
  void showLoad();
  void showAlarm();
  void fitFonts();

  Instrument& instrument_;
  Value volts_;
  Value amperes_;
  Value watts_;
  QLabel* charge_;
  QLabel* energy_;
  QLabel* load_;
  QLabel* channel_;
  QLabel* alarm_;
};

}  // namespace zanpanel
