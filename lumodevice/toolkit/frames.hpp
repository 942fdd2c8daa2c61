#pragma once

#include <string>
#include <string_view>

#include "lumodevice/export.hpp"
#include "lumodevice/toolkit/control.hpp"
#include "lumodevice/toolkit/event.hpp"

namespace lumodevice::toolkit {

/// The form itself: the container of all; its mouse pointer is the component's.
///
///     load.surface().get<toolkit::Form>("ZANCtrl").show.raise();  // the window has come into view
class LUMODEVICE_API Form : public Container {
 public:
  static constexpr Kind kKind = Kind::Form;
  /// The form comes into view; raised by what shows it.
  Event<> show{*this};
  /// 0 default, 1 arrow, 11 hourglass.
  [[nodiscard]] int mousePointer() const { return mousePointer_; }
  void setMousePointer(int pointer);

 protected:
  friend class Surface;
  using Container::Container;

 private:
  int mousePointer_ = 0;
};

/// The caption that frames, labels, buttons and boxes share.
template <typename Base>
class Captioned : public Base {
 public:
  [[nodiscard]] const std::string& caption() const { return caption_; }
  void setCaption(std::string_view caption) {
    if (caption_ != caption) {
      caption_ = caption;
      this->changed(Property::Caption);
    }
  }

 protected:
  using Base::Base;

 private:
  std::string caption_;
};

class LUMODEVICE_API Frame : public Captioned<Container> {
 public:
  static constexpr Kind kKind = Kind::Frame;

 protected:
  friend class Surface;
  using Captioned::Captioned;
};

}  // namespace lumodevice::toolkit
