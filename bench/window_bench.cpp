// The window beside an empty one of the same size with timers of the same intervals, in the same
// process: first the empty one is measured, then the window.

#include <QtCore/QElapsedTimer>
#include <QtCore/QTimer>
#include <QtWidgets/QApplication>
#include <QtWidgets/QStyleFactory>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <sys/resource.h>
#include <unistd.h>

#include "bench/table.hpp"
#include "hosts/zanpanel/curves/curve_view.hpp"
#include "hosts/zanpanel/program/memory.hpp"
#include "hosts/zanpanel/windows/instrument_page.hpp"
#include "lumodevice/toolkit/controls.hpp"
#include "lumodevice/toolkit/hand.hpp"

namespace {

namespace hand = lumodevice::toolkit::hand;
using lumodevice::toolkit::ComboBox;

constexpr QSize kSize{1360, 860};
constexpr int kIdleSeconds = 30;
constexpr int kDay = 24 * 3600 * 5;  // readings
constexpr int kRedraws = 40;

double megabytes() {
  std::ifstream status("/proc/self/statm");
  long pages = 0;
  long resident = 0;
  status >> pages >> resident;
  return static_cast<double>(resident) * static_cast<double>(::sysconf(_SC_PAGESIZE)) / 1e6;
}

double processorSeconds() {
  rusage usage{};
  (void)::getrusage(RUSAGE_SELF, &usage);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

void run(int milliseconds) {
  QEventLoop loop;
  QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
  loop.exec();
}

/// Percent of a core.
double idle() {
  const double before = processorSeconds();
  run(kIdleSeconds * 1000);
  return (processorSeconds() - before) / kIdleSeconds * 100;
}

/// A day of five readings a second of each quantity, the last one now.
void fillDay(zanpanel::Monitor& monitor) {
  zanpanel::ChannelRecord& record = *monitor.current();
  for (int i = 0; i < kDay; ++i) {
    const zanpanel::Moment at = monitor.now() + std::chrono::milliseconds(200) * i;
    const double wave = std::sin(i * 0.0001) + (i % 101 * 7919 % 101) * 0.001;
    record.volts.add(at, 12 + wave);
    record.amperes.add(at, 5 + wave);
    record.watts.add(at, 60 + wave);
  }
}

}  // namespace

int main(int count, char** words) {
  if (qEnvironmentVariableIsEmpty("DISPLAY")) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
  }
  const QApplication program(count, words);
  QApplication::setStyle(QStyleFactory::create("Fusion"));

  double emptyIdle = 0;
  double emptyMemory = 0;
  {
    QWidget empty;
    empty.resize(kSize);
    QTimer poll;
    QTimer query;
    poll.start(35);
    query.start(200);
    empty.show();
    run(1000);
    emptyMemory = megabytes();
    emptyIdle = idle();
  }

  zanpanel::Memory memory(true);
  zanpanel::InstrumentPage page({.simulate = true, .driveC = "/tmp/zanpanel_bench"}, memory);
  page.resize(kSize);
  page.show();
  page.connectNow();
  hand::select(page.instrument().load().surface().get<ComboBox>("cmbChannel"), 2);
  run(3000);
  const double windowIdle = idle();
  const double windowMemory = megabytes();
  fillDay(page.instrument().monitor());
  zanpanel::CurveView& curves = page.curves();
  const zanpanel::Moment now = page.instrument().monitor().now();
  curves.showSpan(now, now + std::chrono::hours(24));
  run(200);
  std::vector<double> redraws;
  for (int i = 0; i < kRedraws; ++i) {
    QElapsedTimer timer;
    timer.start();
    curves.drawNow();
    redraws.push_back(static_cast<double>(timer.nsecsElapsed()) * 1e-6);
  }
  const double dayMemory = megabytes();

  bench::printHead("% core");
  bench::printRatio("window, auto query at 200 ms, curves shown", windowIdle, emptyIdle,
                    2.0 / emptyIdle);
  bench::printHead("MB");
  bench::printRatio("window, connected and reading", windowMemory, emptyMemory,
                    (emptyMemory + 30) / emptyMemory);
  bench::printRatio("the same with a day of 5 readings a second", dayMemory, emptyMemory,
                    (emptyMemory + 30) / emptyMemory);
  bench::printHead("ms");
  bench::printRatio("redraw of a day of three curves", bench::median(redraws), 10, 1);
  (void)std::fflush(stdout);
  page.retire();
  return 0;
}
