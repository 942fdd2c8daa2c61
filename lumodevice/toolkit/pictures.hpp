#pragma once

#include <memory>
#include <utility>

#include "lumodevice/export.hpp"
#include "lumodevice/toolkit/control.hpp"
#include "lumodevice/toolkit/event.hpp"
#include "lumodevice/toolkit/picture.hpp"

namespace lumodevice::toolkit {

/// The picture that picture boxes and images show. Controls share pictures; a shared one is never
/// changed.
class LUMODEVICE_API Pictured : public Control {
 public:
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
  Event<> click{*this};

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
