#pragma once

#include <string>

#include "lumodevice/export.hpp"

namespace lumodevice::toolkit {

/// The numbers are those that forms customarily have for it.
enum class Alignment { Left = 0, Right = 1, Center = 2 };

/// What a colour says. Which colour says it is the face's palette's business.
enum class ColorRole {
  Normal,
  Heading,
  Value,    ///< a reading of the instrument
  Warning,  ///< must not be overlooked
  Hint,     ///< says how something is done
};

/// The numbers are those that forms customarily have for it.
enum class ComboStyle {
  Editable = 0,
  DropDownList = 2,  ///< not typed into; shows the text that code gave it, entry or not
};

inline constexpr int kNoMnemonic = -1;

/// How a control is drawn, and how keyboards and screen readers find it. Nothing here changes what
/// the control does.
///
///     const toolkit::Look& look = load.surface().find("txtVoltage", 0)->look();
///     const bool inBold = look.bold && look.colorRole == toolkit::ColorRole::Value;
struct LUMODEVICE_API Look {
  /// Points; 0 is the face's ordinary size.
  int fontSize = 0;
  bool bold = false;
  Alignment alignment = Alignment::Left;
  ColorRole colorRole = ColorRole::Normal;
  /// Of a combo box.
  ComboStyle comboStyle = ComboStyle::Editable;
  /// Which byte of the caption is the letter that, pressed with Alt, goes to the control: of a
  /// label or frame, to the next one in the tab order that takes the keyboard.
  int mnemonic = kNoMnemonic;
  std::string toolTip = {};
  /// What a screen reader calls it, without the colon of a label.
  std::string accessibleName = {};
  /// Of a text box: what is typed goes to the control when it is complete (the Enter key, or the
  /// field is left), not with each letter.
  bool typedWhole = false;
  /// Of a text or combo box: the full name of the button that the Enter key clicks as well.
  std::string enterClicks = {};
  friend bool operator==(const Look&, const Look&) = default;
};

}  // namespace lumodevice::toolkit
