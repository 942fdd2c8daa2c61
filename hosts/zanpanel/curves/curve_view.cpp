#include "hosts/zanpanel/curves/curve_view.hpp"

#include <QtCore/QDateTime>
#include <QtCore/QEvent>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <qcustomplot.h>

#include "hosts/zanpanel/discharge/stop_conditions.hpp"
#include "hosts/zanpanel/windows/colours.hpp"

namespace zanpanel {

namespace {

constexpr std::size_t kVolts = 0;
constexpr std::size_t kAmperes = 1;
constexpr std::size_t kWatts = 2;
constexpr double kMillisecond = 1e-3;
constexpr Moment kOftenest{950};
constexpr double kRoom = 0.08;  // above and below a curve
constexpr int kValueDecimals = 4;

struct Span {
  const char* name;
  std::chrono::seconds length;
};
constexpr std::array kSpans{
    Span{"1 min", std::chrono::minutes(1)},   Span{"5 min", std::chrono::minutes(5)},
    Span{"30 min", std::chrono::minutes(30)}, Span{"2 h", std::chrono::hours(2)},
    Span{"8 h", std::chrono::hours(8)},       Span{"24 h", std::chrono::hours(24)}};
constexpr int kFirstSpan = 1;

const Series& seriesOf(const ChannelRecord& record, std::size_t panel) {
  return panel == kVolts ? record.volts : panel == kAmperes ? record.amperes : record.watts;
}

QColor colourOf(const Colours& colours, std::size_t panel) {
  return panel == kVolts ? colours.volts : panel == kAmperes ? colours.amperes : colours.watts;
}

bool isAlarm(Mark::Kind kind) {
  return kind == Mark::Kind::Trip || kind == Mark::Kind::LinkLost;
}

}  // namespace

CurveView::CurveView(Monitor& monitor, QWidget* parent)
    : QWidget(parent),
      monitor_(monitor),
      plot_(new QCustomPlot(this)),
      channel_(new QComboBox(this)),
      span_(new QComboBox(this)),
      pause_(new QToolButton(this)),
      readOut_(new QLabel(this)),
      epoch_(static_cast<double>(QDateTime::currentMSecsSinceEpoch()) * kMillisecond -
             static_cast<double>(monitor.now().count()) * kMillisecond) {
  setObjectName("curves");
  channel_->addItem(tr("Selected channel"), QString());
  channel_->setAccessibleName(tr("Channel of the curves"));
  channel_->setToolTip(
      tr("Whose curves are shown: those of the channel that is read, or what is "
         "kept of another one"));
  for (const Span& span : kSpans) {
    span_->addItem(span.name, static_cast<qlonglong>(span.length.count()));
  }
  span_->setCurrentIndex(kFirstSpan);
  span_->setAccessibleName(tr("Time shown"));
  span_->setToolTip(tr("How much time the curves show; the wheel zooms, too"));
  pause_->setText(tr("Pause"));
  pause_->setCheckable(true);
  pause_->setShortcut(Qt::Key_Space | Qt::CTRL);
  pause_->setToolTip(tr("Holds the curves still; readings go on being kept (Ctrl+Space)"));
  readOut_->setAccessibleName(tr("Cursor"));
  readOut_->setMinimumWidth(1);

  auto* const all = new QVBoxLayout(this);
  all->setContentsMargins(0, 0, 0, 0);
  auto* const bar = new QHBoxLayout;
  bar->setContentsMargins(8, 4, 8, 0);
  bar->addWidget(channel_);
  bar->addWidget(span_);
  bar->addWidget(pause_);
  bar->addWidget(readOut_, 1);
  all->addLayout(bar);
  all->addWidget(plot_, 1);

  plot_->plotLayout()->clear();
  plot_->setNotAntialiasedElements(QCP::aeAll);
  plot_->setNoAntialiasingOnDrag(true);
  plot_->setMinimumSize(200, 160);
  addPanel(kVolts, tr("Voltage (V)"));
  addPanel(kAmperes, tr("Current (A)"));
  addPanel(kWatts, tr("Power (W)"));
  plot_->plotLayout()->setRowSpacing(2);
  plot_->setInteractions(QCP::iRangeDrag | QCP::iRangeZoom);
  // On a layer of its own, so that a move of the mouse draws nothing else anew.
  plot_->addLayer("cursor");
  plot_->layer("cursor")->setMode(QCPLayer::lmBuffered);
  for (std::size_t i = 0; i < panels_.size(); ++i) {
    cursors_.at(i) = addLine(panels_.at(i));
    cursors_.at(i)->setLayer("cursor");
    cursors_.at(i)->setVisible(false);
  }
  dress();

  QObject::connect(plot_, &QCustomPlot::mouseMove, this, [this](QMouseEvent* event) {
    readOut(panels_[kVolts].rect->axis(QCPAxis::atBottom)->pixelToCoord(event->pos().x()));
  });
  QObject::connect(span_, &QComboBox::activated, this, [this] {
    follows_ = true;
    pause_->setChecked(false);
    redraw();
  });
  QObject::connect(pause_, &QToolButton::toggled, this, [this](bool paused) {
    follows_ = !paused;
    redraw();
  });
  QObject::connect(channel_, &QComboBox::activated, this, [this] { redraw(); });
  redraw();
}

void CurveView::addPanel(std::size_t row, const QString& label) {
  auto* const rect = new QCPAxisRect(plot_);
  plot_->plotLayout()->addElement(static_cast<int>(row), 0, rect);
  rect->setRangeDrag(Qt::Horizontal);
  rect->setRangeZoom(Qt::Horizontal);
  rect->setMinimumMargins(QMargins(8, 4, 12, 4));
  QCPAxis* const time = rect->axis(QCPAxis::atBottom);
  const auto ticker = QSharedPointer<QCPAxisTickerDateTime>::create();
  ticker->setDateTimeFormat("HH:mm:ss");
  time->setTicker(ticker);
  time->setTickLabels(row == kWatts);
  QCPAxis* const value = rect->axis(QCPAxis::atLeft);
  value->setLabel(label);
  value->ticker()->setTickCount(4);
  value->setNumberFormat("gb");
  if (row == kVolts) {
    auto* const margins = new QCPMarginGroup(plot_);
    rect->setMarginGroup(QCP::msLeft | QCP::msRight, margins);
  } else {
    rect->setMarginGroup(QCP::msLeft | QCP::msRight,
                         panels_[kVolts].rect->marginGroup(QCP::msLeft));
  }
  panels_.at(row) = {.rect = rect, .graph = plot_->addGraph(time, value)};
  QObject::connect(time, qOverload<const QCPRange&>(&QCPAxis::rangeChanged), this,
                   [this, time](const QCPRange& range) {
                     if (filling_) {
                       return;
                     }
                     filling_ = true;
                     for (const Panel& panel : panels_) {
                       if (panel.rect != nullptr) {
                         panel.rect->axis(QCPAxis::atBottom)->setRange(range);
                       }
                     }
                     filling_ = false;
                     moved();
                   });
}

/// From top to bottom of a panel, where no key has been given it yet.
QCPItemStraightLine* CurveView::addLine(const Panel& panel) {
  auto* const line = new QCPItemStraightLine(plot_);
  for (QCPItemPosition* const position : {line->point1, line->point2}) {
    position->setAxes(panel.rect->axis(QCPAxis::atBottom), panel.rect->axis(QCPAxis::atLeft));
    position->setAxisRect(panel.rect);
    position->setTypeY(QCPItemPosition::ptAxisRectRatio);
  }
  line->setClipAxisRect(panel.rect);
  return line;
}

/// In the colours of the palette.
void CurveView::dress() {
  const Colours colours(palette());
  const QColor text = palette().color(QPalette::WindowText);
  plot_->setBackground(palette().color(QPalette::Base));
  for (std::size_t i = 0; i < panels_.size(); ++i) {
    Panel& panel = panels_.at(i);
    panel.graph->setPen(QPen(colourOf(colours, i), 1));
    for (QCPAxis* const axis : panel.rect->axes()) {
      axis->setBasePen(QPen(colours.faint));
      axis->setTickPen(QPen(colours.faint));
      axis->setSubTickPen(QPen(colours.faint));
      axis->setTickLabelColor(text);
      axis->setTickLabelFont(font());
      axis->setLabelFont(font());
      axis->setLabelColor(colourOf(colours, i));
      QColor grid = colours.faint;
      grid.setAlpha(70);
      axis->grid()->setPen(QPen(grid, 1, Qt::SolidLine));
      axis->grid()->setZeroLinePen(QPen(grid, 1, Qt::SolidLine));
    }
  }
  for (QCPItemStraightLine* const cursor : cursors_) {
    cursor->setPen(QPen(text, 1, Qt::DotLine));
  }
}

void CurveView::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) {
    dress();
    redraw();
  }
}

