#include "lumodevice/qt/failure.hpp"

#include <QtCore/QtGlobal>

namespace lumodevice::qt {

void reportFailure(const std::exception_ptr& failure) noexcept {
  try {
    std::rethrow_exception(failure);
  } catch (const std::exception& exception) {
    qCritical("lumodevice: a handler failed: %s", exception.what());
  } catch (...) {
    qCritical("lumodevice: a handler failed");
  }
}

}  // namespace lumodevice::qt
