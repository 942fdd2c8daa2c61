#include "hosts/zanpanel/windows/instrument_page.hpp"

#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QStandardPaths>
#include <QtGui/QAction>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QInputDialog>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QProgressBar>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QTabWidget>
#include <QtWidgets/QToolBar>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QVBoxLayout>
#include <algorithm>
#include <array>

#include "hosts/zanpanel/curves/curve_view.hpp"
#include "hosts/zanpanel/windows/discharge_page.hpp"
#include "hosts/zanpanel/windows/elided_label.hpp"
#include "hosts/zanpanel/windows/leave_dialog.hpp"
#include "hosts/zanpanel/windows/log_page.hpp"
#include "hosts/zanpanel/windows/read_outs.hpp"
#include "lumodevice/qt/form_view.hpp"
#include "lumodevice/qt/information_box.hpp"
#include "lumodevice/toolkit/controls.hpp"

namespace zanpanel {

using lumodevice::recordings::WireAct;
using lumodevice::recordings::WireEvent;

namespace {

constexpr int kLookEvery = 250;  // milliseconds
constexpr std::array<std::string_view, 5> kRotation{":FETC:VOLT?", ":FETC:CURR?", ":FETC:POW?",
                                                    ":LOAD?", ":SYST:ERR?"};

QString oneLine(const std::string& bytes, int most) {
  const QString text = QString::fromLatin1(bytes.data(), static_cast<qsizetype>(bytes.size()));
  QString plain;
  for (const QChar& character : text.left(most)) {
    plain += character.isPrint() ? character : QChar(' ');
  }
  return plain.simplified();
}

QString clock() {
  return QDateTime::currentDateTime().toString("HH:mm:ss.zzz");
}

bool isRotation(std::string_view line) {
  return std::any_of(kRotation.begin(), kRotation.end(),
                     [&](std::string_view query) { return line.starts_with(query); });
}

/// How an event begins that the page of the wire shows; null for one that it does not.
const char* shownName(const WireEvent& event) {
  switch (event.act) {
    case WireAct::Open:
      return event.link != 0 ? "open " : nullptr;
    case WireAct::Close:
      return "close";
    case WireAct::Sending:
      return "send ";
    case WireAct::Received:
      return event.bytes.empty() ? nullptr : "recv ";
    case WireAct::Dropped:
      return "drop ";
    default:
      return nullptr;
  }
}

}  // namespace

InstrumentPage::InstrumentPage(const LinkOptions& options, Memory& memory, QWidget* parent)
    : QWidget(parent),
      memory_(memory),
      instrument_(std::make_unique<Instrument>(options, lumodevice::qt::InformationBoxes(*this))),
      form_(new lumodevice::qt::FormView(instrument_->load().surface(), this)),
      readOuts_(new ReadOuts(*instrument_, this)),
      curves_(new CurveView(instrument_->monitor(), this)),
      dischargePage_(new DischargePage(*instrument_, this)),
      wire_(new LogPage("wire", this)),
      commands_(new LogPage("commands", this)),
      errors_(new LogPage("errors", this)),
      splitter_(new QSplitter(Qt::Horizontal, this)),
      side_(new QTabWidget(this)),
      linkText_(new ElidedLabel(this)),
      identity_(new ElidedLabel(this)),
      panelState_(new ElidedLabel(this)),
      recordingText_(new ElidedLabel(this)),
      errorText_(new ElidedLabel(this)),
      transfers_(*instrument_, *this, [this](const Act& act) { wait(act); }) {
  auto* const all = new QVBoxLayout(this);
  all->setContentsMargins(0, 0, 0, 0);
  all->setSpacing(0);
  auto* const bar = new QToolBar(this);
  makeActions(*bar);
  all->addWidget(bar);
  all->addWidget(readOuts_);

  // Without letters of their own: with Alt those belong to the panel.
  side_->addTab(curves_, tr("Curves"));
  side_->addTab(dischargePage_, tr("Discharge"));
  side_->addTab(wire_, tr("Wire"));
  side_->addTab(commands_, tr("Commands"));
  side_->addTab(errors_, tr("Errors"));
  side_->setDocumentMode(true);
  form_->setFrameShape(QFrame::NoFrame);
  form_->setMinimumSize(240, 200);
  side_->setMinimumWidth(280);
  splitter_->addWidget(form_);
  splitter_->addWidget(side_);
  splitter_->setStretchFactor(0, 0);
  splitter_->setStretchFactor(1, 1);
  splitter_->setChildrenCollapsible(false);
  all->addWidget(splitter_, 1);
  auto* const line = new QWidget(this);
  makeStatus(*line);
  all->addWidget(line);
  commands_->onChosen([this](const QString& chosen) {
    // "12:34:56.789  :CHAN 1": what stands behind the time.
    const QString command = chosen.section("  ", 1).trimmed();
    if (!command.isEmpty()) {
      wait([&] { instrument_->load().SendCmd(command.toStdString()); });
    }
  });
  watchInstrument();
  looking_.setInterval(kLookEvery);
  QObject::connect(&looking_, &QTimer::timeout, this, [this] { look(); });
  looking_.start();
  // A real instrument is only watched until the operator has said that it is to be operated.
  setObserving(!options.simulate);
  look();
}

InstrumentPage::~InstrumentPage() {
  looking_.stop();
  watching_.clear();
  // What shows the component goes before it.
  delete form_;
  delete readOuts_;
  delete curves_;
  delete dischargePage_;
}

void InstrumentPage::wait(const Act& act) {
  ++busy_;
  act();
  --busy_;
  look();
}

void InstrumentPage::makeActions(QToolBar& bar) {
  bar.setToolButtonStyle(Qt::ToolButtonTextOnly);
  const auto add = [&](const QString& text, const QString& tip, const QKeySequence& keys,
                       bool checkable) {
    auto* const action = new QAction(text, this);
    action->setShortcut(keys);
    action->setShortcutContext(Qt::WindowShortcut);
    action->setToolTip(keys.isEmpty() ? tip
                                      : tip + " (" + keys.toString(QKeySequence::NativeText) + ')');
    action->setCheckable(checkable);
    addAction(action);
    bar.addAction(action);
    return action;
  };
  const std::string& resource = instrument_->options().resource;
  connect_ = add(tr("Auto Connect"),
                 resource.empty() ? tr("Searches an instrument on the chosen link")
                                  : tr("Connects to %1").arg(oneLine(resource, 80)),
                 QKeySequence("Ctrl+Shift+C"), false);
  observe_ = add(tr("Watch only"),
                 tr("Nothing is sent but questions: settings, switches and groups are held back"),
                 QKeySequence("Ctrl+W"), true);
  bar.addSeparator();
  record_ = add(tr("● Record"), tr("Writes every reading to a file of comma-separated values"),
                QKeySequence("Ctrl+R"), true);
  mark_ = add(tr("Mark…"), tr("Puts a note on the curves and into the recording"),
              QKeySequence("Ctrl+M"), false);
  bar.addSeparator();
  auto* const instrument = new QToolButton(&bar);
  instrument->setText(tr("Instrument ▾"));
  instrument->setStyleSheet("QToolButton::menu-indicator { image: none }");
  instrument->setPopupMode(QToolButton::InstantPopup);
  instrument->setToolTip(tr("The screen and the memory files of the instrument"));
  auto* const menu = new QMenu(instrument);
  menu->setToolTipsVisible(true);
  transfers_.fill(*menu);
  instrument->setMenu(menu);
  bar.addWidget(instrument);
  bar.addSeparator();
  panelShown_ = add(tr("Panel"), tr("Shows the panel"), QKeySequence("Ctrl+1"), true);
  sideShown_ =
      add(tr("Curves"), tr("Shows curves, discharge and logs"), QKeySequence("Ctrl+2"), true);
  panelShown_->setChecked(true);
  sideShown_->setChecked(true);
  auto* const tear = add(tr("Own window"), tr("Takes this instrument into a window of its own"),
                         QKeySequence("Ctrl+T"), false);

  QObject::connect(connect_, &QAction::triggered, this, [this] { connectNow(); });
  QObject::connect(observe_, &QAction::toggled, this, [this](bool on) {
    setObserving(on);
    const std::string name = instrument_->name();
    if (!on && !instrument_->options().simulate && instrument_->load().isConnected()) {
      memory_.rememberOperated(QString::fromStdString(name));
    }
  });
  QObject::connect(record_, &QAction::toggled, this, [this](bool on) { toggleRecording(on); });
  QObject::connect(mark_, &QAction::triggered, this, [this] { setMark(); });
  QObject::connect(panelShown_, &QAction::toggled, this,
                   [this](bool on) { showParts(on, sideShown_->isChecked() || !on); });
  QObject::connect(sideShown_, &QAction::toggled, this,
                   [this](bool on) { showParts(panelShown_->isChecked() || !on, on); });
  QObject::connect(tear, &QAction::triggered, this, [this] {
    if (tornOff) {
      tornOff();
    }
  });
}

void InstrumentPage::makeStatus(QWidget& line) {
  line.setObjectName("status");
  auto* const row = new QHBoxLayout(&line);
  row->setContentsMargins(10, 3, 10, 3);
  row->setSpacing(18);
  const auto add = [&](QLabel* label, const QString& name, int stretch) {
    label->setAccessibleName(name);
    label->setTextFormat(Qt::PlainText);
    label->setMinimumWidth(1);
    row->addWidget(label, stretch);
  };
  add(linkText_, tr("Link"), 3);
  add(identity_, tr("Identity"), 3);
  add(panelState_, tr("Panel"), 1);
  add(recordingText_, tr("Recording"), 2);
  add(errorText_, tr("Last instrument error"), 2);
  row->addWidget(&transfers_.progress());
}

void InstrumentPage::watchInstrument() {
  Monitor& monitor = instrument_->monitor();
  watching_.push_back(
      instrument_->wire().events.observe([this](const WireEvent& event) { wireEvent(event); }));
  watching_.push_back(monitor.errors.observe(
      [this](const std::string& entry) { errors_->add(clock() + "  " + oneLine(entry, 200)); }));
  watching_.push_back(instrument_->load().observeHeldBack([this](const std::string& command) {
    heldBack_ = oneLine(command, 80);
    commands_->add(clock() + " (" + tr("held back") + ")  " + heldBack_);
  }));
  watching_.push_back(monitor.readings.observe([this](const lumodevice::Reading& reading) {
    readOuts_->refresh();
    if (reading.query == ":LOAD?") {
      curves_->refresh();
    }
  }));
  watching_.push_back(monitor.marks.observe([this](const Mark&) { curves_->redraw(); }));
  watching_.push_back(monitor.channelChanged.observe([this] { curves_->redraw(); }));
  watching_.push_back(instrument_->recorder().failed.observe([this](const std::string& why) {
    // At once, but not in the midst of the reading.
    QTimer::singleShot(0, this, [this, text = QString::fromStdString(why)] {
      record_->setChecked(false);
      QMessageBox::critical(
          this, tr("Recording"),
          tr("The recording has ended. %1.\nThe rows so far are in the file.").arg(text));
    });
  }));
}

void InstrumentPage::wireEvent(const WireEvent& event) {
  const char* const name = shownName(event);
  if (name == nullptr) {
    return;
  }
  const bool named = event.act == WireAct::Open || event.act == WireAct::Close;
  wire_->add(clock() + "  " + name + ' ' +
             (named ? oneLine(std::string(event.name), 200) : shownBytes(event.bytes)));
  if (event.act == WireAct::Sending && !isRotation(event.bytes)) {
    commands_->add(clock() + "  " + oneLine(std::string(event.bytes.substr(0, 200)), 200));
  }
  if (event.act == WireAct::Received) {
    transfers_.received(event.bytes);
  }
}

void InstrumentPage::look() {
  instrument_->look();
  readOuts_->refresh();
  dischargePage_->refresh();
  refreshStatus();
  if (busy_ == 0 && !instrument_->waiting()) {
    greet();
  }
  if (title() != shownTitle_) {
    shownTitle_ = title();
    if (titleChanged) {
      titleChanged();
    }
  }
}

/// A link has come up, however: not every connect leaves the identity of the instrument that it
/// found, and none starts the readings.
void InstrumentPage::greet() {
  lumodevice::ZANCtrl& load = instrument_->load();
  if (load.isConnected() == connected_) {
    return;
  }
  connected_ = load.isConnected();
  if (!connected_) {
    return;
  }
  wait([&] {
    load.SendCmd("*IDN?");
    if (!load.ResultStr().empty()) {
      load.IDN(load.ResultStr());
    }
    load.AutoQuery(load.isConnected());
  });
  if (observing_ && memory_.operated(QString::fromStdString(instrument_->name()))) {
    setObserving(false);
  }
}

QString InstrumentPage::title() const {
  const std::string name = instrument_->name();
  const LinkOptions& options = instrument_->options();
  const QString base = !name.empty()               ? oneLine(name, 40)
                       : options.simulate          ? tr("Simulated instrument")
                       : !options.resource.empty() ? oneLine(options.resource, 40)
                                                   : tr("Instrument");
  const ChannelRecord* const channel = instrument_->monitor().current();
  const bool on = channel != nullptr && channel->load.on().value_or(false);
  return (on ? "● " : "") + base;
}

void InstrumentPage::refreshStatus() {
  lumodevice::ZANCtrl& load = instrument_->load();
  const bool connected = load.isConnected();
  linkText_->setText(oneLine(instrument_->linkText(), 120));
  linkText_->setToolTip(linkText_->text());
  identity_->setText(connected ? oneLine(load.IDN(), 120) : QString());
  identity_->setToolTip(identity_->text());
  panelState_->setText(!connected         ? tr("no link")
                       : observing_       ? tr("watching only")
                       : load.AutoQuery() ? tr("reading")
                                          : tr("not reading"));
  const Recorder& recorder = instrument_->recorder();
  recordingText_->setText(
      recorder.recording() ? tr("● %1: %2 rows")
                                 .arg(QString::fromStdString(recorder.file().filename().string()))
                                 .arg(recorder.rows())
                           : QString());
  recordingText_->setToolTip(QString::fromStdString(recorder.file().string()));
  const std::string& error = instrument_->monitor().lastError();
  errorText_->setText(error.empty() ? QString() : tr("Error: %1").arg(oneLine(error, 80)));
  errorText_->setToolTip(errorText_->text());
  for (QLabel* const label : {identity_, recordingText_, errorText_}) {
    label->setVisible(!label->text().isEmpty());
  }
  mark_->setEnabled(instrument_->monitor().current() != nullptr);
}

void InstrumentPage::retire() {
  looking_.stop();
  watching_.clear();
  instrument_->recorder().stop();
  instrument_->load().AutoQuery(false);
}

void InstrumentPage::connectNow() {
  wait([this] {
    if (instrument_->connect()) {
      instrument_->load().ShowControl();
    }
  });
}

void InstrumentPage::setObserving(bool observing) {
  observing_ = observing;
  heldBack_.clear();
  wait([&] { instrument_->setObserving(observing); });
  const QSignalBlocker quiet(observe_);
  observe_->setChecked(observing);
  dischargePage_->setObserving(observing);
  refreshStatus();
}

QString InstrumentPage::newRecording() const {
  const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
  return QDir(folder).filePath("zan-" + QDateTime::currentDateTime().toString("yyyyMMdd-HHmmss") +
                               ".csv");
}

void InstrumentPage::toggleRecording(bool on) {
  Recorder& recorder = instrument_->recorder();
  if (on == recorder.recording()) {
    return;
  }
  if (!on) {
    recorder.stop();
    refreshStatus();
    return;
  }
  QFileDialog dialog(this, tr("Record to"), QString(), tr("Comma-separated values (*.csv)"));
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setDefaultSuffix("csv");
  dialog.selectFile(newRecording());
  dialog.setOption(QFileDialog::DontConfirmOverwrite);
  const bool chosen = dialog.exec() == QDialog::Accepted;
  try {
    if (chosen) {
      recorder.start(dialog.selectedFiles().value(0).toStdString());
    }
  } catch (const RecordingFault& fault) {
    QMessageBox::critical(this, tr("Recording"), QString::fromStdString(fault.what()));
  }
  record_->setChecked(recorder.recording());
  refreshStatus();
}

void InstrumentPage::setMark() {
  bool given = false;
  const QString note =
      QInputDialog::getText(this, tr("Mark"), tr("Note:"), QLineEdit::Normal, {}, &given);
  if (given) {
    instrument_->recorder().note(note.isEmpty() ? "mark" : note.toStdString());
  }
}

bool InstrumentPage::mayLeave() {
  if (asking_) {
    return false;
  }
  const ChannelRecord* const channel = instrument_->monitor().current();
  const bool on =
      channel != nullptr && channel->load.on().value_or(false) && instrument_->load().isConnected();
  // A load that is only watched is somebody else's.
  if (observing_ || (!on && !instrument_->discharge().underWay())) {
    return true;
  }
  const QString name = QString::fromStdString(instrument_->monitor().channel());
  asking_ = true;
  const Leaving answer = askAboutLoad(this, name, instrument_->discharge().underWay());
  asking_ = false;
  switch (answer) {
    case Leaving::Stay:
      return false;
    case Leaving::LeaveOn:
      return true;
    case Leaving::SwitchOff:
      break;
  }
  bool off = false;
  wait([&] { off = instrument_->switchOff(); });
  if (!off) {
    QMessageBox::warning(
        this, tr("Instrument"),
        tr("The instrument has not confirmed that the load is off. The window stays open."));
  }
  return off;
}

void InstrumentPage::showPart(Part part) {
  showParts(panelShown_->isChecked(), true);
  side_->setCurrentIndex(static_cast<int>(part));
}

void InstrumentPage::showParts(bool panel, bool side) {
  const QSignalBlocker quietPanel(panelShown_);
  const QSignalBlocker quietSide(sideShown_);
  panelShown_->setChecked(panel);
  sideShown_->setChecked(side);
  form_->setVisible(panel);
  side_->setVisible(side);
}

QByteArray InstrumentPage::arrangement() const {
  return splitter_->saveState();
}

void InstrumentPage::restoreArrangement(const QByteArray& arrangement) {
  if (!arrangement.isEmpty()) {
    splitter_->restoreState(arrangement);
  }
}

}  // namespace zanpanel
