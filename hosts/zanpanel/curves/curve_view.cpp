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
/// In place of a channel's name.
const QString kAllChannels = QStringLiteral("*");
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
  channel_->addItem(tr("All channels"), kAllChannels);
  channel_->setAccessibleName(tr("Channel of the curves"));
  channel_->setToolTip(
      tr("Whose curves are shown: those of the channel that is read, what is kept of another one, "
         "or of all"));
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
  legend_ = new QCPLegend;
  panels_[kVolts].rect->insetLayout()->addElement(legend_, Qt::AlignTop | Qt::AlignLeft);
  legend_->setLayer("legend");
  legend_->setFillOrder(QCPLegend::foColumnsFirst);
  legend_->setWrap(1);
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
  panels_.at(row).rect = rect;
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
    const Panel& panel = panels_.at(i);
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
  legend_->setBrush(palette().color(QPalette::Base));
  legend_->setBorderPen(QPen(colours.faint));
  legend_->setTextColor(text);
  legend_->setFont(font());
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

std::vector<CurveView::Shown> CurveView::shown() {
  const QString chosen = channel_->currentData().toString();
  std::vector<Shown> shown;
  for (const auto& [name, record] : monitor_.records()) {
    if (chosen == kAllChannels ||
        name == (chosen.isEmpty() ? monitor_.channel() : chosen.toStdString())) {
      shown.push_back({&name, &record});
    }
  }
  return shown;
}

void CurveView::chooseChannels() {
  for (const auto& [name, record] : monitor_.records()) {
    const QString text = QString::fromStdString(name);
    if (channel_->findData(text) < 0) {
      channel_->addItem(text, text);
    }
  }
}

void CurveView::showAllChannels() {
  channel_->setCurrentIndex(channel_->findData(kAllChannels));
  redraw();
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
  const std::vector<Shown> shown = this->shown();
  makeGraphs(shown);
  for (std::size_t i = 0; i < panels_.size(); ++i) {
    Panel& panel = panels_.at(i);
    Extent all;
    for (std::size_t j = 0; j < shown.size(); ++j) {
      const Extent one = fillGraph(*panel.graphs[j], seriesOf(*shown[j].record, i));
      if (one.any) {
        all = {.lowest = all.any ? std::min(all.lowest, one.lowest) : one.lowest,
               .highest = all.any ? std::max(all.highest, one.highest) : one.highest,
               .any = true};
      }
    }
    scaleValues(panel, all);
  }
  fillMarks(shown);
}

/// One in each panel for each record. A channel alone has the colours of its quantities; several
/// have one each, which the legend tells.
void CurveView::makeGraphs(const std::vector<Shown>& shown) {
  const Colours colours(palette());
  legend_->clearItems();
  for (std::size_t i = 0; i < panels_.size(); ++i) {
    Panel& panel = panels_.at(i);
    while (panel.graphs.size() > shown.size()) {
      plot_->removeGraph(panel.graphs.back());
      panel.graphs.pop_back();
    }
    while (panel.graphs.size() < shown.size()) {
      panel.graphs.push_back(
          plot_->addGraph(panel.rect->axis(QCPAxis::atBottom), panel.rect->axis(QCPAxis::atLeft)));
    }
    for (std::size_t j = 0; j < shown.size(); ++j) {
      const bool alone = shown.size() == 1;
      panel.graphs[j]->setPen(QPen(alone ? colourOf(colours, i) : colours.ofChannel(j), 1));
      panel.graphs[j]->setName(QString::fromStdString(*shown[j].channel));
      if (!alone && i == kVolts) {
        panel.graphs[j]->addToLegend(legend_);
      }
    }
  }
  legend_->setVisible(shown.size() > 1);
}

CurveView::Extent CurveView::fillGraph(QCPGraph& graph, const Series& series) {
  const QCPRange range = graph.keyAxis()->range();
  const auto columns = static_cast<std::size_t>(std::max(graph.keyAxis()->axisRect()->width(), 1));
  const auto curve = series.curve(momentOf(range.lower), momentOf(range.upper), columns);
  QVector<QCPGraphData> points;
  points.reserve(static_cast<qsizetype>(curve.size()));
  Extent extent;
  for (const CurvePoint& point : curve) {
    points.append(QCPGraphData(keyOf(point.at), point.value));
    if (!std::isnan(point.value)) {
      extent = {.lowest = extent.any ? std::min(extent.lowest, point.value) : point.value,
                .highest = extent.any ? std::max(extent.highest, point.value) : point.value,
                .any = true};
    }
  }
  graph.data()->set(points, true);
  return extent;
}

