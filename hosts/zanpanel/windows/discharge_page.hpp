#pragma once

#include <QtWidgets/QWidget>

#include "hosts/zanpanel/program/instrument.hpp"

class QCheckBox;
class QDoubleSpinBox;
class QGridLayout;
class QLabel;
class QPushButton;
class QProgressBar;

namespace zanpanel {

/// A discharge from start to end: its conditions, how far it has come, its report.
class DischargePage : public QWidget {
 public:
  /// The instrument must outlive it.
  explicit DischargePage(Instrument& instrument, QWidget* parent = nullptr);

  void refresh();
  /// Nothing may be switched on while the instrument is only watched.
  void setObserving(bool observing);

 private:
  struct Condition {
    QCheckBox* wanted;
    QDoubleSpinBox* value;
  };
  Condition addCondition(QGridLayout& grid, const QString& caption, const QString& unit,
                         int decimals, double most, double start, const QString& tip);
  [[nodiscard]] StopConditions conditions() const;
  void start();
  void stop();
  void report();

  Instrument& instrument_;
  bool observing_ = false;
  Condition volts_{};
  Condition minutes_{};
  Condition charge_{};
  Condition energy_{};
  QPushButton* start_;
  QPushButton* stop_;
  QPushButton* confirm_;
  QPushButton* report_;
  QPushButton* reset_;
  QLabel* state_;
  QLabel* numbers_;
  QProgressBar* progress_;
};

}  // namespace zanpanel
