#include "lumodevice/form/controls.hpp"

#include <optional>
#include <stdexcept>
#include <string>
#include <type_traits>

#include "lumodevice/form/tables.hpp"
#include "lumodevice/text/text.hpp"
#include "lumodevice/toolkit/properties.hpp"

namespace lumodevice::form {

namespace {

using toolkit::Control;
using toolkit::Kind;

// Where the parts of a setting stand within their frame, in twips. The protection frame leaves room
// for its check boxes on the left.
constexpr int kFirstRowTop = 360;
constexpr int kRowHeight = 420;
constexpr int kLabelTop = 60;
constexpr std::string_view kProtectionFrame = "fraOverChk";

struct SettingColumns {
  int label;
  int box;
  int button;
};
constexpr SettingColumns kModeColumns{240, 2160, 3840};
constexpr SettingColumns kProtectionColumns{1500, 2880, 4560};

Control& make(toolkit::Surface& surface, const ControlRow& row) {
  auto* container = dynamic_cast<toolkit::Container*>(surface.find(row.container));
  const auto index = row.index == kSingle ? std::nullopt : std::optional(row.index);
  const auto add = [&]<typename ControlType>(std::type_identity<ControlType>) -> Control& {
    return surface.add<ControlType>(std::string(row.name), index, container);
  };
  switch (row.kind) {
    case Kind::Form:
      return add(std::type_identity<toolkit::Form>());
    case Kind::Frame:
      return add(std::type_identity<toolkit::Frame>());
    case Kind::Label:
      return add(std::type_identity<toolkit::Label>());
    case Kind::TextBox:
      return add(std::type_identity<toolkit::TextBox>());
    case Kind::ComboBox:
      return add(std::type_identity<toolkit::ComboBox>());
    case Kind::ListBox:
      return add(std::type_identity<toolkit::ListBox>());
    case Kind::CheckBox:
      return add(std::type_identity<toolkit::CheckBox>());
    case Kind::OptionButton:
      return add(std::type_identity<toolkit::OptionButton>());
    case Kind::CommandButton:
      return add(std::type_identity<toolkit::CommandButton>());
    case Kind::Timer:
      return add(std::type_identity<toolkit::Timer>());
    case Kind::PictureBox:
      return add(std::type_identity<toolkit::PictureBox>());
    case Kind::Image:
      return add(std::type_identity<toolkit::Image>());
  }
  throw std::logic_error("a control row of no known kind");
}

void start(Control& control, const ControlRow& row) {
  control.setPlace(row.place);
  control.setTag(row.tag);
  if (!row.text.empty()) {
    toolkit::writeProperty(control, toolkit::shownProperty(control), row.text);
  }
  for (const std::string& item : text::Split(row.items, '|')) {
    dynamic_cast<toolkit::ListControl&>(control).addItem(item);
  }
  constexpr std::string_view kInterval = "interval=";
  for (const std::string& word : text::Split(row.start, ' ')) {
    if (word == "disabled") {
      control.setEnabled(false);
    } else if (word == "hidden") {
      control.setVisible(false);
    } else if (word == "on") {
      toolkit::writeProperty(control, "Value", "True");
    } else {
      toolkit::writeProperty(control, "Interval", word.substr(kInterval.size()));
    }
  }
}

void makeSetting(toolkit::Surface& surface, const SettingRow& row) {
  const SettingColumns& columns = row.frame == kProtectionFrame ? kProtectionColumns : kModeColumns;
  const int top = kFirstRowTop + row.row * kRowHeight;
  const auto place = [&](const ControlRow& part) { start(make(surface, part), part); };
  if (!row.caption.empty()) {
    place({"lblInput",
           row.index,
           Kind::Label,
           row.frame,
           row.caption,
           "",
           {columns.label, top + kLabelTop, columns.box - columns.label - 60, 255}});
  }
  place({"txtInput",
         row.index,
         Kind::TextBox,
         row.frame,
         "",
         row.tag,
         {columns.box, top, 1560, 315}});
  place({"cmdSet",
         row.index,
         Kind::CommandButton,
         row.frame,
         "Set",
         row.tag,
         {columns.button, top - 15, 720, 345}});
}

}  // namespace

Surface::Surface() {
  for (const ControlRow& row : controlRows()) {
    start(make(*this, row), row);
  }
  for (const SettingRow& row : settingRows()) {
    makeSetting(*this, row);
  }
}

Controls::Controls(toolkit::EventLoop& loop) {
  Timer1.joinLoop(loop);
  Timer2.joinLoop(loop);
}

void Controls::retire() {
  surface_.detachAll();
  Timer1.leaveLoop();
  Timer2.leaveLoop();
}

}  // namespace lumodevice::form