/// Wide enough for the curves, never narrower than what an instrument's last digits are.
void CurveView::scaleValues(Panel& panel, const Extent& extent) {
  constexpr double kNarrowest = 0.01;
  QCPAxis* const values = panel.rect->axis(QCPAxis::atLeft);
  if (!extent.any) {
    values->setRange(0, 1);
    return;
  }
  const double middle = (extent.lowest + extent.highest) / 2;
  const double width =
      std::max({extent.highest - extent.lowest, std::abs(middle) * kNarrowest, kNarrowest});
  values->setRange(middle - width * (0.5 + kRoom), middle + width * (0.5 + kRoom));
}

void CurveView::fillMarks(const std::vector<Shown>& shown) {
  for (QCPItemStraightLine* const line : markLines_) {
    plot_->removeItem(line);
  }
  for (QCPItemText* const text : markTexts_) {
    plot_->removeItem(text);
  }
  markLines_.clear();
  markTexts_.clear();
  constexpr std::size_t kMostShown = 60;
  const QCPRange range = panels_[kVolts].rect->axis(QCPAxis::atBottom)->range();
  for (const Shown& each : shown) {
    const auto& marks = each.record->marks;
    for (auto mark = marks.rbegin(); mark != marks.rend() && markTexts_.size() < kMostShown;
         ++mark) {
      if (range.contains(keyOf(mark->at))) {
        addMark(*mark, shown.size() == 1 ? std::string() : *each.channel + ' ');
      }
    }
  }
}

void CurveView::addMark(const Mark& mark, const std::string& before) {
  constexpr double kRightPart = 0.3;
  const Colours colours(palette());
  const double key = keyOf(mark.at);
  for (const Panel& panel : panels_) {
    auto* const line = addLine(panel);
    line->point1->setCoords(key, 0);
    line->point2->setCoords(key, 1);
    line->setPen(QPen(isAlarm(mark.kind) ? colours.alarm : colours.faint, 1, Qt::DashLine));
    markLines_.push_back(line);
  }
  const Panel& top = panels_[kVolts];
  const QCPRange range = top.rect->axis(QCPAxis::atBottom)->range();
  auto* const text = new QCPItemText(plot_);
  text->position->setAxes(top.rect->axis(QCPAxis::atBottom), top.rect->axis(QCPAxis::atLeft));
  text->position->setAxisRect(top.rect);
  text->position->setTypeY(QCPItemPosition::ptAxisRectRatio);
  text->setClipAxisRect(top.rect);
  text->position->setCoords(key, 0);
  const bool atRight = key > range.upper - range.size() * kRightPart;
  text->setPositionAlignment(Qt::AlignTop | (atRight ? Qt::AlignRight : Qt::AlignLeft));
  text->setText(' ' + QString::fromStdString(before + mark.text).left(40) + ' ');
  text->setColor(isAlarm(mark.kind) ? colours.alarm : palette().color(QPalette::WindowText));
  text->setFont(font());
  markTexts_.push_back(text);
}

void CurveView::readOut(double key) {
  const std::vector<Shown> shown = this->shown();
  if (shown.empty()) {
    return;
  }
  QString text =
      QDateTime::fromMSecsSinceEpoch(std::llround(key / kMillisecond)).toString("  HH:mm:ss");
  const std::array units{"V", "A", "W"};
  for (const Shown& each : shown) {
    if (shown.size() > 1) {
      text += "   " + QString::fromStdString(*each.channel) + ':';
    }
    for (std::size_t i = 0; i < panels_.size(); ++i) {
      if (const auto point = seriesOf(*each.record, i).nearest(momentOf(key))) {
        text += "   " + QString::fromStdString(fixedText(point->value, kValueDecimals)) + ' ' +
                units.at(i);
      }
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
