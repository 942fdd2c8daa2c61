#include "hosts/zanpanel/windows/scenes.hpp"

#include <QtCore/QTimer>
#include <QtWidgets/QApplication>
#include <cstdio>

#include "hosts/zanpanel/curves/curve_view.hpp"
#include "hosts/zanpanel/windows/instrument_page.hpp"
#include "hosts/zanpanel/windows/shell.hpp"
#include "lumodevice/toolkit/controls.hpp"
#include "lumodevice/toolkit/hand.hpp"

namespace zanpanel {

namespace toolkit = lumodevice::toolkit;
namespace hand = lumodevice::toolkit::hand;

namespace {

constexpr int kChannel = 2;  // CH3, on which a battery hangs
constexpr int kReadFor = 26000;
constexpr int kReadBeforeDischarge = 2500;
constexpr int kSettle = 300;

void set(InstrumentPage& page, int index, std::string_view value) {
  const auto& surface = page.instrument().load().surface();
  hand::type(surface.get<toolkit::TextBox>("txtInput", index), value);
  hand::click(surface.get<toolkit::CommandButton>("cmdSet", index));
}

/// Steps of a load over time, so that the curves show something.
void stepLoad(InstrumentPage& page) {
  const auto later = [&page](int after, auto act) { QTimer::singleShot(after, &page, act); };
  const auto click = [&page] {
    hand::click(page.instrument().load().surface().get<toolkit::CheckBox>("chkLoad"));
  };
  later(3000, click);
  later(9000, [&page] { set(page, 0, "5"); });
  later(14000, [&page] { set(page, 0, "20"); });
  later(20000, [&page] { set(page, 0, "12.5"); });
}

}  // namespace

void takePicture(Shell& shell, InstrumentPage& page, const QString& scene, const QString& file) {
  const auto& surface = page.instrument().load().surface();
  int wait = kSettle;
  if (scene == "connect") {
    page.instrument().load().ShowConnect();
  } else {
    page.connectNow();
    hand::select(surface.get<toolkit::ComboBox>("cmbChannel"), kChannel);
    set(page, 0, "12.5");
  }
  if (scene == "load" || scene == "trace") {
    stepLoad(page);
    page.curves().follow(std::chrono::minutes(1));
    wait = kReadFor;
  } else if (scene == "discharge") {
    page.showPart(InstrumentPage::Part::Discharge);
    QTimer::singleShot(kReadBeforeDischarge, &page, [&page] {
      page.instrument().discharge().start({.voltsBelow = 10.5, .ampereHours = 0.1});
    });
    wait = kReadFor;
  } else if (scene == "groups") {
    hand::click(surface.get<toolkit::CommandButton>("cmdParalle"));
  }
  if (scene == "trace") {
    page.showPart(InstrumentPage::Part::Wire);
  }
  QTimer::singleShot(wait, &shell, [&shell, file] {
    const bool saved = shell.grab().save(file);
    if (!saved) {
      (void)std::fprintf(stderr, "zanpanel: cannot write %s\n", qPrintable(file));
    }
    QApplication::exit(saved ? 0 : 1);
  });
}

}  // namespace zanpanel
