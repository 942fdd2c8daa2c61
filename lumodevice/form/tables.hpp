#pragma once

#include <span>
#include <string_view>

#include "lumodevice/toolkit/control.hpp"

/// The panel's form as data: every control with its kind, place and starting state. A view draws
/// from it by way of the controls made from it; a new control is one row here.
namespace lumodevice::form {

/// No position in a control array.
inline constexpr int kSingle = -1;

/// Where the five mode frames stand; the chosen one is put back there. Twips.
inline constexpr toolkit::Place kModeFramePlace{120, 3000, 5280, 3120};

/// One control. Rows stand in z-order, containers before what sits in them.
struct ControlRow {
  std::string_view name;
  /// Position in the control array, or kSingle.
  int index;
  toolkit::Kind kind;
  /// Name of the form or frame that it sits in; "" for the form itself.
  std::string_view container;
  /// Caption, or text of a text or combo box.
  std::string_view text;
  std::string_view tag;
  /// Twips, relative to the container.
  toolkit::Place place;
  /// Starting state: any of "disabled", "hidden", "on", and "interval=" milliseconds.
  std::string_view start = {};
  /// Items of a combo box, separated by "|".
  std::string_view items = {};
};

/// One value box with its Set button and the label beside it.
struct SettingRow {
  /// Of txtInput, cmdSet and (where there is a caption) lblInput.
  int index;
  std::string_view frame;
  /// With the unit that the instrument takes; "" for no label of its own.
  std::string_view caption;
  /// Position of the command prefix in the command table plus one.
  std::string_view tag;
  /// Row within the frame, from 0.
  int row;
};

[[nodiscard]] std::span<const ControlRow> controlRows();
[[nodiscard]] std::span<const SettingRow> settingRows();

}  // namespace lumodevice::form
