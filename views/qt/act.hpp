#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <functional>
#include <utility>
#include <vector>

#include "lumodevice/qt/failure.hpp"

namespace lumodevice::qt {

/// An operator's act on its way from the widget to the control. It is posted, so that no function
/// of a widget is on the stack when the control's handler runs: the handler may wait, and the view
/// may go meanwhile.
class Act : public QEvent {
 public:
  using Deed = std::function<void()>;

  explicit Act(Deed deed) : QEvent(kind()), deed_(std::move(deed)) {}

  [[nodiscard]] static QEvent::Type kind() {
    static const auto registered = static_cast<QEvent::Type>(QEvent::registerEventType());
    return registered;
  }
  static void post(QObject& receiver, Deed deed) {
    QCoreApplication::postEvent(&receiver, new Act(std::move(deed)));
  }

  /// For the receiver, which may be gone when it returns.
  void run(const FailureHandler& onFailure) {
    try {
      deed_();
    } catch (...) {
      onFailure(std::current_exception());
    }
  }
  [[nodiscard]] Deed take() { return std::exchange(deed_, nullptr); }

 private:
  Deed deed_;
};

/// While there is one, no act of the program's forms runs; at its end they are on their way again,
/// in the order in which they came.
class HeldActs : private QObject {
 public:
  HeldActs();
  ~HeldActs() override;

 protected:
  bool eventFilter(QObject* receiver, QEvent* event) override;

 private:
  std::vector<std::pair<QPointer<QObject>, Act::Deed>> held_;
};

}  // namespace lumodevice::qt
