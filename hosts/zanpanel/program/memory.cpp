#include "hosts/zanpanel/program/memory.hpp"

namespace zanpanel {

namespace {

constexpr const char* kWindow = "window/place";
constexpr const char* kArrangement = "window/arrangement";
constexpr const char* kPalette = "window/palette";
constexpr const char* kOperated = "instruments/operated";

}  // namespace

Memory::Memory(bool forgetful)
    : settings_(forgetful ? nullptr : std::make_unique<QSettings>("LumoDevice", "zanpanel")),
      operated_(value(kOperated).toStringList()) {}

QVariant Memory::value(const char* key) const {
  return settings_ ? settings_->value(key) : QVariant();
}

void Memory::set(const char* key, const QVariant& value) {
  if (settings_) {
    settings_->setValue(key, value);
  }
}

QByteArray Memory::windowPlace() const {
  return value(kWindow).toByteArray();
}
void Memory::rememberWindowPlace(const QByteArray& place) {
  set(kWindow, place);
}

QByteArray Memory::arrangement() const {
  return value(kArrangement).toByteArray();
}
void Memory::rememberArrangement(const QByteArray& arrangement) {
  set(kArrangement, arrangement);
}

QString Memory::palette() const {
  return value(kPalette).toString();
}
void Memory::rememberPalette(const QString& palette) {
  set(kPalette, palette);
}

bool Memory::operated(const QString& instrument) const {
  return !instrument.isEmpty() && operated_.contains(instrument);
}

void Memory::rememberOperated(const QString& instrument) {
  if (!instrument.isEmpty() && !operated_.contains(instrument)) {
    operated_ << instrument;
    set(kOperated, operated_);
  }
}

}  // namespace zanpanel
