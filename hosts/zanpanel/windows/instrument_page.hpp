#pragma once

#include <QtCore/QTimer>
#include <QtWidgets/QWidget>
#include <functional>
#include <memory>
#include <vector>

#include "hosts/zanpanel/program/instrument.hpp"
#include "hosts/zanpanel/program/memory.hpp"
#include "hosts/zanpanel/windows/transfers.hpp"

class QAction;
class QLabel;
class QSplitter;
class QTabWidget;
class QToolBar;

namespace lumodevice::qt {
class FormView;
}

namespace zanpanel {

class CurveView;
class DischargePage;
class LogPage;
class ReadOuts;

/// All there is of one instrument: the panel, its readings and curves, discharges, recordings and
/// logs, with a tool bar and a status line of its own, so that it can stand in a tab or alone.
class InstrumentPage : public QWidget {
 public:
  /// The memory must outlive it. Throws as Instrument does.
  InstrumentPage(const LinkOptions& options, Memory& memory, QWidget* parent = nullptr);
  ~InstrumentPage() override;

  [[nodiscard]] Instrument& instrument() { return *instrument_; }
  /// What it is called on a tab.
  [[nodiscard]] QString title() const;
  /// Told when the title has changed.
  std::function<void()> titleChanged;
  /// Told when the operator wants it in a window of its own, or back.
  std::function<void()> tornOff;

  void connectNow();
  /// Whether the page may go: asks the operator where a load is on or something runs.
  [[nodiscard]] bool mayLeave();
  /// Something of this page waits for the instrument; it must not go meanwhile.
  [[nodiscard]] bool busy() const { return busy_ > 0 || instrument_->waiting(); }
  /// Nothing is asked or shown any more; it may be deleted when it is not busy.
  void retire();

  enum class Part { Curves, Discharge, Wire, Commands, Errors };
  void showPart(Part part);
  [[nodiscard]] DischargePage& dischargePage() { return *dischargePage_; }
  [[nodiscard]] CurveView& curves() { return *curves_; }
  /// The panel, the side beside it, or both.
  void showParts(bool panel, bool side);
  void setObserving(bool observing);

  [[nodiscard]] QByteArray arrangement() const;
  void restoreArrangement(const QByteArray& arrangement);

 private:
  /// Runs what waits for the instrument.
  void wait(const Act& act);
  void makeActions(QToolBar& bar);
  void makeStatus(QWidget& line);
  void watchInstrument();
  void look();
  void greet();
  void refreshStatus();
  void toggleRecording(bool on);
  void setMark();
  [[nodiscard]] QString newRecording() const;
  void wireEvent(const lumodevice::recordings::WireEvent& event);

  Memory& memory_;
  std::unique_ptr<Instrument> instrument_;
  lumodevice::qt::FormView* form_;
  ReadOuts* readOuts_;
  CurveView* curves_;
  DischargePage* dischargePage_;
  LogPage* wire_;
  LogPage* commands_;
  LogPage* errors_;
  QSplitter* splitter_;
  QTabWidget* side_;
  QAction* connect_ = nullptr;
  QAction* observe_ = nullptr;
  QAction* record_ = nullptr;
  QAction* mark_ = nullptr;
  QAction* panelShown_ = nullptr;
  QAction* sideShown_ = nullptr;
  QLabel* linkText_;
  QLabel* identity_;
  QLabel* panelState_;
  QLabel* recordingText_;
  QLabel* errorText_;
  Transfers transfers_;
  QTimer looking_;
  QString shownTitle_;
  QString heldBack_;
  bool observing_ = false;
  bool connected_ = false;
  bool asking_ = false;
  int busy_ = 0;
  std::vector<lumodevice::toolkit::Subscription> watching_;
};

}  // namespace zanpanel
