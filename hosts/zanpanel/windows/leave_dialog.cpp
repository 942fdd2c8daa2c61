#include "hosts/zanpanel/windows/leave_dialog.hpp"

#include <QtCore/QCoreApplication>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>

namespace zanpanel {

namespace {

QString tr(const char* text) {
  return QCoreApplication::translate("Leaving", text);
}

}  // namespace

Leaving askAboutLoad(QWidget* over, const QString& channel, bool discharging) {
  QMessageBox box(over);
  box.setObjectName("leaving");
  box.setIcon(QMessageBox::Warning);
  box.setWindowTitle(tr("The load is on"));
  box.setText(tr("The load of %1 is on.").arg(channel));
  QString text =
      tr("Leave on: the window closes, and the load goes on drawing current with "
         "nobody watching.\n"
         "Switch off: the load is switched off, that is confirmed, then the window "
         "closes.\n"
         "Stay: nothing happens.");
  if (discharging) {
    text = tr("A discharge is running. Its stop conditions are watched by this window "
              "alone.\n\n") +
           text;
  }
  box.setInformativeText(text);
  QPushButton* const on = box.addButton(tr("&Leave on"), QMessageBox::DestructiveRole);
  QPushButton* const off = box.addButton(tr("Switch &off"), QMessageBox::AcceptRole);
  QPushButton* const stay = box.addButton(tr("&Stay"), QMessageBox::RejectRole);
  on->setObjectName("leaveOn");
  off->setObjectName("switchOff");
  stay->setObjectName("stay");
  box.setDefaultButton(off);
  box.setEscapeButton(stay);
  box.exec();
  return box.clickedButton() == on    ? Leaving::LeaveOn
         : box.clickedButton() == off ? Leaving::SwitchOff
                                      : Leaving::Stay;
}

}  // namespace zanpanel
