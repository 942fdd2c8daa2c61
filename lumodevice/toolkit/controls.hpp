#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "lumodevice/toolkit/control.hpp"

/// The kinds of control. "From code" means a setter of this header; an operator's acts go through
/// Hand.
namespace lumodevice::toolkit {

/// Key codes that the fields know.
enum class Key { Enter = 13, Up = 38, Down = 40 };

/// The form itself: the container of all; its mouse pointer is the component's.
class Form : public Container {
 public:
  static constexpr Kind kKind = Kind::Form;
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

class Frame : public Captioned<Container> {
 public:
  static constexpr Kind kKind = Kind::Frame;

 protected:
  friend class Surface;
  using Captioned::Captioned;
};

class Label : public Captioned<Control> {
 public:
  static constexpr Kind kKind = Kind::Label;
  Event<> click;

 protected:
  friend class Surface;
  using Captioned::Captioned;
};

class CommandButton : public Captioned<Control> {
 public:
  static constexpr Kind kKind = Kind::CommandButton;
  Event<> click;

 protected:
  friend class Surface;
  using Captioned::Captioned;
};

/// Click when the value changes, from code or by the operator.
class CheckBox : public Captioned<Control> {
 public:
  static constexpr Kind kKind = Kind::CheckBox;
  static constexpr int kClear = 0;
  static constexpr int kTicked = 1;
  static constexpr int kGreyed = 2;
  Event<> click;
  [[nodiscard]] int value() const { return value_; }
  /// Throws PropertyFault(380) for a value other than 0, 1 and 2.
  void setValue(int value);

 protected:
  friend class Surface;
  using Captioned::Captioned;

 private:
  int value_ = kClear;
};

/// Click when it becomes selected; its siblings in the same container are cleared without a Click.
class OptionButton : public Captioned<Control> {
 public:
  static constexpr Kind kKind = Kind::OptionButton;
  Event<> click;
  [[nodiscard]] bool value() const { return value_; }
  void setValue(bool value);

 protected:
  friend class Surface;
  using Captioned::Captioned;

 private:
  void show(bool value);
  bool value_ = false;
};

/// Change when the text becomes another one; setting the text that it already holds raises none.
class TextBox : public Control {
 public:
  static constexpr Kind kKind = Kind::TextBox;
  Event<> change;
  Event<Key> keyDown;
  [[nodiscard]] const std::string& text() const { return text_; }
  void setText(std::string_view text);

 protected:
  friend class Surface;
  using Control::Control;

 private:
  std::string text_;
};

/// The items and the selection that list boxes and combo boxes share.
class ListControl : public Control {
 public:
  /// The selection changed from code, or the operator picked an entry (also the one already
  /// selected).
  Event<> click;
  [[nodiscard]] int listCount() const { return static_cast<int>(items_.size()); }
  /// Throws PropertyFault(381) outside 0 to listCount() - 1.
  [[nodiscard]] const std::string& list(int index) const;
  /// -1 when nothing is selected.
  [[nodiscard]] int listIndex() const { return listIndex_; }
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
  /// The text: of a combo box what its edit field shows, of a list box the selected item or "".
  [[nodiscard]] virtual std::string_view text() const = 0;

 protected:
  using Control::Control;
  /// Runs when the selection moved, before its Click.
  virtual void selectionChanged() {}

 private:
  void select(int index);
  std::vector<std::string> items_;
  int listIndex_ = -1;
};

/// An edit field with a list. Selecting an entry puts it into the field; setting the text selects
/// none.
class ComboBox : public ListControl {
 public:
  static constexpr Kind kKind = Kind::ComboBox;
  Event<Key> keyDown;
  [[nodiscard]] std::string_view text() const override { return text_; }
  void setText(std::string_view text);

 protected:
  friend class Surface;
  using ListControl::ListControl;
  void selectionChanged() override;

 private:
  std::string text_;
};

/// What is dragged from one list box to another.
struct DragData {
  std::string text;
  int allowedEffects = 0;
};
inline constexpr int kDropEffectNone = 0;
inline constexpr int kDropEffectMove = 2;

class ListBox : public ListControl {
 public:
  static constexpr Kind kKind = Kind::ListBox;
  enum DropMode { kDropNone = 0, kDropManual = 1 };
  /// A drag of the selected item starts; without a text or an allowed effect it does not go on.
  Event<DragData&> startDrag;
  /// Something was dropped here; raised only in the manual drop mode.
  Event<const DragData&> drop;
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
