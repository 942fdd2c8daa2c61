#pragma once

#include <string_view>

#include "lumodevice/form/command_texts.hpp"
#include "lumodevice/toolkit/control.hpp"

/// What the rows of the panel's form say. The rows themselves stand in control_rows.hpp: every
/// control with its kind, place, look and starting state. A view draws from them by way of the
/// controls made from them; a new control is one row.
namespace lumodevice::form {

/// No position in a control array.
inline constexpr int kSingle = -1;
inline constexpr char kNoLetter = '\0';

/// Where the five mode frames stand; the chosen one is put back there. Twips.
inline constexpr toolkit::Place kModeFramePlace{120, 3000, 4800, 3600};

/// Starting states other than enabled, visible and off.
enum class Start : unsigned { Plain = 0, Disabled = 1, Hidden = 2, On = 4 };
[[nodiscard]] constexpr Start operator|(Start a, Start b) {
  return static_cast<Start>(static_cast<unsigned>(a) | static_cast<unsigned>(b));
}
[[nodiscard]] constexpr bool has(Start all, Start one) {
  return (static_cast<unsigned>(all) & static_cast<unsigned>(one)) != 0;
}

/// What most controls have nothing special of.
struct Details {
  Start start = Start::Plain;
  /// Of a timer, in milliseconds.
  int interval = 0;
  /// Of a combo box, separated by "|".
  std::string_view items = {};
  /// The tool tip; where there is none, it is the control's command.
  std::string_view tip = {};
  /// What a screen reader says; where there is none, it is the caption, and that of the control
  /// before it where it has none itself.
  std::string_view name = {};
  /// The letter of the caption (the first such) that goes to the control with Alt. What can be
  /// seen together has different ones.
  char mnemonic = kNoLetter;
  int fontSize = 0;
  bool bold = false;
  toolkit::Alignment alignment = toolkit::Alignment::Left;
  toolkit::ColorRole colorRole = toolkit::ColorRole::Normal;
  toolkit::ComboStyle comboStyle = toolkit::ComboStyle::Editable;
  /// See toolkit::Look.
  bool typedWhole = false;
  std::string_view enterClicks = {};
};

/// One control. Rows stand in the order of the Tab key, which is the z-order, too: a container,
/// then all that sits in it.
struct ControlRow {
  std::string_view name;
  /// Position in the control array, or kSingle.
  int index;
  toolkit::Kind kind;
  /// Name of the form or frame that it sits in; "" for the form itself.
  std::string_view container;
  /// Caption, or text of a text or combo box.
  std::string_view text;
  /// Named by the control's tag; "" for none.
  Command command;
  /// Twips, relative to the container.
  toolkit::Place place;
  Details details = {};
};

/// One value box with its Set button and the label beside it.
struct SettingRow {
  /// Of txtInput, cmdSet and (where there is a caption) lblInput.
  int index;
  std::string_view frame;
  /// With the unit that the instrument takes; "" for no label of its own.
  std::string_view caption;
  /// Of the label, as in Details.
  char mnemonic;
  /// What Set sends, with the value behind it.
  Command command;
  /// Row within the frame, from 0.
  int row;
  /// The check box that it stands beside and follows in the order of the Tab key; without one it
  /// comes first in its frame.
  std::string_view beside = {};
};

}  // namespace lumodevice::form
