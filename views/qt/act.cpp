#include "views/qt/act.hpp"

namespace lumodevice::qt {

HeldActs::HeldActs() {
  QCoreApplication::instance()->installEventFilter(this);
}

HeldActs::~HeldActs() {
  for (auto& [receiver, deed] : held_) {
    if (receiver) {
      Act::post(*receiver, std::move(deed));
    }
  }
}

bool HeldActs::eventFilter(QObject* receiver, QEvent* event) {
  if (event->type() != Act::kind()) {
    return false;
  }
  held_.emplace_back(receiver, static_cast<Act*>(event)->take());
  return true;
}

}  // namespace lumodevice::qt
