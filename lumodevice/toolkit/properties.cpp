#include "lumodevice/toolkit/properties.hpp"

#include <array>
#include <charconv>
#include <memory>
#include <optional>
#include <utility>

#include "lumodevice/toolkit/controls.hpp"
#include "lumodevice/toolkit/timer.hpp"

namespace lumodevice::toolkit {

namespace {

[[noreturn]] void noSuchProperty(const Control& control, std::string_view property) {
  throw PropertyFault(kNoSuchProperty,
                      control.fullName() + " has no property " + std::string(property));
}

[[noreturn]] void badValue(const Control& control, std::string_view property,
                           std::string_view value) {
  throw PropertyFault(kInvalidPropertyValue, control.fullName() + "." + std::string(property) +
                                                 " does not take the value " + std::string(value));
}

std::string boolText(bool value) {
  return value ? "True" : "False";
}

/// Width and height of a picture in points.
std::string sizeText(const std::shared_ptr<const Picture>& picture) {
  return picture == nullptr
             ? "None"
             : std::to_string(picture->width()) + " x " + std::to_string(picture->height());
}

std::optional<bool> parseBool(std::string_view text) {
  if (text == "True") {
    return true;
  }
  return text == "False" ? std::optional(false) : std::nullopt;
}

std::optional<int> parseInt(std::string_view text) {
  int value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc() && end == text.data() + text.size() ? std::optional(value)
                                                                  : std::nullopt;
}

/// One property by name. A null setter means that it can only be read; an accessor that does not
/// fit the kind of control returns none, respectively false.
struct Accessor {
  std::string_view name;
  std::optional<std::string> (*get)(const Control&);
  bool (*set)(Control&, std::string_view value);
};

/// Runs `act` on the control when it is one of the types.
template <typename... ControlTypes>
std::optional<std::string> readAs(const Control& control, auto act) {
  std::optional<std::string> result;
  (void)([&] {
    const auto* typed = dynamic_cast<const ControlTypes*>(&control);
    if (typed != nullptr) {
      result = act(*typed);
    }
    return typed != nullptr;
  }() || ...);
  return result;
}

template <typename... ControlTypes>
bool writeAs(Control& control, auto act) {
  return ([&] {
    auto* typed = dynamic_cast<ControlTypes*>(&control);
    if (typed != nullptr) {
      act(*typed);
    }
    return typed != nullptr;
  }() || ...);
}

template <typename... ControlTypes>
bool writeInt(Control& control, std::string_view property, std::string_view value, auto act) {
  return writeAs<ControlTypes...>(control, [&](auto& typed) {
    const auto number = parseInt(value);
    if (!number) {
      badValue(control, property, value);
    }
    act(typed, *number);
  });
}

template <typename... ControlTypes>
bool writeBool(Control& control, std::string_view property, std::string_view value, auto act) {
  return writeAs<ControlTypes...>(control, [&](auto& typed) {
    const auto flag = parseBool(value);
    if (!flag) {
      badValue(control, property, value);
    }
    act(typed, *flag);
  });
}

/// A part of the look of everything that can be seen.
std::optional<std::string> readLook(const Control& control, auto part) {
  return control.kind() == Kind::Timer ? std::nullopt : std::optional(part(control.look()));
}

std::string roleName(ColorRole role) {
  constexpr std::array kNames = {"Normal", "Heading", "Value", "Warning", "Hint"};
  return kNames.at(static_cast<std::size_t>(role));
}

constexpr std::array kAccessors = {
    Accessor{"Text",
             [](const Control& c) {
               return readAs<TextBox, ListControl>(c,
                                                   [](auto& t) { return std::string(t.text()); });
             },
             [](Control& c, std::string_view v) {
               return writeAs<TextBox, ComboBox>(c, [&](auto& t) { t.setText(v); });
             }},
    Accessor{"Caption",
             [](const Control& c) {
               return readAs<Frame, Label, CommandButton, CheckBox, OptionButton>(
                   c, [](auto& t) { return t.caption(); });
             },
             [](Control& c, std::string_view v) {
               return writeAs<Frame, Label, CommandButton, CheckBox, OptionButton>(
                   c, [&](auto& t) { t.setCaption(v); });
             }},
    Accessor{
        "Value",
        [](const Control& c) {
          auto box = readAs<CheckBox>(c, [](auto& t) { return std::to_string(t.value()); });
          return box ? box : readAs<OptionButton>(c, [](auto& t) { return boolText(t.value()); });
        },
        [](Control& c, std::string_view v) {
          return writeInt<CheckBox>(c, "Value", v, [](auto& t, int n) { t.setValue(n); }) ||
                 writeBool<OptionButton>(c, "Value", v, [](auto& t, bool b) { t.setValue(b); });
        }},
    Accessor{"Enabled", [](const Control& c) { return std::optional(boolText(c.enabled())); },
             [](Control& c, std::string_view v) {
               return writeBool<Control>(c, "Enabled", v, [](auto& t, bool b) { t.setEnabled(b); });
             }},
    Accessor{"Visible", [](const Control& c) { return std::optional(boolText(c.visible())); },
             [](Control& c, std::string_view v) {
               return writeBool<Control>(c, "Visible", v, [](auto& t, bool b) { t.setVisible(b); });
             }},
    Accessor{"Tag", [](const Control& c) { return std::optional(c.tag()); },
             [](Control& c, std::string_view v) {
               c.setTag(v);
               return true;
             }},
    Accessor{"ListIndex",
             [](const Control& c) {
               return readAs<ListControl>(c, [](auto& t) { return std::to_string(t.listIndex()); });
             },
             [](Control& c, std::string_view v) {
               return writeInt<ListControl>(c, "ListIndex", v,
                                            [](auto& t, int n) { t.setListIndex(n); });
             }},
    Accessor{"ListCount",
             [](const Control& c) {
               return readAs<ListControl>(c, [](auto& t) { return std::to_string(t.listCount()); });
             },
             nullptr},
    Accessor{"Interval",
             [](const Control& c) {
               return readAs<Timer>(c, [](auto& t) { return std::to_string(t.interval()); });
             },
             [](Control& c, std::string_view v) {
               return writeInt<Timer>(c, "Interval", v, [](auto& t, int n) { t.setInterval(n); });
             }},
    Accessor{"Left", [](const Control& c) { return std::optional(std::to_string(c.place().left)); },
             [](Control& c, std::string_view v) {
               return writeInt<Control>(c, "Left", v,
                                        [](auto& t, int n) { t.moveTo(n, t.place().top); });
             }},
    Accessor{"Top", [](const Control& c) { return std::optional(std::to_string(c.place().top)); },
             [](Control& c, std::string_view v) {
               return writeInt<Control>(c, "Top", v,
                                        [](auto& t, int n) { t.moveTo(t.place().left, n); });
             }},
    Accessor{"Width",
             [](const Control& c) { return std::optional(std::to_string(c.place().width)); },
             nullptr},
    Accessor{"Height",
             [](const Control& c) { return std::optional(std::to_string(c.place().height)); },
             nullptr},
    Accessor{"FontSize",
             [](const Control& c) {
               return readLook(c, [](const Look& look) { return std::to_string(look.fontSize); });
             },
             nullptr},
    Accessor{"FontBold",
             [](const Control& c) {
               return readLook(c, [](const Look& look) { return boolText(look.bold); });
             },
             nullptr},
    Accessor{"Alignment",
             [](const Control& c) {
               return readLook(c, [](const Look& look) {
                 return std::to_string(static_cast<int>(look.alignment));
               });
             },
             nullptr},
    Accessor{"ColorRole",
             [](const Control& c) {
               return readLook(c, [](const Look& look) { return roleName(look.colorRole); });
             },
             nullptr},
    Accessor{"Style",
             [](const Control& c) {
               return readAs<ComboBox>(c, [](auto& t) {
                 return std::to_string(static_cast<int>(t.look().comboStyle));
               });
             },
             nullptr},
    Accessor{"Mnemonic",
             [](const Control& c) {
               return readLook(c, [](const Look& look) { return std::to_string(look.mnemonic); });
             },
             nullptr},
    Accessor{
        "ToolTipText",
        [](const Control& c) { return readLook(c, [](const Look& look) { return look.toolTip; }); },
        nullptr},
    Accessor{"AccessibleName",
             [](const Control& c) {
               return readLook(c, [](const Look& look) { return look.accessibleName; });
             },
             nullptr},
    Accessor{"TabIndex",
             [](const Control& c) {
               return c.kind() == Kind::Timer ? std::nullopt
                                              : std::optional(std::to_string(c.tabIndex()));
             },
             nullptr},
    Accessor{"MousePointer",
             [](const Control& c) {
               return readAs<Form>(c, [](auto& t) { return std::to_string(t.mousePointer()); });
             },
             [](Control& c, std::string_view v) {
               return writeInt<Form>(c, "MousePointer", v,
                                     [](auto& t, int n) { t.setMousePointer(n); });
             }},
    Accessor{"Picture",
             [](const Control& c) {
               return readAs<PictureBox, Image>(c, [](auto& t) { return sizeText(t.picture()); });
             },
             nullptr},
    Accessor{"Stretch",
             [](const Control& c) {
               return readAs<Image>(c, [](auto& t) { return boolText(t.stretch()); });
             },
             [](Control& c, std::string_view v) {
               return writeBool<Image>(c, "Stretch", v, [](auto& t, bool b) { t.setStretch(b); });
             }},
    Accessor{"OLEDropMode",
             [](const Control& c) {
               return readAs<ListBox>(c, [](auto& t) { return std::to_string(t.oleDropMode()); });
             },
             [](Control& c, std::string_view v) {
               return writeInt<ListBox>(c, "OLEDropMode", v,
                                        [](auto& t, int n) { t.setOleDropMode(n); });
             }},
};

/// The i of "List(i)".
std::optional<int> listItem(std::string_view property) {
  constexpr std::string_view kOpen = "List(";
  if (!property.starts_with(kOpen) || !property.ends_with(')')) {
    return std::nullopt;
  }
  return parseInt(property.substr(kOpen.size(), property.size() - kOpen.size() - 1));
}

const Accessor* accessor(std::string_view name) {
  for (const Accessor& candidate : kAccessors) {
    if (candidate.name == name) {
      return &candidate;
    }
  }
  return nullptr;
}

}  // namespace

std::string_view kindName(Kind kind) {
  constexpr std::array kNames = {"Form",          "Frame",   "Label",      "TextBox",
                                 "ComboBox",      "ListBox", "CheckBox",   "OptionButton",
                                 "CommandButton", "Timer",   "PictureBox", "Image"};
  return kNames.at(static_cast<std::size_t>(kind));
}

std::string readProperty(const Control& control, std::string_view property) {
  std::optional<std::string> value;
  if (const auto item = listItem(property)) {
    value = readAs<ListControl>(control, [&](auto& typed) { return typed.list(*item); });
  } else if (const Accessor* found = accessor(property)) {
    value = found->get(control);
  }
  if (!value) {
    noSuchProperty(control, property);
  }
  return *value;
}

void writeProperty(Control& control, std::string_view property, std::string_view value) {
  const Accessor* found = accessor(property);
  if (found != nullptr && found->set == nullptr && found->get(control)) {
    throw PropertyFault(kNoSuchProperty,
                        control.fullName() + "." + std::string(property) + " can only be read");
  }
  if (found == nullptr || found->set == nullptr || !found->set(control, value)) {
    noSuchProperty(control, property);
  }
}

std::string_view shownProperty(const Control& control) {
  for (const std::string_view property : {"Caption", "Text"}) {
    if (accessor(property)->get(control)) {
      return property;
    }
  }
  return "";
}

}  // namespace lumodevice::toolkit