double CurveView::keyOf(Moment at) const {
  return epoch_ + static_cast<double>(at.count()) * kMillisecond;
}

Moment CurveView::momentOf(double key) const {
  return Moment(std::llround((key - epoch_) / kMillisecond));
}

const ChannelRecord* CurveView::shownRecord() {
  const std::string chosen = channel_->currentData().toString().toStdString();
  if (chosen.empty()) {
    return monitor_.current();
  }
  const auto found = monitor_.records().find(chosen);
  return found == monitor_.records().end() ? nullptr : &found->second;
}

void CurveView::chooseChannels() {
  for (const auto& [name, record] : monitor_.records()) {
    const QString text = QString::fromStdString(name);
    if (channel_->findData(text) < 0) {
      channel_->addItem(text, text);
    }
  }
}

void CurveView::showChannel(const std::string& channel) {
  chooseChannels();
  channel_->setCurrentIndex(std::max(channel_->findData(QString::fromStdString(channel)), 0));
}

void CurveView::follow(std::chrono::seconds span) {
  span_->setCurrentIndex(std::max(span_->findData(static_cast<qlonglong>(span.count())), 0));
  follows_ = true;
  redraw();
}

void CurveView::refresh() {
  const auto span = std::chrono::seconds(span_->currentData().toLongLong());
  const Moment point = span / std::max(plot_->width(), 1);
  if (isVisible() && follows_ && monitor_.now() - drawn_ >= std::max(kOftenest, point)) {
    redraw();
  }
}

