#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "lumodevice/export.hpp"
#include "lumodevice/toolkit/look.hpp"
#include "lumodevice/toolkit/property.hpp"

namespace lumodevice::toolkit {

class Surface;
class Container;

/// What all controls have. Controls live in a Surface, which owns them, and are never copied or
/// moved. Setting a property to the value that it already has does nothing: no notification, no
/// event. A changed property is first shown to the surface's views, then its event (if any) is
/// raised.
///
///     for (const auto& control : load.surface().controls()) {
///       if (control->visible() && !control->usable()) {
///         std::cout << control->fullName() << " is shown and cannot be used\n";
///       }
///     }
class LUMODEVICE_API Control {
 public:
  virtual ~Control() = default;
  Control(const Control&) = delete;
  Control& operator=(const Control&) = delete;

  [[nodiscard]] Kind kind() const { return kind_; }
  /// The plain name; the elements of a control array share it.
  [[nodiscard]] const std::string& name() const { return name_; }
  /// The position in its control array; none for a control that stands alone.
  [[nodiscard]] std::optional<int> index() const { return index_; }
  /// "cmdSet(3)" for an element of a control array, else the plain name.
  [[nodiscard]] std::string fullName() const;
  /// The form or frame that it sits in; null for the form itself.
  [[nodiscard]] Container* container() const { return container_; }

  [[nodiscard]] bool enabled() const { return enabled_; }
  void setEnabled(bool enabled);
  /// Enabled together with all its containers: what an operator can use.
  [[nodiscard]] bool usable() const;
  [[nodiscard]] bool visible() const { return visible_; }
  void setVisible(bool visible);
  [[nodiscard]] const std::string& tag() const { return tag_; }
  void setTag(std::string_view tag);
  [[nodiscard]] const Place& place() const { return place_; }
  void setPlace(const Place& place);
  void moveTo(int left, int top);
  /// Higher is nearer to the front among the controls of one container.
  [[nodiscard]] int zOrder() const { return zOrder_; }
  void bringToFront();
  [[nodiscard]] const Look& look() const { return look_; }
  void setLook(const Look& look);
  /// Its position in the order in which the Tab key walks the form: that of making.
  [[nodiscard]] int tabIndex() const { return tabIndex_; }

  [[nodiscard]] Surface& surface() const { return surface_; }
  /// Keeps what the control is part of (see Surface::belongTo) from going.
  [[nodiscard]] std::shared_ptr<void> hold() const;
  /// Expires when what the control is part of ends, or the surface goes.
  [[nodiscard]] std::weak_ptr<void> life() const;

  /// Tells the views what the control holds of that which an operator's act would change (see
  /// View::confirmed). Done at the end of each act.
  virtual void confirm() const {}

 protected:
  struct Identity {
    Surface& surface;
    Kind kind;
    std::string name;
    std::optional<int> index;
    Container* container;
    int zOrder;
  };
  explicit Control(Identity identity);
  friend class Surface;

  void changed(Property property, int item = -1) const;
  void confirmed(Property property) const;
  /// Runs after `enabled` changed and was shown, also where a view threw.
  virtual void enabledChanged() {}

 private:
  Surface& surface_;
  Kind kind_;
  std::string name_;
  std::optional<int> index_;
  Container* container_;
  int zOrder_;
  int tabIndex_;
  bool enabled_ = true;
  bool visible_ = true;
  std::string tag_;
  Place place_;
  Look look_;
};

/// A control that others can sit in: the form or a frame.
class LUMODEVICE_API Container : public Control {
 protected:
  using Control::Control;
};

}  // namespace lumodevice::toolkit
