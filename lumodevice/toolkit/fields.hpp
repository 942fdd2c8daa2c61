#pragma once

#include <string>
#include <string_view>

#include "lumodevice/export.hpp"
#include "lumodevice/toolkit/control.hpp"
#include "lumodevice/toolkit/event.hpp"

namespace lumodevice::toolkit {

/// Key codes that the fields know.
enum class Key { Enter = 13, Up = 38, Down = 40 };

/// Change when the text becomes another one; setting the text that it already holds raises none.
///
///     auto& waitUnit = load.surface().get<toolkit::TextBox>("Text5");
///     waitUnit.setText("100");  // milliseconds
class LUMODEVICE_API TextBox : public Control {
 public:
  static constexpr Kind kKind = Kind::TextBox;
  Event<> change{*this};
  Event<Key> keyDown{*this};
  [[nodiscard]] const std::string& text() const { return text_; }
  void setText(std::string_view text);
  void confirm() const override { confirmed(Property::Text); }

 protected:
  friend class Surface;
  using Control::Control;

 private:
  std::string text_;
};

}  // namespace lumodevice::toolkit
