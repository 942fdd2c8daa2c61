// What the Qt window of the panel costs: the start to the first painted window against an empty
// one, the longest time without a repaint while the component waits, and a click on its way to the
// wire. Without a screen, so that no window system is measured along.
//
// Usage: view_bench EMPTY_WINDOW PANEL_WINDOW

#include <QtCore/QElapsedTimer>
#include <QtCore/QTimer>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QApplication>
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include "bench/table.hpp"
#include "lumodevice/io/forwarding_visa.hpp"
#include "lumodevice/io/visa_com_over_visa.hpp"
#include "lumodevice/qt/form_view.hpp"
#include "lumodevice/qt/qt_loop.hpp"
#include "lumodevice/simulated_host.hpp"
#include "lumodevice/toolkit/controls.hpp"
#include "lumodevice/toolkit/hand.hpp"
#include "lumodevice/zan_ctrl.hpp"

namespace {

using Clock = std::chrono::steady_clock;
using namespace lumodevice;

struct Cost {
  double milliseconds;
  double megabytes;
};

Cost run(const char* program) {
  const auto begin = Clock::now();
  const pid_t child = vfork();
  if (child == 0) {
    execl(program, program, static_cast<char*>(nullptr));
    _exit(127);
  }
  int status = 0;
  rusage usage{};
  wait4(child, &status, 0, &usage);
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
    std::fprintf(stderr, "view_bench: %s ended with status %d\n", program, status);
    _exit(1);
  }
  return {std::chrono::duration<double, std::milli>(Clock::now() - begin).count(),
          static_cast<double>(usage.ru_maxrss) / 1024};
}

void start(const char* empty, const char* panel) {
  constexpr int kRuns = 40;
  std::vector<double> emptyTimes;
  std::vector<double> panelTimes;
  Cost emptyMost{};
  Cost panelMost{};
  for (int i = 0; i < kRuns; ++i) {
    const Cost emptyCost = run(empty);
    const Cost panelCost = run(panel);
    emptyTimes.push_back(emptyCost.milliseconds);
    panelTimes.push_back(panelCost.milliseconds);
    emptyMost.megabytes = std::max(emptyMost.megabytes, emptyCost.megabytes);
    panelMost.megabytes = std::max(panelMost.megabytes, panelCost.megabytes);
  }
  bench::printHead("ms");
  bench::printRatio("start to the first painted window, the panel", bench::median(panelTimes),
                    bench::median(emptyTimes), 2);
  bench::printHead("MB");
  bench::printRatio("the same, peak memory", panelMost.megabytes, emptyMost.megabytes,
                    (emptyMost.megabytes + 30) / emptyMost.megabytes);
}

/// Wants to be painted anew all the time.
class Restless : public QWidget {
 public:
  explicit Restless(QWidget& parent) : QWidget(&parent) {
    beat_.callOnTimeout([this] { update(); });
    beat_.start(5);
    resize(20, 20);
    show();
  }
  double longestGap = 0;

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    if (since_.isValid()) {
      longestGap = std::max(longestGap, static_cast<double>(since_.nsecsElapsed()) / 1e6);
    }
    since_.start();
  }

 private:
  QTimer beat_;
  QElapsedTimer since_;
};

void repaint() {
  qt::QtLoop loop;
  ZANCtrl load(simulatedHost({.loop = &loop, .latencies = {"150-1600,seed=3"}}));
  qt::FormView view(load.surface());
  view.show();
  QApplication::processEvents();
  Restless restless(view);
  QApplication::processEvents();
  load.AutoConnect();
  for (int i = 0; i < 4; ++i) {
    load.SendCmd(":FETC:VOLT?");
  }
  bench::printHead("ms");
  bench::printRatio("longest time without a repaint, connect and late answers", restless.longestGap,
                    50, 1);
}

/// Knows when the first command went out since it was asked.
class Witness : public io::ForwardingVisa {
 public:
  explicit Witness(io::Visa& below) : below_(below) {}
  ViStatus viWrite(ViSession instrument, std::string_view data, std::uint32_t& count) override {
    if (!at) {
      at = Clock::now();
    }
    return ForwardingVisa::viWrite(instrument, data, count);
  }
  std::optional<Clock::time_point> at;

 protected:
  io::Visa& target() override { return below_; }

 private:
  io::Visa& below_;
};

void click() {
  qt::QtLoop loop;
  const Host host = simulatedHost({.loop = &loop});
  Witness visa(host.visa);
  io::VisaComOverVisa visaCom(visa);
  ZANCtrl load({.loop = loop,
                .visa = visa,
                .visaCom = visaCom,
                .serialDevices = host.serialDevices,
                .drive = host.drive,
                .wallClock = host.wallClock,
                .informationBox = host.informationBox,
                .exchanges = host.exchanges,
                .owned = host.owned});
  load.AutoConnect();
  load.ShowControl();
  qt::FormView view(load.surface());
  view.show();
  QApplication::processEvents();
  auto& box = load.surface().get<toolkit::CheckBox>("chkOCP");
  QWidget& widget = *view.widgetOf(box);
  const auto since = [&visa](Clock::time_point begin) {
    return std::chrono::duration<double, std::milli>(visa.at.value() - begin).count();
  };
  std::vector<double> byWidget;
  std::vector<double> byHand;
  for (int i = 0; i < 40; ++i) {
    visa.at.reset();
    auto begin = Clock::now();
    for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
      const QPointF at(8, 12);
      QMouseEvent event(type, at, widget.mapToGlobal(at), Qt::LeftButton,
                        type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton,
                        Qt::NoModifier);
      QApplication::sendEvent(&widget, &event);
    }
    QApplication::processEvents();
    byWidget.push_back(since(begin));
    visa.at.reset();
    begin = Clock::now();
    toolkit::hand::click(box);
    byHand.push_back(since(begin));
  }
  const double hand = bench::median(byHand);
  bench::printHead("ms");
  bench::printRatio("click on a widget to the bytes on the wire", bench::median(byWidget), hand,
                    (hand + 2) / hand);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fputs("usage: view_bench EMPTY_WINDOW PANEL_WINDOW\n", stderr);
    return 2;
  }
  qputenv("QT_QPA_PLATFORM", "offscreen");
  start(argv[1], argv[2]);
  const QApplication application(argc, argv);
  repaint();
  click();
  return 0;
}
