#pragma once

#include "lumodevice/toolkit/control.hpp"

namespace lumodevice::toolkit {

class PictureBox : public Control {
 public:
  static constexpr Kind kKind = Kind::PictureBox;
  Event<> click;

 protected:
  friend class Surface;
  using Control::Control;
};

class Image : public Control {
 public:
  static constexpr Kind kKind = Kind::Image;

 protected:
  friend class Surface;
  using Control::Control;
};

}  // namespace lumodevice::toolkit
