#pragma once

#include <cstdint>
#include <memory>
#include <utility>

#include "lumodevice/export.hpp"
#include "lumodevice/toolkit/control.hpp"
#include "lumodevice/toolkit/event.hpp"
#include "lumodevice/toolkit/picture.hpp"

namespace lumodevice::toolkit {

/// Where a picture was pressed, in twips from the control's upper left corner, and with what.
struct LUMODEVICE_API MousePress {
  enum Button : std::int16_t { kLeft = 1, kRight = 2, kMiddle = 4 };
  enum Key : std::int16_t { kShift = 1, kControl = 2, kAlt = 4 };
  std::int16_t button = kLeft;
  /// The sum of the keys held.
  std::int16_t shift = 0;
  float x = 0;
  float y = 0;
};

/// The picture that picture boxes and images show. Controls share pictures; a shared one is never
/// changed.
///
/// A host that shows the instrument's front panel presses its keys so:
///
///     const Subscription keys = picture.mouseDown.observe([&](const MousePress& press) {
///       load.PressKeyAt(press.button, press.shift, press.x, press.y);
///     });
class LUMODEVICE_API Pictured : public Control {
 public:
  /// The mouse goes down on the picture. Where it also goes up there, a Click follows.
  Event<const MousePress&> mouseDown{*this};
  Event<> click{*this};
  /// Null for none.
  [[nodiscard]] const std::shared_ptr<const Picture>& picture() const { return picture_; }
  void setPicture(std::shared_ptr<const Picture> picture) {
    if (picture_ != picture) {
      picture_ = std::move(picture);
      changed(Property::Picture);
    }
  }

 protected:
  using Control::Control;

 private:
  std::shared_ptr<const Picture> picture_;
};

class LUMODEVICE_API PictureBox : public Pictured {
 public:
  static constexpr Kind kKind = Kind::PictureBox;

 protected:
  friend class Surface;
  using Pictured::Pictured;
};

class LUMODEVICE_API Image : public Pictured {
 public:
  static constexpr Kind kKind = Kind::Image;
  /// The picture fills the control instead of keeping its own size.
  [[nodiscard]] bool stretch() const { return stretch_; }
  void setStretch(bool stretch) {
    if (stretch_ != stretch) {
      stretch_ = stretch;
      changed(Property::Stretch);
    }
  }

 protected:
  friend class Surface;
  using Pictured::Pictured;

 private:
  bool stretch_ = false;
};

}  // namespace lumodevice::toolkit
