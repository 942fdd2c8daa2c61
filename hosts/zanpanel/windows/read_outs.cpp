#include "hosts/zanpanel/windows/read_outs.hpp"

#include <QtCore/QEvent>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "hosts/zanpanel/windows/colours.hpp"

namespace zanpanel {

namespace {

constexpr int kTotalDecimals = 4;
/// What instruments answer for a value that they could not measure.
constexpr double kOverRange = 1e15;
constexpr int kLargestDigits = 40;  // points
constexpr int kSmallestDigits = 13;
/// Characters of the largest size that stand side by side in the whole row.
constexpr double kCharacters = 38;
/// Margins and what lies between them, in pixels.
constexpr int kBetween = 190;

/// An answer on one short line, whatever it holds.
QString shortText(const std::string& text) {
  constexpr int kLongest = 14;
  return QString::fromLatin1(text.c_str()).simplified().left(kLongest);
}

void setColour(QLabel& label, const QColor& colour) {
  label.setForegroundRole(QPalette::WindowText);
  QPalette palette = label.palette();
  if (palette.color(QPalette::WindowText) != colour) {
    palette.setColor(QPalette::WindowText, colour);
    label.setPalette(palette);
  }
}

/// A label with a ground of its own.
void setGround(QLabel& label, const QColor& ground, const QColor& text) {
  const QString style = QStringLiteral(
                            "QLabel { background: %1; color: %2; border-radius: 6px; "
                            "padding: 4px 12px; font-weight: bold; }")
                            .arg(ground.name(), text.name());
  if (label.styleSheet() != style) {
    label.setStyleSheet(style);
  }
}

QString secondsText(Moment span) {
  return QString::fromStdString(clockText(span));
}

}  // namespace

ReadOuts::ReadOuts(Instrument& instrument, QWidget* parent)
    : QFrame(parent),
      instrument_(instrument),
      charge_(new QLabel(this)),
      energy_(new QLabel(this)),
      load_(new QLabel(this)),
      channel_(new QLabel(this)),
      alarm_(new QLabel(this)) {
  setObjectName("readOuts");
  auto* const all = new QVBoxLayout(this);
  all->setContentsMargins(16, 8, 16, 8);
  all->setSpacing(4);
  all->setSizeConstraint(QLayout::SetNoConstraint);
  auto* const row = new QHBoxLayout;
  row->setSpacing(10);
  volts_ = addValue(*row, "V", tr("Voltage"));
  amperes_ = addValue(*row, "A", tr("Current"));
  watts_ = addValue(*row, "W", tr("Power"));
  row->addStretch(1);

  auto* const totals = new QVBoxLayout;
  totals->setSpacing(2);
  for (QLabel* const label : {charge_, energy_}) {
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    totals->addWidget(label);
  }
  charge_->setAccessibleName(tr("Charge"));
  charge_->setToolTip(tr("Charge since the counters began, while the load was on"));
  energy_->setAccessibleName(tr("Energy"));
  energy_->setToolTip(tr("Energy since the counters began, while the load was on"));
  row->addLayout(totals);
  row->addSpacing(12);

  auto* const state = new QVBoxLayout;
  state->setSpacing(2);
  channel_->setAlignment(Qt::AlignCenter);
  channel_->setAccessibleName(tr("Channel"));
  load_->setAlignment(Qt::AlignCenter);
  load_->setAccessibleName(tr("Load"));
  load_->setObjectName("loadState");
  state->addWidget(channel_);
  state->addWidget(load_);
  row->addLayout(state);
  all->addLayout(row);

  alarm_->setObjectName("alarm");
  alarm_->setAlignment(Qt::AlignCenter);
  // Its place is kept, so that nothing moves under the mouse when it comes up.
  QSizePolicy policy = alarm_->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  policy.setHorizontalPolicy(QSizePolicy::Ignored);
  alarm_->setSizePolicy(policy);
  alarm_->hide();
  all->addWidget(alarm_);
  fitFonts();
  setAutoFillBackground(true);
  setBackgroundRole(QPalette::Base);
  refresh();
}

ReadOuts::Value ReadOuts::addValue(QHBoxLayout& row, const QString& unit, const QString& name) {
  auto* const column = new QVBoxLayout;
  column->setSpacing(0);
  auto* const line = new QHBoxLayout;
  line->setSpacing(6);
  Value value{
      .digits = new QLabel("–", this), .unit = new QLabel(unit, this), .remark = new QLabel(this)};
  value.digits->setAlignment(Qt::AlignRight | Qt::AlignBottom);
  value.digits->setAccessibleName(name);
  value.digits->setObjectName("digits" + unit);
  value.digits->setTextInteractionFlags(Qt::TextSelectableByMouse);
  value.unit->setAlignment(Qt::AlignBottom);
  line->addWidget(value.digits);
  line->addWidget(value.unit);
  column->addLayout(line);
  value.remark->setAlignment(Qt::AlignRight);
  value.remark->setObjectName("remark" + unit);
  column->addWidget(value.remark);
  row.addLayout(column);
  row.addSpacing(14);
  return value;
}

/// As large as the window allows.
void ReadOuts::fitFonts() {
  QFont large = font();
  large.setPointSize(kLargestDigits);
  large.setBold(true);
  const double needed = kCharacters * QFontMetricsF(large).horizontalAdvance('8');
  const int points = std::clamp(static_cast<int>(kLargestDigits * (width() - kBetween) / needed),
                                kSmallestDigits, kLargestDigits);
  large.setPointSize(points);
  QFont medium = font();
  medium.setPointSize(std::max(points / 2, kSmallestDigits / 2 + 2));
  // The unit stands on the line of the digits.
  const int lift = QFontMetrics(large).descent() - QFontMetrics(medium).descent();
  for (const Value* const value : {&volts_, &amperes_, &watts_}) {
    value->unit->setContentsMargins(0, 0, 0, lift);
    value->digits->setFont(large);
    value->digits->setMinimumWidth(QFontMetrics(large).horizontalAdvance("888.8888"));
    value->unit->setFont(medium);
  }
  for (QLabel* const label : {charge_, energy_, load_, alarm_}) {
    label->setFont(medium);
  }
  load_->setMinimumWidth(QFontMetrics(medium).horizontalAdvance("LOAD OFF") * 5 / 4 + 24);
  charge_->setMinimumWidth(QFontMetrics(medium).horizontalAdvance("888.8888 Wh"));
}

QSize ReadOuts::minimumSizeHint() const {
  constexpr int kNarrowest = 420;
  return {kNarrowest, layout()->minimumSize().height()};
}

void ReadOuts::resizeEvent(QResizeEvent* event) {
  QFrame::resizeEvent(event);
  fitFonts();
}

void ReadOuts::changeEvent(QEvent* event) {
  QFrame::changeEvent(event);
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) {
    refresh();
  }
}

