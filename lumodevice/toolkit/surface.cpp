#include "lumodevice/toolkit/surface.hpp"

#include <memory>
#include <stdexcept>

namespace lumodevice::toolkit {

namespace {

constexpr int kNoIndex = -1;

/// The view behind a subscription to changes; it may be let go within its own call.
class ObservingView : public View, public std::enable_shared_from_this<ObservingView> {
 public:
  ObservingView(Surface& surface, Surface::ChangeObserver observer)
      : surface_(&surface), observer_(std::move(observer)) {}
  ~ObservingView() override {
    if (surface_ != nullptr) {
      surface_->detach(*this);
    }
  }
  ObservingView(const ObservingView&) = delete;
  ObservingView& operator=(const ObservingView&) = delete;

  void changed(const Control& control, Property property, int item) override {
    const auto held = shared_from_this();
    observer_(control, property, item);
  }
  void confirmed(const Control& /*control*/, Property /*property*/) override {}
  void ended() noexcept override { surface_ = nullptr; }

 private:
  Surface* surface_;
  Surface::ChangeObserver observer_;
};

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

void Surface::notify(const std::function<void(View&)>& tell) const {
  EveryStep steps;
  std::size_t next = 0;
  while (next < views_.size()) {  // a view may attach another one
    View* const view = views_[next++];
    if (view != kNobody) {
      steps.take([&] { tell(*view); });
    }
  }
  steps.finish();
}

Subscription Surface::observe(ChangeObserver observer) {
  auto view = std::make_shared<ObservingView>(*this, std::move(observer));
  attach(*view);
  return Subscription(std::move(view));
}

void Surface::retire() {
  life_.reset();
  for (View*& place : views_) {
    if (View* const view = std::exchange(place, kNobody); view != kNobody) {
      view->ended();
    }
  }
}

}  // namespace lumodevice::toolkit
