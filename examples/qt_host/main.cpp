// A Qt program of one's own with the panel on its window, beside what else the window has.

#include <QtWidgets/QApplication>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMainWindow>

#include "lumodevice/qt/form_view.hpp"
#include "lumodevice/qt/information_box.hpp"
#include "lumodevice/qt/qt_loop.hpp"
#include "lumodevice/simulated_host.hpp"
#include "lumodevice/zan_ctrl.hpp"

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QMainWindow window;
  auto* const bench = new QWidget(&window);
  auto* const row = new QHBoxLayout(bench);
  row->addWidget(new QLabel("My test bench"));

  lumodevice::qt::QtLoop loop;
  lumodevice::ZANCtrl load(lumodevice::simulatedHost(
      {.loop = &loop, .informationBox = lumodevice::qt::InformationBoxes(window)}));
  row->addWidget(new lumodevice::qt::FormView(load.surface()));

  window.setCentralWidget(bench);
  window.resize(window.sizeHint());
  window.show();
  return application.exec();
}