void CurveView::redraw() {
  drawn_ = monitor_.now();
  chooseChannels();
  if (follows_) {
    const double length = static_cast<double>(span_->currentData().toLongLong());
    const double end = keyOf(monitor_.now());
    filling_ = true;
    for (const Panel& panel : panels_) {
      panel.rect->axis(QCPAxis::atBottom)->setRange(end - length, end);
    }
    filling_ = false;
  }
  fill();
  plot_->replot(QCustomPlot::rpQueuedReplot);
}

void CurveView::drawNow() {
  fill();
  plot_->replot(QCustomPlot::rpImmediateRefresh);
}

void CurveView::showSpan(Moment from, Moment to) {
  follows_ = false;
  filling_ = true;
  for (const Panel& panel : panels_) {
    panel.rect->axis(QCPAxis::atBottom)->setRange(keyOf(from), keyOf(to));
  }
  filling_ = false;
  fill();
  plot_->replot(QCustomPlot::rpQueuedReplot);
}

/// The operator scrolled or zoomed: the curves stay where they are until they are let go on.
void CurveView::moved() {
  follows_ = false;
  const QSignalBlocker quiet(pause_);
  pause_->setChecked(true);
  fill();
}

void CurveView::fill() {
  const ChannelRecord* const record = shownRecord();
  const QCPRange range = panels_[kVolts].rect->axis(QCPAxis::atBottom)->range();
  for (std::size_t i = 0; i < panels_.size(); ++i) {
    Panel& panel = panels_.at(i);
    QVector<QCPGraphData> points;
    double lowest = 0;
    double highest = 0;
    if (record != nullptr) {
      const auto columns = static_cast<std::size_t>(std::max(panel.rect->width(), 1));
      const auto curve =
          seriesOf(*record, i).curve(momentOf(range.lower), momentOf(range.upper), columns);
      points.reserve(static_cast<qsizetype>(curve.size()));
      bool first = true;
      for (const CurvePoint& point : curve) {
        points.append(QCPGraphData(keyOf(point.at), point.value));
        if (!std::isnan(point.value)) {
          lowest = first ? point.value : std::min(lowest, point.value);
          highest = first ? point.value : std::max(highest, point.value);
          first = false;
        }
      }
    }
    panel.graph->data()->set(points, true);
    scaleValues(panel, lowest, highest);
  }
  fillMarks();
}

