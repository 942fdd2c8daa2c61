#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "lumodevice/export.hpp"
#include "lumodevice/toolkit/control.hpp"
#include "lumodevice/toolkit/event.hpp"
#include "lumodevice/toolkit/fields.hpp"

namespace lumodevice::toolkit {

/// The items and the selection that list boxes and combo boxes share.
///
///     const auto& channels = load.surface().get<toolkit::ComboBox>("cmbChannel");
///     for (int i = 0; i < channels.listCount(); ++i) {
///       std::cout << (i == channels.listIndex() ? "> " : "  ") << channels.list(i) << '\n';
///     }
class LUMODEVICE_API ListControl : public Control {
 public:
  /// The selection changed from code, or the operator picked an entry (also the one already
  /// selected).
  Event<> click{*this};
  [[nodiscard]] int listCount() const { return static_cast<int>(items_.size()); }
  /// Throws PropertyFault(381) outside 0 to listCount() - 1.
  [[nodiscard]] const std::string& list(int index) const;
  /// -1 when nothing is selected.
  [[nodiscard]] int listIndex() const { return listIndex_; }
  /// Selecting an entry puts its text into a combo box, also the entry that is selected already.
  /// Throws PropertyFault(380) outside -1 to listCount() - 1.
  void setListIndex(int index);
  /// Adds at the end, or before the item at `position`. The selected item stays selected.
  void addItem(std::string_view item);
  void addItem(std::string_view item, int position);
  /// Throws PropertyFault(5) for an index that holds no item. Removing the selected item selects
  /// nothing.
  void removeItem(int index);
  /// Empties list, selection and text; raises nothing.
  void clear();
  void confirm() const override { confirmed(Property::ListIndex); }
  /// The text: of a combo box what its edit field shows, of a list box the selected item or "".
  [[nodiscard]] virtual std::string_view text() const = 0;

 protected:
  using Control::Control;
  /// Runs when the selection moved, before its Click, and when an entry was selected again.
  virtual void selectionChanged() {}

 private:
  void select(int index);
  void tellThenFollow(std::initializer_list<Property> properties);
  std::vector<std::string> items_;
  int listIndex_ = -1;
};

/// An edit field with a list. Selecting an entry puts it into the field, whatever was typed there;
/// setting the text selects none.
class LUMODEVICE_API ComboBox : public ListControl {
 public:
  static constexpr Kind kKind = Kind::ComboBox;
  Event<Key> keyDown{*this};
  [[nodiscard]] std::string_view text() const override { return text_; }
  void setText(std::string_view text);
  void confirm() const override;

 protected:
  friend class Surface;
  using ListControl::ListControl;
  void selectionChanged() override;

 private:
  std::string text_;
};

/// What is dragged from one list box to another.
struct LUMODEVICE_API DragData {
  std::string text;
  int allowedEffects = 0;
};
inline constexpr int kDropEffectNone = 0;
inline constexpr int kDropEffectMove = 2;

class LUMODEVICE_API ListBox : public ListControl {
 public:
  static constexpr Kind kKind = Kind::ListBox;
  enum DropMode { kDropNone = 0, kDropManual = 1 };
  /// A drag of the selected item starts; without a text or an allowed effect it does not go on.
  Event<DragData&> startDrag{*this};
  /// Something is dragged over the list: it sets the effect to kDropEffectNone when it would not
  /// take it. Raised only in the manual drop mode, perhaps many times in a drag.
  Event<const DragData&, int&> dragOver{*this};
  /// Something was dropped here that the list takes; raised only in the manual drop mode.
  Event<const DragData&> drop{*this};
  [[nodiscard]] int oleDropMode() const { return dropMode_; }
  /// Throws PropertyFault(380) for a mode other than 0 and 1.
  void setOleDropMode(int mode);
  [[nodiscard]] std::string_view text() const override;

 protected:
  friend class Surface;
  using ListControl::ListControl;

 private:
  int dropMode_ = kDropNone;
};

}  // namespace lumodevice::toolkit
