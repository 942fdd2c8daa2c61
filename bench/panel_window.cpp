// The panel of a simulated instrument in a window. It ends when the window has been painted.
#include <QtWidgets/QVBoxLayout>

#include "bench/painted_once.hpp"
#include "lumodevice/qt/form_view.hpp"
#include "lumodevice/qt/information_box.hpp"
#include "lumodevice/qt/qt_loop.hpp"
#include "lumodevice/simulated_host.hpp"
#include "lumodevice/zan_ctrl.hpp"

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  bench::PaintedOnce window;
  lumodevice::qt::QtLoop loop;
  lumodevice::ZANCtrl load(lumodevice::simulatedHost(
      {.loop = &loop, .informationBox = lumodevice::qt::InformationBoxes(window)}));
  auto* const layout = new QVBoxLayout(&window);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(new lumodevice::qt::FormView(load.surface()));
  window.show();
  return QApplication::exec();
}