void ReadOuts::refresh() {
  const Colours colours(palette());
  const ChannelRecord* const channel = instrument_.monitor().current();
  static const std::optional<Latest> kNone;
  show(volts_, channel != nullptr ? channel->lastVolts : kNone, colours.volts);
  show(amperes_, channel != nullptr ? channel->lastAmperes : kNone, colours.amperes);
  show(watts_, channel != nullptr ? channel->lastWatts : kNone, colours.watts);
  showCounters();
  showLoad();
  showAlarm();
}

void ReadOuts::show(const Value& value, const std::optional<Latest>& latest, const QColor& colour) {
  const Colours colours(palette());
  Monitor& monitor = instrument_.monitor();
  if (!latest) {
    value.digits->setText("–");
    value.remark->setText("");
    setColour(*value.digits, colours.faint);
    setColour(*value.unit, colours.faint);
    return;
  }
  const Moment age = monitor.now() - latest->at;
  const bool old = monitor.linkLost() || age > monitor.longestAge();
  const bool over = std::abs(latest->value) > kOverRange;
  value.digits->setText(over ? tr("OVER") : shortText(latest->text));
  setColour(*value.digits, old ? colours.faint : over ? colours.alarm : colour);
  setColour(*value.unit, old ? colours.faint : colour);
  value.remark->setText(old ? tr("%1 old").arg(secondsText(age)) : "");
  setColour(*value.remark, colours.alarm);
}

void ReadOuts::showCounters() {
  const ChannelRecord* const channel = instrument_.monitor().current();
  const Colours colours(palette());
  const auto text = [&](double total, const char* unit) {
    return QString::fromStdString(fixedText(total, kTotalDecimals)) + ' ' + unit;
  };
  charge_->setText(text(channel != nullptr ? channel->counters.ampereHours() : 0, "Ah"));
  energy_->setText(text(channel != nullptr ? channel->counters.wattHours() : 0, "Wh"));
  const bool counting = channel != nullptr && channel->counters.counting();
  for (QLabel* const label : {charge_, energy_}) {
    setColour(*label, counting ? palette().color(QPalette::WindowText) : colours.faint);
  }
}

void ReadOuts::showLoad() {
  const Colours colours(palette());
  Monitor& monitor = instrument_.monitor();
  const ChannelRecord* const channel = monitor.current();
  channel_->setText(channel != nullptr ? QString::fromStdString(monitor.channel())
                                       : tr("no channel"));
  const bool known = channel != nullptr && channel->load.on() && !monitor.linkLost();
  if (!known) {
    load_->setText(tr("LOAD ?"));
    setGround(*load_, palette().color(QPalette::Button), colours.faint);
  } else if (*channel->load.on()) {
    load_->setText(tr("LOAD ON"));
    setGround(*load_, colours.on, colours.onAlarm);
  } else if (channel->load.tripped()) {
    load_->setText(tr("TRIPPED"));
    setGround(*load_, colours.alarm, colours.onAlarm);
  } else {
    load_->setText(tr("LOAD OFF"));
    setGround(*load_, palette().color(QPalette::Button), palette().color(QPalette::ButtonText));
  }
}

void ReadOuts::showAlarm() {
  const Colours colours(palette());
  Monitor& monitor = instrument_.monitor();
  const ChannelRecord* const channel = monitor.current();
  const Discharge& discharge = instrument_.discharge();
  QString text;
  if (monitor.linkLost()) {
    text = instrument_.load().isConnected()
               ? tr("LINK LOST: the instrument does not answer. The load stays as it was.")
           : instrument_.retrying()
               ? tr("LINK LOST, trying again. The load stays as it was.")
               : tr("LINK CLOSED: these are the last readings. The load stays as it was.");
  } else if (discharge.state() == Discharge::State::Unsure) {
    text = QString::fromStdString(discharge.outcome());
  } else if (channel != nullptr && channel->load.tripped()) {
    text = tr("The load went off by itself: a protection, or its own key.");
  }
  setGround(*alarm_, colours.alarm, colours.onAlarm);
  alarm_->setText(text);
  alarm_->setVisible(!text.isEmpty());
}

}  // namespace zanpanel
