#include "hosts/zanpanel/windows/shell.hpp"

#include <QtCore/QTimer>
#include <QtGui/QActionGroup>
#include <QtGui/QCloseEvent>
#include <QtGui/QScreen>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QTabBar>
#include <QtWidgets/QTabWidget>
#include <algorithm>
#include <array>
#include <exception>

#include "hosts/zanpanel/windows/colours.hpp"
#include "hosts/zanpanel/windows/instrument_page.hpp"

namespace zanpanel {

namespace {

constexpr QSize kUsualSize{1360, 860};
constexpr int kRetryEvery = 20;  // milliseconds
/// Narrower screens show the panel or the curves, not both.
constexpr int kRoomForBoth = 1150;

const QPalette& systemPalette() {
  static const QPalette palette = QApplication::palette();
  return palette;
}

}  // namespace

void applyPalette(Palette palette) {
  const QPalette& system = systemPalette();
  QApplication::setPalette(palette == Palette::Light  ? lightPalette()
                           : palette == Palette::Dark ? darkPalette()
                                                      : system);
}

Desk::Desk(const Options& options, Memory& memory) : options_(options), memory_(memory) {}

Desk::~Desk() {
  for (Shell* const shell : shells_) {
    delete shell;
  }
}

Shell& Desk::addShell() {
  shells_.push_back(new Shell(*this));
  return *shells_.back();
}

InstrumentPage* Desk::openFirst() {
  Shell& shell = addShell();
  InstrumentPage* const page = openTabs(shell);
  if (page == nullptr) {
    return nullptr;
  }
  const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
  if (options_.size) {
    shell.resize(options_.size->first, options_.size->second);
  } else if (!shell.restoreGeometry(memory_.windowPlace())) {
    shell.resize(kUsualSize.boundedTo(screen.size()));
  }
  page->restoreArrangement(memory_.arrangement());
  if (shell.width() < kRoomForBoth) {
    page->showParts(true, false);
  }
  shell.show();
  return page;
}

/// What the command line names; else what was there last, and is not connected to before it is
/// asked.
InstrumentPage* Desk::openTabs(Shell& shell) {
  InstrumentPage* first = nullptr;
  if (!options_.linkNamed) {
    for (LinkOptions options : memory_.links()) {
      options.driveC = options_.links.driveC;
      InstrumentPage* const page = open(shell, options);
      first = first == nullptr ? page : first;
    }
  }
  if (first == nullptr) {
    return open(shell, options_.links);
  }
  shell.show(*first);
  return first;
}

void Desk::rememberLinks(const Shell& leaving) {
  std::vector<LinkOptions> links;
  for (int i = 0; i < leaving.count(); ++i) {
    if (const LinkOptions found = leaving.page(i)->instrument().found(); !found.simulate) {
      links.push_back(found);
    }
  }
  if (!links.empty()) {
    memory_.rememberLinks(links);
  }
}

InstrumentPage* Desk::open(Shell& shell, const LinkOptions& options) {
  try {
    auto* const page = new InstrumentPage(options, memory_);
    shell.add(*page);
    return page;
  } catch (const std::exception& unusable) {
    QMessageBox::critical(&shell, shell.windowTitle(), QString::fromUtf8(unusable.what()));
    return nullptr;
  }
}

void Desk::tearOff(InstrumentPage& page) {
  const auto from = std::find_if(shells_.begin(), shells_.end(),
                                 [&](const Shell* shell) { return shell->holds(page); });
  if (from == shells_.end()) {
    return;
  }
  Shell& old = **from;
  const bool alone = old.count() == 1;
  if (alone && &old == shells_.front()) {
    return;
  }
  Shell& target = alone ? *shells_.front() : addShell();
  old.remove(page);
  target.add(page);
  if (!alone) {
    target.resize(old.size());
    target.show();
  } else {
    old.close();
  }
}

void Desk::letGo(InstrumentPage& page) {
  page.hide();
  page.setParent(nullptr);
  page.retire();
  departing_.push_back(&page);
  deleteIdle();
}

void Desk::deleteIdle() {
  departing_.remove_if([](InstrumentPage* page) {
    if (page->busy()) {
      return false;
    }
    page->deleteLater();
    return true;
  });
  if (!departing_.empty()) {
    QTimer::singleShot(kRetryEvery, qApp, [this] { deleteIdle(); });
  } else if (shells_.empty()) {
    QCoreApplication::quit();
  }
}

void Desk::closed(Shell& shell) {
  std::erase(shells_, &shell);
  shell.deleteLater();
  deleteIdle();
}

Shell::Shell(Desk& desk) : desk_(desk), tabs_(new QTabWidget(this)) {
  setWindowTitle(tr("ZAN Load Control"));
  tabs_->setDocumentMode(true);
  tabs_->setTabsClosable(true);
  tabs_->setMovable(true);
  tabs_->tabBar()->setAutoHide(true);
  setCentralWidget(tabs_);
  makeMenus();
  QObject::connect(tabs_, &QTabWidget::tabCloseRequested, this,
                   [this](int index) { closePage(index); });
}

void Shell::makeMenus() {
  // Their letters belong to the panel; F10 opens them.
  QMenu* const file = menuBar()->addMenu(tr("File"));
  const auto add = [this](QMenu* menu, const QString& text, const QKeySequence& keys,
                          const std::function<void()>& act) {
    QAction* const action = menu->addAction(text);
    action->setShortcut(keys);
    QObject::connect(action, &QAction::triggered, this, act);
    return action;
  };
  add(file, tr("&New instrument"), QKeySequence::New, [this] {
    LinkOptions options = desk_.options().links;
    options.simulate = false;
    options.sources.clear();
    // The recording is of the instrument that the program began with.
    options.record.clear();
    desk_.open(*this, options);
  });
  add(file, tr("New &simulated instrument"), QKeySequence("Ctrl+Shift+N"),
      [this] { desk_.open(*this, {.simulate = true, .driveC = desk_.options().links.driveC}); });
  file->addSeparator();
  add(file, tr("&Close instrument"), QKeySequence("Ctrl+F4"),
      [this] { closePage(tabs_->currentIndex()); });
  add(file, tr("&Quit"), QKeySequence("Ctrl+Q"), [] { QApplication::closeAllWindows(); });

  QMenu* const view = menuBar()->addMenu(tr("View"));
  auto* const palettes = new QActionGroup(this);
  const std::pair<const char*, Palette> choices[] = {
      {"&System colours", Palette::System}, {"&Light", Palette::Light}, {"&Dark", Palette::Dark}};
  const std::array names{"system", "light", "dark"};
  for (const auto& [text, palette] : choices) {
    const char* const name = names.at(static_cast<std::size_t>(palette));
    QAction* const action = add(view, tr(text), {}, [this, chosen = palette, name] {
      applyPalette(chosen);
      desk_.memory().rememberPalette(name);
    });
    palettes->addAction(action);
  }
  QMenu* const help = menuBar()->addMenu(tr("Help"));
  add(help, tr("&About"), {}, [this] { about(); });
}

void Shell::about() {
  QMessageBox::about(
      this, tr("ZAN Load Control"),
      tr("<h3>zanpanel %1</h3><p>Operates a DC electronic load of the ZAN family.</p>"
         "<p>The component and its Qt view are under the MIT licence. This program draws its "
         "curves "
         "with QCustomPlot, which is under the GPL version 3 or later; so is the program as a "
         "whole. It comes without any warranty.</p>")
          .arg(ZANPANEL_VERSION));
}

void Shell::add(InstrumentPage& page) {
  tabs_->addTab(&page, page.title());
  tabs_->setCurrentWidget(&page);
  page.titleChanged = [this, &page] {
    const int index = tabs_->indexOf(&page);
    if (index >= 0) {
      tabs_->setTabText(index, page.title());
      setWindowTitle(count() == 1 ? page.title() + tr(" – ZAN Load Control")
                                  : tr("ZAN Load Control"));
    }
  };
  page.tornOff = [this, &page] { desk_.tearOff(page); };
  page.titleChanged();
}

void Shell::show(InstrumentPage& page) {
  tabs_->setCurrentWidget(&page);
}

void Shell::remove(InstrumentPage& page) {
  tabs_->removeTab(tabs_->indexOf(&page));
}

int Shell::count() const {
  return tabs_->count();
}

InstrumentPage* Shell::page(int index) const {
  return dynamic_cast<InstrumentPage*>(tabs_->widget(index));
}

bool Shell::holds(const InstrumentPage& page) const {
  return tabs_->indexOf(const_cast<InstrumentPage*>(&page)) >= 0;
}

void Shell::closePage(int index) {
  InstrumentPage* const leaving = page(index);
  if (leaving != nullptr && count() == 1) {
    close();
    return;
  }
  if (leaving == nullptr || !leaving->mayLeave()) {
    return;
  }
  remove(*leaving);
  desk_.letGo(*leaving);
}

void Shell::closeEvent(QCloseEvent* event) {
  for (int i = 0; i < count(); ++i) {
    tabs_->setCurrentIndex(i);
    if (!page(i)->mayLeave()) {
      event->ignore();
      return;
    }
  }
  desk_.memory().rememberWindowPlace(saveGeometry());
  if (count() > 0) {
    desk_.memory().rememberArrangement(page(0)->arrangement());
    desk_.rememberLinks(*this);
  }
  while (count() > 0) {
    InstrumentPage* const leaving = page(0);
    remove(*leaving);
    desk_.letGo(*leaving);
  }
  event->accept();
  desk_.closed(*this);
}

}  // namespace zanpanel
