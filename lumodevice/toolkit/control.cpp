#include "lumodevice/toolkit/control.hpp"

#include "lumodevice/toolkit/surface.hpp"

namespace lumodevice::toolkit {

Control::Control(Identity identity)
    : surface_(identity.surface),
      kind_(identity.kind),
      name_(std::move(identity.name)),
      index_(identity.index),
      container_(identity.container),
      zOrder_(identity.zOrder),
      tabIndex_(static_cast<int>(surface_.controls().size())) {}

std::string Control::fullName() const {
  return index_ ? name_ + "(" + std::to_string(*index_) + ")" : name_;
}

void Control::setEnabled(bool enabled) {
  if (enabled_ != enabled) {
    enabled_ = enabled;
    EveryStep steps;
    steps.take([&] { changed(Property::Enabled); });
    steps.take([&] { enabledChanged(); });
    steps.finish();
  }
}

bool Control::usable() const {
  return enabled_ && (container_ == nullptr || container_->usable());
}

void Control::setVisible(bool visible) {
  if (visible_ != visible) {
    visible_ = visible;
    changed(Property::Visible);
  }
}

void Control::setTag(std::string_view tag) {
  if (tag_ != tag) {
    tag_ = tag;
    changed(Property::Tag);
  }
}

void Control::setPlace(const Place& place) {
  if (place_ != place) {
    place_ = place;
    changed(Property::Place);
  }
}

void Control::setLook(const Look& look) {
  if (look_ != look) {
    look_ = look;
    changed(Property::Look);
  }
}

void Control::moveTo(int left, int top) {
  setPlace({left, top, place_.width, place_.height});
}

void Control::bringToFront() {
  zOrder_ = surface_.nextZOrder();
  changed(Property::ZOrder);
}

std::shared_ptr<void> Control::hold() const {
  return surface_.hold();
}

std::weak_ptr<void> Control::life() const {
  return surface_.life();
}

void Control::changed(Property property, int item) const {
  surface_.notify([this, property, item](View& view) { view.changed(*this, property, item); });
}

void Control::confirmed(Property property) const {
  surface_.notify([this, property](View& view) { view.confirmed(*this, property); });
}

}  // namespace lumodevice::toolkit
