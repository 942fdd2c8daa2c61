#include "lumodevice/toolkit/surface.hpp"

#include <exception>
#include <stdexcept>

namespace lumodevice::toolkit {

namespace {

constexpr int kNoIndex = -1;

}  // namespace

Control* Surface::find(std::string_view name, std::optional<int> index) const {
  const auto found = byName_.find(std::pair<std::string_view, int>(name, index.value_or(kNoIndex)));
  return found == byName_.end() ? nullptr : found->second;
}

void Surface::attach(View& view) {
  const auto place = std::find(views_.begin(), views_.end(), kNobody);
  if (place == views_.end()) {
    views_.push_back(&view);
  } else {
    *place = &view;
  }
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
  std::exception_ptr thrown;
  std::size_t next = 0;
  while (next < views_.size()) {  // a view may attach another one
    View* const view = views_[next++];
    try {
      if (view != kNobody) {
        view->changed(control, property, item);
      }
    } catch (...) {
      thrown = thrown ? thrown : std::current_exception();
    }
  }
  if (thrown) {
    std::rethrow_exception(thrown);
  }
}

}  // namespace lumodevice::toolkit