/// Wide enough for the curve, never narrower than what an instrument's last digits are.
void CurveView::scaleValues(Panel& panel, double lowest, double highest) {
  constexpr double kNarrowest = 0.01;
  if (panel.graph->data()->isEmpty()) {
    panel.rect->axis(QCPAxis::atLeft)->setRange(0, 1);
    return;
  }
  const double middle = (lowest + highest) / 2;
  const double width = std::max({highest - lowest, std::abs(middle) * kNarrowest, kNarrowest});
  panel.rect->axis(QCPAxis::atLeft)
      ->setRange(middle - width * (0.5 + kRoom), middle + width * (0.5 + kRoom));
}

void CurveView::fillMarks() {
  for (QCPItemStraightLine* const line : markLines_) {
    plot_->removeItem(line);
  }
  for (QCPItemText* const text : markTexts_) {
    plot_->removeItem(text);
  }
  markLines_.clear();
  markTexts_.clear();
  const ChannelRecord* const record = shownRecord();
  if (record == nullptr) {
    return;
  }
  constexpr std::size_t kMostShown = 60;
  constexpr double kRightPart = 0.3;
  const Colours colours(palette());
  const QCPRange range = panels_[kVolts].rect->axis(QCPAxis::atBottom)->range();
  for (auto mark = record->marks.rbegin();
       mark != record->marks.rend() && markTexts_.size() < kMostShown; ++mark) {
    const double key = keyOf(mark->at);
    if (!range.contains(key)) {
      continue;
    }
    const QColor colour = isAlarm(mark->kind) ? colours.alarm : colours.faint;
    for (const Panel& panel : panels_) {
      auto* const line = addLine(panel);
      line->point1->setCoords(key, 0);
      line->point2->setCoords(key, 1);
      line->setPen(QPen(colour, 1, Qt::DashLine));
      markLines_.push_back(line);
    }
    auto* const text = new QCPItemText(plot_);
    const Panel& top = panels_[kVolts];
    text->position->setAxes(top.rect->axis(QCPAxis::atBottom), top.rect->axis(QCPAxis::atLeft));
    text->position->setAxisRect(top.rect);
    text->position->setTypeY(QCPItemPosition::ptAxisRectRatio);
    text->setClipAxisRect(top.rect);
    text->position->setCoords(key, 0);
    const bool atRight = key > range.upper - range.size() * kRightPart;
    text->setPositionAlignment(Qt::AlignTop | (atRight ? Qt::AlignRight : Qt::AlignLeft));
    text->setText(' ' + QString::fromStdString(mark->text).left(40) + ' ');
    text->setColor(isAlarm(mark->kind) ? colours.alarm : palette().color(QPalette::WindowText));
    text->setFont(font());
    markTexts_.push_back(text);
  }
}

void CurveView::readOut(double key) {
  const ChannelRecord* const record = shownRecord();
  if (record == nullptr) {
    return;
  }
  QString text =
      QDateTime::fromMSecsSinceEpoch(std::llround(key / kMillisecond)).toString("  HH:mm:ss");
  const std::array units{"V", "A", "W"};
  for (std::size_t i = 0; i < panels_.size(); ++i) {
    if (const auto point = seriesOf(*record, i).nearest(momentOf(key))) {
      text += "   " + QString::fromStdString(fixedText(point->value, kValueDecimals)) + ' ' +
              units.at(i);
    }
  }
  readOut_->setText(text);
  for (QCPItemStraightLine* const cursor : cursors_) {
    cursor->point1->setCoords(key, 0);
    cursor->point2->setCoords(key, 1);
    cursor->setVisible(true);
  }
  plot_->layer("cursor")->replot();
}

QPixmap CurveView::picture(const QSize& size, double scale) {
  for (QCPItemStraightLine* const cursor : cursors_) {
    cursor->setVisible(false);
  }
  plot_->setGeometry(QRect(QPoint(0, 0), size));
  fill();
  return plot_->toPixmap(size.width(), size.height(), scale);
}

}  // namespace zanpanel
