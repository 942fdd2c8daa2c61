#pragma once

#include <QtWidgets/QMainWindow>
#include <list>
#include <memory>
#include <vector>

#include "hosts/zanpanel/program/memory.hpp"
#include "hosts/zanpanel/program/options.hpp"

class QTabWidget;

namespace zanpanel {

class InstrumentPage;
class Shell;

/// The windows of the program and the instruments in them.
class Desk {
 public:
  /// The memory must outlive it.
  Desk(const Options& options, Memory& memory);
  ~Desk();
  Desk(const Desk&) = delete;
  Desk& operator=(const Desk&) = delete;

  /// A window with an instrument; null when it cannot be made, which was told then.
  InstrumentPage* openFirst();
  InstrumentPage* open(Shell& shell, const LinkOptions& options);
  /// Into a window of its own, or back into the first one.
  void tearOff(InstrumentPage& page);
  /// Deletes the page as soon as nothing of it waits.
  void letGo(InstrumentPage& page);
  void closed(Shell& shell);
  /// The real instruments of a window that is left; a window without any changes nothing.
  void rememberLinks(const Shell& leaving);

  [[nodiscard]] Shell& first() { return *shells_.front(); }
  [[nodiscard]] const Options& options() const { return options_; }
  [[nodiscard]] Memory& memory() { return memory_; }

 private:
  Shell& addShell();
  InstrumentPage* openTabs(Shell& shell);
  void deleteIdle();

  const Options& options_;
  Memory& memory_;
  std::vector<Shell*> shells_;
  std::list<InstrumentPage*> departing_;
};

/// A window with tabs, one for each instrument.
class Shell : public QMainWindow {
 public:
  explicit Shell(Desk& desk);

  void add(InstrumentPage& page);
  using QMainWindow::show;
  /// In front of the others.
  void show(InstrumentPage& page);
  void remove(InstrumentPage& page);
  [[nodiscard]] int count() const;
  [[nodiscard]] InstrumentPage* page(int index) const;
  [[nodiscard]] bool holds(const InstrumentPage& page) const;

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void makeMenus();
  void closePage(int index);
  void about();

  Desk& desk_;
  QTabWidget* tabs_;
};

/// Colours the whole program.
void applyPalette(Palette palette);

}  // namespace zanpanel
