#pragma once

#include <span>
#include <string_view>

#include "lumodevice/toolkit/control.hpp"

/// The panel's form as data: every control with its kind, place and starting state. A view draws
/// from it by way of the controls made from it; a new control is one row here.
namespace lumodevice::form {

/// No position in a control array.
inline constexpr int kSingle = -1;

/// One control. Rows stand in z-order, containers before what sits in them.
struct ControlRow {
  std::string_view name;
  int index;  ///< position in the control array, or kSingle
  toolkit::Kind kind;
  std::string_view
      container;          ///< name of the form or frame that it sits in; "" for the form itself
  std::string_view text;  ///< caption, or text of a text or combo box
  std::string_view tag;
  toolkit::Place place;  ///< twips, relative to the container
  std::string_view start =
      "";  ///< starting state: any of "disabled", "hidden", "on", and "interval=" ms
  std::string_view items = "";  ///< items of a combo box, separated by "|"
};

/// One value box with its Set button and the label beside it.
struct SettingRow {
  int index;  ///< of txtInput, cmdSet and (where there is a caption) lblInput
  std::string_view frame;
  std::string_view
      caption;           ///< with the unit that the instrument takes; "" for no label of its own
  std::string_view tag;  ///< position of the command prefix in the command table plus one
  int row;               ///< row within the frame, from 0
};

[[nodiscard]] std::span<const ControlRow> controlRows();
[[nodiscard]] std::span<const SettingRow> settingRows();

}  // namespace lumodevice::form
