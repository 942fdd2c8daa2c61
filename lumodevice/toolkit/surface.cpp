#include "lumodevice/toolkit/surface.hpp"

#include <stdexcept>

namespace lumodevice::toolkit {

namespace {

constexpr int kNoIndex = -1;

}  // namespace

Control* Surface::find(std::string_view name, std::optional<int> index) const {
  const auto found = byName_.find(std::pair<std::string_view, int>(name, index.value_or(kNoIndex)));
  return found == byName_.end() ? nullptr : found->second;
}

void Surface::adopt(std::unique_ptr<Control> control) {
  const Key key(control->name(), control->index().value_or(kNoIndex));
  if (!byName_.emplace(key, control.get()).second) {
    throw std::logic_error("two controls are named " + control->fullName());
  }
  controls_.push_back(std::move(control));
}

void Surface::missing(std::string_view name, std::optional<int> index) {
  throw std::logic_error("no control of this kind is named " + std::string(name) +
                         (index ? "(" + std::to_string(*index) + ")" : ""));
}

void Surface::notify(const Control& control, Property property, int item) const {
  for (View* view : views_) {
    view->changed(control, property, item);
  }
}

}  // namespace lumodevice::toolkit
