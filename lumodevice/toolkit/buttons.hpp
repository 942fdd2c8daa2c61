#pragma once

#include <vector>

#include "lumodevice/export.hpp"
#include "lumodevice/toolkit/frames.hpp"

/// Labels and what is clicked.
///
///     auto& autoQuery = load.surface().get<toolkit::CheckBox>("chkAutoQuery");
///     autoQuery.setValue(toolkit::CheckBox::kTicked);
namespace lumodevice::toolkit {

class LUMODEVICE_API Label : public Captioned<Control> {
 public:
  static constexpr Kind kKind = Kind::Label;
  Event<> click{*this};

 protected:
  friend class Surface;
  using Captioned::Captioned;
};

class LUMODEVICE_API CommandButton : public Captioned<Control> {
 public:
  static constexpr Kind kKind = Kind::CommandButton;
  Event<> click{*this};

 protected:
  friend class Surface;
  using Captioned::Captioned;
};

/// Click when the value changes, from code or by the operator.
class LUMODEVICE_API CheckBox : public Captioned<Control> {
 public:
  static constexpr Kind kKind = Kind::CheckBox;
  static constexpr int kClear = 0;
  static constexpr int kTicked = 1;
  static constexpr int kGreyed = 2;
  Event<> click{*this};
  [[nodiscard]] int value() const { return value_; }
  /// Throws PropertyFault(380) for a value other than 0, 1 and 2.
  void setValue(int value);
  void confirm() const override { confirmed(Property::Value); }

 protected:
  friend class Surface;
  using Captioned::Captioned;

 private:
  int value_ = kClear;
};

/// Click when it becomes selected; its siblings in the same container are cleared without a Click.
class LUMODEVICE_API OptionButton : public Captioned<Control> {
 public:
  static constexpr Kind kKind = Kind::OptionButton;
  Event<> click{*this};
  [[nodiscard]] bool value() const { return value_; }
  void setValue(bool value);
  /// With its siblings, which a widget may have cleared.
  void confirm() const override;

 protected:
  friend class Surface;
  using Captioned::Captioned;

 private:
  void show(bool value);
  /// The options of the same container, itself included.
  [[nodiscard]] std::vector<OptionButton*> group() const;
  bool value_ = false;
};

}  // namespace lumodevice::toolkit
