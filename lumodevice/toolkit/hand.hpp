#pragma once

#include <memory>
#include <string_view>

#include "lumodevice/export.hpp"
#include "lumodevice/toolkit/controls.hpp"

/// The acts of an operator, for the faces that show a form and for programs that use it as one:
///
///     hand::type(load.surface().get<TextBox>("txtInput", 0), "20");
///     hand::click(load.surface().get<CommandButton>("cmdSet", 0));
///
/// A control takes them only while it is enabled together with all its containers; otherwise the
/// act returns false and nothing happened. Either way the control confirms to the views what it
/// holds when the act is over, so a widget goes back whose act came to nothing. An act that the
/// kind of control does not know throws PropertyFault(438). Whether the control is visible is not
/// looked at.
namespace lumodevice::toolkit::hand {

/// A button fires, a check box flips (greyed becomes clear), an option is chosen, the selected
/// entry of a list is clicked again, a picture or label is clicked.
LUMODEVICE_API bool click(Control& control);

/// The mouse goes down on a picture box or image. A click is this and, when the mouse comes up
/// there, click().
LUMODEVICE_API bool mouseDown(Control& control, const MousePress& press);

/// Replaces the text of a text or combo box.
LUMODEVICE_API bool type(Control& control, std::string_view text);

/// Picks the entry of a combo or list box. Throws PropertyFault(380) for an index that holds no
/// entry.
LUMODEVICE_API bool select(Control& control, int index);

/// Presses a key in a text or combo box.
LUMODEVICE_API bool press(Control& control, Key key);

/// A drag in progress, from the mouse pressed on an item of a list to the drop. It ends with its
/// scope at the latest, then without a drop.
///
///     hand::Drag drag(list, itemUnderTheMouse);
///     ...                                          // the mouse moves over another list
///     showCursor(drag.canDropOn(other) ? Cursor::Move : Cursor::No);
///     ...                                          // its button comes up there
///     drag.dropOn(other);
///
/// The form that the list belongs to may go meanwhile: then the drag is over.
class LUMODEVICE_API Drag {
 public:
  /// Picks the item (the list's Click) and asks the list what is dragged. Nothing begins when the
  /// list cannot be used, or offers no text or no effect. Throws PropertyFault(380) for an index
  /// that holds no item.
  Drag(ListBox& from, int index);

  [[nodiscard]] bool inProgress() const { return !life_.expired(); }
  /// What is dragged while it is in progress.
  [[nodiscard]] const DragData& data() const { return data_; }

  /// Whether a drop there is taken: the list is of the same form, can be used, is in the manual
  /// drop mode and does not decline (ListBox::dragOver).
  [[nodiscard]] bool canDropOn(ListBox& onto) const;

  /// Drops it where canDropOn() allows that; false where not. Either way the drag is over.
  bool dropOn(ListBox& onto);

  /// The drag is over without a drop.
  void cancel() { life_.reset(); }

  Drag(Drag&&) noexcept = default;
  Drag& operator=(Drag&&) noexcept = default;
  Drag(const Drag&) = delete;
  Drag& operator=(const Drag&) = delete;
  ~Drag() = default;

 private:
  ListBox* from_;
  DragData data_;
  /// The form's, while the drag is in progress.
  std::weak_ptr<void> life_;
};

/// A whole drag: of the item `text` of one list onto another (or onto the same), which may decline
/// it. Throws PropertyFault(380) when the list does not hold the item.
LUMODEVICE_API bool drag(ListBox& from, std::string_view text, ListBox& onto);

}  // namespace lumodevice::toolkit::hand
