#pragma once

#include <algorithm>
#include <array>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "lumodevice/export.hpp"
#include "lumodevice/toolkit/control.hpp"
#include "lumodevice/toolkit/observers.hpp"

namespace lumodevice::toolkit {

/// Watches the controls of a surface: a window, a terminal, a test. A view may read any control
/// when it is told of something and detach itself or others, but must neither change a control nor
/// end what the surface is part of. When a view throws, the others are told all the same; then the
/// exception goes on, and the event is not raised. The Click of a check box is raised first: its
/// handler sees to it that what the box shows is true.
class LUMODEVICE_API View {
 public:
  virtual ~View() = default;

  /// The notification comes after the change and before the event that the change raises; `item` is
  /// the index of the item that was inserted or removed, else -1.
  virtual void changed(const Control& control, Property property, int item) = 0;

  /// An operator's act on the control is over, whatever came of it: it may have been refused, have
  /// changed nothing, or its handler has set the control back. A widget that shows what the
  /// operator meant shows what the control holds once it has drawn this property anew, as it does
  /// for a change; so a window leaves this as it is, and who records changes has it do nothing.
  virtual void confirmed(const Control& control, Property property) {
    changed(control, property, -1);
  }

  /// What the surface is part of has ended; the view is detached, and the surface and its controls
  /// go soon. Here, too, nothing of them is to be changed.
  virtual void ended() noexcept {}
};

/// Owns the controls of one form, in the order of their making, finds them by name and tells the
/// views what changed.
///
///     const auto& output = load.surface().get<TextBox>("txtVoltage", 0);
///     const Subscription watching = load.surface().observe(
///         [&](const Control& control, Property property, int) {
///           if (&control == &output && property == Property::Text) {
///             std::cout << output.text() << " V\n";
///           }
///         });
class LUMODEVICE_API Surface {
 public:
  using ChangeObserver = std::function<void(const Control& control, Property property, int item)>;

  Surface() = default;
  ~Surface() { retire(); }
  Surface(const Surface&) = delete;
  Surface& operator=(const Surface&) = delete;

  /// Makes a control of the given type. Names are unique (a control array: name and index
  /// together); throws std::logic_error otherwise.
  template <typename ControlType>
  ControlType& add(std::string name, std::optional<int> index = {},
                   Container* container = nullptr) {
    auto control = std::unique_ptr<ControlType>(new ControlType(
        {*this, ControlType::kKind, std::move(name), index, container, nextZOrder()}));
    ControlType& reference = *control;
    adopt(std::move(control));
    return reference;
  }

  /// The control of that name (and index), or null.
  [[nodiscard]] Control* find(std::string_view name, std::optional<int> index = {}) const;

  /// The control of that name and type; throws std::logic_error when there is none.
  template <typename ControlType>
  [[nodiscard]] ControlType& get(std::string_view name, std::optional<int> index = {}) const {
    auto* control = dynamic_cast<ControlType*>(find(name, index));
    if (control == nullptr) {
      missing(name, index);
    }
    return *control;
  }

  [[nodiscard]] const std::vector<std::unique_ptr<Control>>& controls() const { return controls_; }

  void attach(View& view);
  void detach(View& view) { std::replace(views_.begin(), views_.end(), &view, kNobody); }

  /// Attaches a view that is told of changes alone, under the same rules.
  [[nodiscard]] Subscription observe(ChangeObserver observer);

  /// What the surface is part of has ended: the views are told so and detached, and nobody is told
  /// of an event any more.
  void retire();
  /// Expires then, at the latest with the surface.
  [[nodiscard]] std::weak_ptr<void> life() const { return life_; }

  /// What lives until the last running handler of a control has returned, whoever else lets it go.
  /// Nothing at first: then the surface's owner has to see to that.
  void belongTo(std::weak_ptr<void> owner) { owner_ = std::move(owner); }
  /// Keeps it from going; null when there is nothing, or it goes already.
  [[nodiscard]] std::shared_ptr<void> hold() const { return owner_.lock(); }

 private:
  friend class Control;
  using Key = std::pair<std::string, int>;
  static constexpr View* kNobody = nullptr;
  struct Before {
    using is_transparent = void;
    bool operator()(const auto& left, const auto& right) const {
      return std::pair<std::string_view, int>(left) < std::pair<std::string_view, int>(right);
    }
  };

  void adopt(std::unique_ptr<Control> control);
  [[noreturn]] static void missing(std::string_view name, std::optional<int> index);
  void notify(const std::function<void(View&)>& tell) const;
  [[nodiscard]] int nextZOrder() { return ++lastZOrder_; }

  std::vector<std::unique_ptr<Control>> controls_;
  std::map<Key, Control*, Before> byName_;
  /// With kNobody in the places of those that left, perhaps while they were told of a change.
  std::vector<View*> views_;
  std::weak_ptr<void> owner_;
  std::shared_ptr<void> life_ = std::make_shared<char>();
  int lastZOrder_ = 0;
};

/// All elements of a control array, which has Count of them: 0 to Count - 1. Throws
/// std::logic_error where it has fewer or more.
template <typename ControlType, int Count>
class ControlArray {
 public:
  ControlArray(const Surface& surface, std::string_view name) {
    for (int i = 0; i < Count; ++i) {
      elements_[static_cast<std::size_t>(i)] = &surface.get<ControlType>(name, i);
    }
    if (surface.find(name, Count) != nullptr) {
      throw std::logic_error("more elements of " + std::string(name) + " than were reckoned with");
    }
  }
  [[nodiscard]] ControlType& operator()(int index) const {
    return *elements_.at(static_cast<std::size_t>(index));
  }
  [[nodiscard]] static constexpr int count() { return Count; }
  [[nodiscard]] auto begin() const { return elements_.begin(); }
  [[nodiscard]] auto end() const { return elements_.end(); }

 private:
  std::array<ControlType*, Count> elements_{};
};

}  // namespace lumodevice::toolkit
