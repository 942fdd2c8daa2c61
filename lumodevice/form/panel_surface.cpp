#include "lumodevice/form/panel_surface.hpp"

#include <optional>
#include <stdexcept>
#include <string>
#include <type_traits>

#include "lumodevice/form/control_rows.hpp"
#include "lumodevice/form/table_checks.hpp"
#include "lumodevice/text/text.hpp"
#include "lumodevice/toolkit/controls.hpp"
#include "lumodevice/toolkit/properties.hpp"
#include "lumodevice/toolkit/timer.hpp"

namespace lumodevice::form {

static_assert(namesCount(kControls));
static_assert(containersComeFirst(kControls));
static_assert(settingsFit(kSettings, kControls));
static_assert(lettersAreThere(kControls, kSettings));
static_assert(tipsAreThere(kControls));
static_assert(enterClicksButtons(kControls));

namespace {

using toolkit::Control;
using toolkit::Kind;

// Where the parts of a setting stand within their frame, in twips.
constexpr int kFirstRowTop = 540;
constexpr int kRowHeight = 480;
constexpr int kHeight = 360;

struct SettingColumns {
  int label;
  int box;
  int boxWidth;
  int button;
};
constexpr SettingColumns kColumns{180, 2100, 1500, 3720};
/// With room for a check box on the left.
constexpr SettingColumns kColumnsBeside{1680, 3180, 1800, 5100};
constexpr int kButtonWidth = 900;

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

void fill(Control& control, const ControlRow& row) {
  control.setPlace(row.place);
  control.setTag(row.command.tag());
  if (!row.text.empty()) {
    toolkit::writeProperty(control, toolkit::shownProperty(control), row.text);
  }
  for (const std::string& item : text::Split(row.details.items, '|')) {
    dynamic_cast<toolkit::ListControl&>(control).addItem(item);
  }
}

void start(Control& control, const Details& details) {
  if (has(details.start, Start::Disabled)) {
    control.setEnabled(false);
  }
  if (has(details.start, Start::Hidden)) {
    control.setVisible(false);
  }
  if (has(details.start, Start::On)) {
    toolkit::writeProperty(control, "Value", "True");
  }
  if (auto* timer = dynamic_cast<toolkit::Timer*>(&control)) {
    timer->setInterval(details.interval);
  }
}

/// Its caption, without the colon.
std::string captionOf(const Control& control) {
  if (toolkit::shownProperty(control) != "Caption") {
    return {};
  }
  std::string caption = toolkit::readProperty(control, "Caption");
  if (caption.ends_with(':')) {
    caption.pop_back();
  }
  return caption;
}

/// The control's own caption, or that of the control made before it beside it.
std::string spokenName(const toolkit::Surface& surface, const Control& control) {
  std::string own = captionOf(control);
  if (!own.empty() || control.tabIndex() == 0) {
    return own;
  }
  const Control& before = *surface.controls()[static_cast<std::size_t>(control.tabIndex() - 1)];
  return before.container() == control.container() ? captionOf(before) : "";
}

void dress(const toolkit::Surface& surface, Control& control, const ControlRow& row) {
  const Details& details = row.details;
  const bool letter = details.mnemonic != kNoLetter;
  control.setLook({
      .fontSize = details.fontSize,
      .bold = details.bold,
      .alignment = details.alignment,
      .colorRole = details.colorRole,
      .comboStyle = details.comboStyle,
      .mnemonic = letter ? static_cast<int>(row.text.find(details.mnemonic)) : toolkit::kNoMnemonic,
      .toolTip = std::string(details.tip.empty() ? row.command.text() : details.tip),
      .accessibleName =
          details.name.empty() ? spokenName(surface, control) : std::string(details.name),
      .typedWhole = details.typedWhole,
      .enterClicks = std::string(details.enterClicks),
  });
}

void put(toolkit::Surface& surface, const ControlRow& row) {
  Control& control = make(surface, row);
  fill(control, row);
  start(control, row.details);
  dress(surface, control, row);
}

void putSetting(toolkit::Surface& surface, const SettingRow& row) {
  const SettingColumns& columns = row.beside.empty() ? kColumns : kColumnsBeside;
  const int top = kFirstRowTop + row.row * kRowHeight;
  if (!row.caption.empty()) {
    put(surface, {.name = "lblInput",
                  .index = row.index,
                  .kind = Kind::Label,
                  .container = row.frame,
                  .text = row.caption,
                  .command = {},
                  .place = {columns.label, top, columns.box - columns.label - 60, kHeight},
                  .details = {.mnemonic = row.mnemonic}});
  }
  const std::string button = "cmdSet(" + std::to_string(row.index) + ")";
  put(surface, {.name = "txtInput",
                .index = row.index,
                .kind = Kind::TextBox,
                .container = row.frame,
                .text = "",
                .command = row.command,
                .place = {columns.box, top, columns.boxWidth, kHeight},
                .details = {.alignment = toolkit::Alignment::Right, .enterClicks = button}});
  const std::string name = "Set " + surface.find("txtInput", row.index)->look().accessibleName;
  put(surface, {.name = "cmdSet",
                .index = row.index,
                .kind = Kind::CommandButton,
                .container = row.frame,
                .text = "Set",
                .command = row.command,
                .place = {columns.button, top, kButtonWidth, kHeight},
                .details = {.name = name}});
}

}  // namespace

PanelSurface::PanelSurface() {
  for (const ControlRow& row : kControls) {
    put(*this, row);
    for (const SettingRow& setting : kSettings) {
      if ((setting.beside.empty() ? setting.frame : setting.beside) == row.name) {
        putSetting(*this, setting);
      }
    }
  }
}

}  // namespace lumodevice::form
