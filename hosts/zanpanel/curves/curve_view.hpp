#pragma once

#include <QtGui/QPixmap>
#include <QtWidgets/QWidget>
#include <array>
#include <vector>

#include "hosts/zanpanel/readings/monitor.hpp"

class QCPAxisRect;
class QCPGraph;
class QCPLegend;
class QCPItemStraightLine;
class QCPItemText;
class QCustomPlot;
class QComboBox;
class QLabel;
class QToolButton;

namespace zanpanel {

/// Voltage, current and power over time, one below the other on one time axis, with marks where
/// something happened: of the channel that is selected, of another one, or of all of which
/// something is kept. The wheel zooms, a drag scrolls, the mouse reads out; the curves follow the
/// time unless they are paused or were scrolled away.
class CurveView : public QWidget {
 public:
  /// The monitor must outlive it.
  explicit CurveView(Monitor& monitor, QWidget* parent = nullptr);

  /// Draws anew where there is something new to see: once a second at most, less often where a
  /// second is less than a point.
  void refresh();
  /// Draws anew now.
  void redraw();
  /// Shows what is kept of that channel, whichever is selected.
  void showChannel(const std::string& channel);
  /// Shows what is kept of every channel.
  void showAllChannels();
  /// Shows what there is between two moments.
  void showSpan(Moment from, Moment to);
  /// The same, whatever else waits to be drawn; returns when it is done.
  void drawNow();
  /// Shows the last of the time, as it goes on; a span of the list.
  void follow(std::chrono::seconds span);
  /// The curves as they are, for a report; `scale` points of the picture to each of `size`.
  [[nodiscard]] QPixmap picture(const QSize& size, double scale);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  struct Panel {
    QCPAxisRect* rect;
    /// One for each record that is shown.
    std::vector<QCPGraph*> graphs = {};
  };
  struct Shown {
    const std::string* channel;
    const ChannelRecord* record;
  };
  struct Extent {
    double lowest = 0;
    double highest = 0;
    bool any = false;
  };

  void addPanel(std::size_t row, const QString& label);
  [[nodiscard]] QCPItemStraightLine* addLine(const Panel& panel);
  void dress();
  void fill();
  void fillMarks(const std::vector<Shown>& shown);
  void addMark(const Mark& mark, const std::string& before);
  void makeGraphs(const std::vector<Shown>& shown);
  Extent fillGraph(QCPGraph& graph, const Series& series);
  static void scaleValues(Panel& panel, const Extent& extent);
  void moved();
  void readOut(double key);
  void chooseChannels();
  [[nodiscard]] std::vector<Shown> shown();
  [[nodiscard]] double keyOf(Moment at) const;
  [[nodiscard]] Moment momentOf(double key) const;

  Monitor& monitor_;
  QCustomPlot* plot_;
  QComboBox* channel_;
  QComboBox* span_;
  QToolButton* pause_;
  QLabel* readOut_;
  std::array<Panel, 3> panels_{};
  QCPLegend* legend_ = nullptr;
  std::array<QCPItemStraightLine*, 3> cursors_{};
  std::vector<QCPItemStraightLine*> markLines_;
  std::vector<QCPItemText*> markTexts_;
  /// Seconds since 1970 at the moment 0.
  double epoch_;
  bool follows_ = true;
  bool filling_ = false;
  Moment drawn_{-1};
};

}  // namespace zanpanel
