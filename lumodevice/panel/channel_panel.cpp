#include "lumodevice/panel/channel_panel.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "lumodevice/form/tables.hpp"
#include "lumodevice/panel/setting_buttons.hpp"
#include "lumodevice/text/text.hpp"
#include "lumodevice/toolkit/handling.hpp"

namespace lumodevice::panel {

namespace {

using form::Controls;
using toolkit::CheckBox;
using toolkit::Control;
using toolkit::TextBox;

constexpr int kVonBox = 10;
constexpr int kFirstLimitBox = 24;
constexpr int kLastLimitBox = 28;
static_assert(form::kSettings[kVonBox].command == form::Command(":CONF:VOLT:ON"));
constexpr int kLowRange = 0;
constexpr int kHighRange = 1;

/// Full scales of the modules' low and high voltage ranges.
struct VoltageRange {
  std::int32_t volts;
  int listIndex;
};
constexpr auto kVoltageRanges = std::to_array<VoltageRange>(
    {{16, kLowRange}, {125, kLowRange}, {80, kHighRange}, {500, kHighRange}});

void showRange(Controls& form, Control& /*control*/, const std::string& answer) {
  attempt([&] {
    const std::int32_t volts = text::toWhole32(text::Val(answer));
    for (const VoltageRange& range : kVoltageRanges) {
      if (range.volts == volts) {
        form.cmbVolRange.setListIndex(range.listIndex);
        return;
      }
    }
    form.lblVoRange.setCaption("New Model");
  });
  form.lblVoRange.setCaption(answer);
}

void showWhole(Controls& /*form*/, Control& control, const std::string& answer) {
  dynamic_cast<CheckBox&>(control).setValue(text::toWhole16(text::Val(answer)));
}

void showText(Controls& /*form*/, Control& control, const std::string& answer) {
  dynamic_cast<TextBox&>(control).setText(answer);
}

/// UVP has no state of its own on the instrument: it is on when its level is not 0.
void showUvpState(Controls& form, Control& /*control*/, const std::string& answer) {
  form.chkUVP.setValue(text::Val(answer) == 0 ? CheckBox::kClear : CheckBox::kTicked);
}

/// In turn, of what has no answer nothing is claimed.
void showNotKnown(Control& control) {
  if (auto* const box = dynamic_cast<CheckBox*>(&control)) {
    box->setValue(CheckBox::kGreyed);
  } else if (auto* const text = dynamic_cast<TextBox*>(&control)) {
    text->setText("");
  } else if (auto* const list = dynamic_cast<toolkit::ComboBox*>(&control)) {
    list->setListIndex(-1);
  }
}

/// One query of the settings read-back: the control whose tag names the command, and how the answer
/// is shown (in that control, where nothing else is said).
struct ReadBackRow {
  std::string_view control;
  std::optional<int> index;
  void (*show)(Controls&, Control&, const std::string& answer);
};
constexpr auto kReadBacks = std::to_array<ReadBackRow>({{"cmbVolRange", {}, showRange},
                                                        {"chkVON", {}, showWhole},
                                                        {"txtInput", kVonBox, showText},
                                                        {"chkLoad", {}, showWhole},
                                                        {"chkOCP", {}, showWhole},
                                                        {"chkOVP", {}, showWhole},
                                                        {"cmdSet", kUvpBox, showUvpState},
                                                        {"chkGoNogo", {}, showWhole}});

}  // namespace

ChannelPanel::ChannelPanel(form::Controls& form, link::LinkState& state, link::Exchange& exchange,
                           const TaggedCommands& commands, Modes& modes)
    : form_(form), state_(state), exchange_(exchange), commands_(commands), modes_(modes) {
  toolkit::handle(form_.cmbChannel.click, [this] { select(); });
}

void ChannelPanel::select() {
  const std::string channel(form_.cmbChannel.text());
  if (channel.empty()) {
    return;
  }
  if (form_.chkAutoQuery.value() == CheckBox::kTicked) {
    form_.chkAutoQuery.setValue(CheckBox::kClear);
  }
  if (!state_.connected()) {
    return;
  }
  const link::Turns::Operation operation(exchange_.turns());
  // The number is one digit; a longer one does not fit the channel texts that the instrument knows.
  if (!exchange_.runCommand(commands_.prefix(form_.cmbChannel) + text::Mid(channel, 3, 1))) {
    // The load is at another channel still, which the switches would act on.
    state_.showNoChannel();
    form_.cmbChannel.setListIndex(-1);
    return;
  }
  if (exchange_.turns().inTurn()) {
    state_.showNoChannel();  // what is read back, or did not come, is not sent to the load again
  }
  modes_.ModeReadBack();
  SettingsReadBack();
  ReadingsReadBack();
  // Nothing where the link went while one of the queries waited.
  state_.showChannel(form_.chkAutoQuery.value() == CheckBox::kTicked);
}

void ChannelPanel::showConnected() const {
  form_.fraOverChk.setEnabled(true);
  // A mode that is chosen already shows no frame when the read-back meets it again.
  modes_.showChosenFrame();
}

void ChannelPanel::showUnconnected() const {
  form_.FrameCCStatic.setVisible(true);
  for (toolkit::Frame* frame :
       {&form_.fraCCDynamic, &form_.fraCRDynamic, &form_.FrameCRStatic, &form_.FrameCV}) {
    frame->setVisible(false);
  }
  form_.FrameCCStatic.setEnabled(false);
  form_.FrameCCStatic.moveTo(form::kModeFramePlace.left, form::kModeFramePlace.top);
  for (TextBox* readOut : {&form_.txtPower(0), &form_.txtVoltage(0), &form_.txtCurrent(0)}) {
    readOut->setText("");
  }
  form_.fraOverChk.setEnabled(false);
}

void ChannelPanel::SettingsReadBack() {
  for (const ReadBackRow& row : kReadBacks) {
    auto& control = form_.surface().get<Control>(row.control, row.index);
    if (const auto answer = exchange_.ask(commands_.query(control))) {
      const bool known = !answer->empty() || !exchange_.turns().inTurn();
      const link::Gate::Echo echo(exchange_.gate());
      attempt([&] { known ? row.show(form_, control, *answer) : showNotKnown(control); });
    }
  }
  if (!state_.connected()) {
    return;
  }
  // The limits' own tags follow the mode, so they are set before the limits are asked for.
  modes_.tagGoNogoBoxes();
  for (int i = kFirstLimitBox; i <= kLastLimitBox; ++i) {
    commands_.readBack(form_.txtInput(i));
  }
}

/// chkUVP has no command of its own.
void ChannelPanel::ReadBack(Control& control) {
  const Control& asked = &control == &form_.chkUVP ? form_.cmdSet(kUvpBox) : control;
  const auto row = std::ranges::find_if(kReadBacks, [&](const ReadBackRow& each) {
    return each.control == asked.name() && each.index == asked.index();
  });
  const bool tabled = row != kReadBacks.end();
  const std::string answer =
      tabled ? exchange_.ask(commands_.query(asked)).value_or("") : std::string();
  const link::Gate::Echo echo(exchange_.gate());
  if (answer.empty()) {
    attempt([&] { showNotKnown(control); });
  } else {
    attempt([&] { row->show(form_, control, answer); });
  }
  if (&control == &form_.cmbCVFreq) {
    modes_.readCvResponse();
  }
}

void ChannelPanel::ReadingsReadBack() {
  for (TextBox* box : {&form_.txtVoltage(0), &form_.txtCurrent(0), &form_.txtPower(0)}) {
    if (const auto answer = exchange_.ask(text::Trim(commands_.prefix(*box)))) {
      box->setText(*answer);
    }
  }
}

}  // namespace lumodevice::panel
