#pragma once

#include <string_view>

#include "lumodevice/export.hpp"
#include "lumodevice/toolkit/controls.hpp"

/// The acts of an operator. A control takes them only while it is enabled together with all its
/// containers; otherwise the act returns false and nothing happened. An act that the kind of
/// control does not know throws PropertyFault(438). Whether the control is visible is not looked
/// at.
namespace lumodevice::toolkit::hand {

/// A button fires, a check box flips (greyed becomes clear), an option is chosen, the selected
/// entry of a list is clicked again, a picture or label is clicked.
LUMODEVICE_API bool click(Control& control);

/// Replaces the text of a text or combo box.
LUMODEVICE_API bool type(Control& control, std::string_view text);

/// Picks the entry of a combo or list box. Throws PropertyFault(380) for an index that holds no
/// entry.
LUMODEVICE_API bool select(Control& control, int index);

/// Presses a key in a text or combo box.
LUMODEVICE_API bool press(Control& control, Key key);

/// Presses the mouse on the item `text` of one list and drops it on another (or on the same).
/// Throws PropertyFault(380) when the list does not hold the item.
LUMODEVICE_API bool drag(ListBox& from, std::string_view text, ListBox& onto);

}  // namespace lumodevice::toolkit::hand
