// The least that a Qt program with a window costs: the limit that the panel's window is measured
// against. It ends when the window has been painted.
#include "bench/painted_once.hpp"

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  bench::PaintedOnce window;
  window.show();
  return QApplication::exec();
}
