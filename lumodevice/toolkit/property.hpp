#pragma once

#include "lumodevice/export.hpp"
#include "lumodevice/text/fault.hpp"

/// What controls are, what they have, and where.
///
///     const toolkit::Control& box = *load.surface().find("Text5");
///     const int pixels = box.place().width / 15;
///     const bool typedInto = box.kind() == toolkit::Kind::TextBox;
namespace lumodevice::toolkit {

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
  Look,
  MousePointer,
  OLEDropMode,
  Picture,
  Stretch,
  ZOrder,
};

/// Left, top, width and height in twips (1440 to the inch, 15 to the pixel at 96 dpi), relative to
/// the container.
struct LUMODEVICE_API Place {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;
  friend bool operator==(const Place&, const Place&) = default;
};

/// A value that a property does not take (number 380), or a property that the control has not
/// (438).
class LUMODEVICE_API PropertyFault : public Fault {
 public:
  using Fault::Fault;
};

inline constexpr int kInvalidPropertyValue = 380;
inline constexpr int kNoSuchProperty = 438;

}  // namespace lumodevice::toolkit
