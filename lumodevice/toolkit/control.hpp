#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "lumodevice/text/fault.hpp"

namespace lumodevice::toolkit {

class Surface;
class Container;

enum class Kind {
  Form,
  Frame,
  Label,
  TextBox,
  ComboBox,
  ListBox,
  CheckBox,
  OptionButton,
  CommandButton,
  Timer,
  PictureBox,
  Image,
};

/// What can change about a control. The three Item... kinds carry the item's index with the
/// notification.
enum class Property {
  Text,
  Caption,
  Value,
  Enabled,
  Visible,
  Tag,
  ListIndex,
  ItemInserted,
  ItemRemoved,
  ItemsCleared,
  Interval,
  Place,
  MousePointer,
  OLEDropMode,
  ZOrder,
};

/// Left, top, width and height in twips (1440 to the inch, 15 to the pixel at 96 dpi), relative to
/// the container.
struct Place {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;
  friend bool operator==(const Place&, const Place&) = default;
};

/// A value that a property does not take (number 380), or a property that the control has not
/// (438).
class PropertyFault : public Fault {
 public:
  using Fault::Fault;
};

inline constexpr int kInvalidPropertyValue = 380;
inline constexpr int kNoSuchProperty = 438;

/// An event of a control: at most one handler, set by the subsystem that owns the event. Raising it
/// runs the handler at once, nested in whatever is running, to its end.
template <typename... Arguments>
class Event {
 public:
  void handle(std::function<void(Arguments...)> handler) { handler_ = std::move(handler); }
  [[nodiscard]] bool handled() const { return static_cast<bool>(handler_); }
  void raise(Arguments... arguments) const {
    if (handler_) {
      handler_(arguments...);
    }
  }

 private:
  std::function<void(Arguments...)> handler_;
};

/// What all controls have. Controls live in a Surface, which owns them, and are never copied or
/// moved. Setting a property to the value that it already has does nothing: no notification, no
/// event. A changed property is first shown to the surface's views, then its event (if any) is
/// raised.
class Control {
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
  /// Runs after `enabled` changed and was shown.
  virtual void enabledChanged() {}
  [[nodiscard]] Surface& surface() const { return surface_; }

 private:
  Surface& surface_;
  Kind kind_;
  std::string name_;
  std::optional<int> index_;
  Container* container_;
  int zOrder_;
  bool enabled_ = true;
  bool visible_ = true;
  std::string tag_;
  Place place_;
};

/// A control that others can sit in: the form or a frame.
class Container : public Control {
 protected:
  using Control::Control;
};

}  // namespace lumodevice::toolkit
