#include "hosts/zanpanel/windows/discharge_page.hpp"

#include <QtCore/QStandardPaths>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QDoubleSpinBox>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QProgressBar>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "hosts/zanpanel/report/report.hpp"

namespace zanpanel {

namespace {

constexpr int kPerMille = 1000;

/// How much of a condition is fulfilled.
double share(double value, const std::optional<double>& whole) {
  return whole && *whole > 0 ? value / *whole : 0;
}

}  // namespace

DischargePage::DischargePage(Instrument& instrument, QWidget* parent)
    : QWidget(parent),
      instrument_(instrument),
      start_(new QPushButton(tr("Start discharge"), this)),
      stop_(new QPushButton(tr("Stop and switch off"), this)),
      confirm_(new QPushButton(tr("Switch off again"), this)),
      report_(new QPushButton(tr("Report…"), this)),
      reset_(new QPushButton(tr("Reset counters"), this)),
      state_(new QLabel(this)),
      numbers_(new QLabel(this)),
      progress_(new QProgressBar(this)) {
  setObjectName("discharge");
  auto* const all = new QVBoxLayout(this);
  auto* const box = new QGroupBox(tr("Stop when"), this);
  auto* const grid = new QGridLayout(box);
  grid->setColumnStretch(2, 1);
  volts_ = addCondition(*grid, tr("the voltage is below"), " V", 3, 1000, 10.5,
                        tr("The first reading below it ends the discharge"));
  minutes_ =
      addCondition(*grid, tr("time is over"), " min", 1, 100000, 60, tr("Counted from the start"));
  charge_ = addCondition(*grid, tr("the charge is"), " Ah", 4, 100000, 1,
                         tr("Counted from the start, while the load is on"));
  energy_ = addCondition(*grid, tr("the energy is"), " Wh", 4, 1000000, 10,
                         tr("Counted from the start, while the load is on"));
  volts_.wanted->setChecked(true);
  all->addWidget(box);

  auto* const buttons = new QHBoxLayout;
  start_->setToolTip(tr("Switches the load on with the settings of the panel, and watches it"));
  stop_->setToolTip(tr("Switches the load off and asks the instrument whether it is"));
  confirm_->setToolTip(tr("Tells the load again to switch off, and asks whether it has"));
  report_->setToolTip(tr("Saves identity, settings, curves and totals on one page (PDF or PNG)"));
  reset_->setToolTip(tr("Charge and energy of this channel begin at zero again"));
  start_->setObjectName("dischargeStart");
  stop_->setObjectName("dischargeStop");
  report_->setObjectName("dischargeReport");
  for (QPushButton* const button : {start_, stop_, confirm_, report_, reset_}) {
    buttons->addWidget(button);
  }
  buttons->addStretch(1);
  all->addLayout(buttons);

  progress_->setRange(0, kPerMille);
  progress_->setTextVisible(false);
  progress_->setMaximumHeight(10);
  progress_->setAccessibleName(tr("How far the nearest condition is fulfilled"));
  all->addWidget(progress_);
  QFont large = font();
  large.setPointSizeF(large.pointSizeF() * 1.6);
  large.setBold(true);
  numbers_->setFont(large);
  numbers_->setWordWrap(true);
  numbers_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  all->addWidget(numbers_);
  state_->setWordWrap(true);
  state_->setObjectName("dischargeState");
  state_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  all->addWidget(state_);
  all->addStretch(1);

  QObject::connect(start_, &QPushButton::clicked, this, [this] { start(); });
  QObject::connect(stop_, &QPushButton::clicked, this, [this] { stop(); });
  QObject::connect(confirm_, &QPushButton::clicked, this, [this] {
    instrument_.discharge().confirmAgain();
    refresh();
  });
  QObject::connect(report_, &QPushButton::clicked, this, [this] { report(); });
  QObject::connect(reset_, &QPushButton::clicked, this, [this] {
    if (ChannelRecord* const channel = instrument_.monitor().current()) {
      channel->counters.reset();
    }
    refresh();
  });
  refresh();
}

DischargePage::Condition DischargePage::addCondition(QGridLayout& grid, const QString& caption,
                                                     const QString& unit, int decimals, double most,
                                                     double start, const QString& tip) {
  const int row = grid.rowCount();
  const Condition condition{.wanted = new QCheckBox(caption, this),
                            .value = new QDoubleSpinBox(this)};
  condition.value->setDecimals(decimals);
  condition.value->setRange(std::pow(10, -decimals), most);
  condition.value->setSuffix(unit);
  condition.value->setValue(start);
  condition.value->setEnabled(false);
  condition.value->setToolTip(tip);
  condition.wanted->setToolTip(tip);
  condition.value->setAccessibleName(caption);
  grid.addWidget(condition.wanted, row, 0);
  grid.addWidget(condition.value, row, 1);
  QObject::connect(condition.wanted, &QCheckBox::toggled, condition.value, &QWidget::setEnabled);
  QObject::connect(condition.wanted, &QCheckBox::toggled, this, [this] { refresh(); });
  return condition;
}

StopConditions DischargePage::conditions() const {
  StopConditions conditions;
  const auto value = [](const Condition& condition) -> std::optional<double> {
    return condition.wanted->isChecked() ? std::optional(condition.value->value()) : std::nullopt;
  };
  conditions.voltsBelow = value(volts_);
  conditions.ampereHours = value(charge_);
  conditions.wattHours = value(energy_);
  if (const auto minutes = value(minutes_)) {
    conditions.after = std::chrono::milliseconds(std::llround(*minutes * 60000));
  }
  return conditions;
}

void DischargePage::setObserving(bool observing) {
  observing_ = observing;
  refresh();
}

void DischargePage::start() {
  if (const auto hindrance = instrument_.discharge().hindrance(conditions())) {
    QMessageBox::information(this, tr("Discharge"),
                             tr("The discharge cannot start: %1.").arg(hindrance->c_str()));
    return;
  }
  instrument_.discharge().start(conditions());
  refresh();
}

void DischargePage::stop() {
  instrument_.discharge().stop("stopped by hand");
  refresh();
}

void DischargePage::report() {
  const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
  const QString file =
      QFileDialog::getSaveFileName(this, tr("Save the report"), folder + "/discharge.pdf",
                                   tr("One page (*.pdf);;A picture (*.png)"));
  if (!file.isEmpty() && !writeReport(instrument_, file)) {
    QMessageBox::warning(this, tr("Report"), tr("%1 cannot be written.").arg(file));
  }
}

void DischargePage::refresh() {
  const Discharge& discharge = instrument_.discharge();
  const bool underWay = discharge.underWay();
  const auto state = discharge.state();
  for (const Condition& condition : {volts_, minutes_, charge_, energy_}) {
    condition.wanted->setEnabled(!underWay);
    condition.value->setEnabled(!underWay && condition.wanted->isChecked());
  }
  start_->setEnabled(!underWay && !observing_ && instrument_.load().isConnected());
  stop_->setEnabled(underWay);
  confirm_->setVisible(state == Discharge::State::Unsure);
  report_->setEnabled(state == Discharge::State::Off || state == Discharge::State::Unsure);
  reset_->setEnabled(!underWay);
  switch (state) {
    case Discharge::State::Idle:
      state_->setText(observing_ ? tr("While the instrument is only watched, nothing is switched.")
                                 : tr("Set mode and current on the panel, tick what is to end the "
                                      "discharge, and start it. The load is switched off at the "
                                      "first condition that is met; the under-voltage protection "
                                      "of the instrument (UVP) guards the source also when this "
                                      "program cannot."));
      break;
    case Discharge::State::Running:
      state_->setText(tr("Running on %1.").arg(discharge.channel().c_str()));
      break;
    case Discharge::State::Unwatched:
      state_->setText(tr("NOBODY WATCHES: no readings of %1 come. The load may be on, and this "
                         "program cannot switch it off.")
                          .arg(discharge.channel().c_str()));
      break;
    case Discharge::State::Off:
    case Discharge::State::Unsure:
      state_->setText(QString::fromStdString(discharge.outcome()));
      break;
  }
  const Progress progress = discharge.progress();
  numbers_->setVisible(state != Discharge::State::Idle);
  numbers_->setText(QString::fromStdString(fixedText(progress.ampereHours, 4) + " Ah    " +
                                           fixedText(progress.wattHours, 4) + " Wh    " +
                                           clockText(progress.elapsed)));
  const StopConditions& wanted = discharge.conditions();
  const double time =
      wanted.after ? static_cast<double>(progress.elapsed.count()) /
                         static_cast<double>(std::max<std::int64_t>(wanted.after->count(), 1))
                   : 0;
  const double done = std::max({time, share(progress.ampereHours, wanted.ampereHours),
                                share(progress.wattHours, wanted.wattHours)});
  progress_->setVisible(underWay && (wanted.after || wanted.ampereHours || wanted.wattHours));
  progress_->setValue(static_cast<int>(std::clamp(done, 0.0, 1.0) * kPerMille));
}

}  // namespace zanpanel
