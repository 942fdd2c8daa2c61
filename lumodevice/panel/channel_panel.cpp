#include "lumodevice/panel/channel_panel.hpp"

#include <array>
#include <cstdint>
#include <string>

#include "lumodevice/text/text.hpp"

namespace lumodevice::panel {

namespace {

using form::Form;
using toolkit::CheckBox;
using toolkit::Control;
using toolkit::TextBox;

constexpr int kVonBox = 10;
constexpr int kFirstLimitBox = 24;
constexpr int kLastLimitBox = 28;
constexpr int kLowRange = 0;
constexpr int kHighRange = 1;

/// Full scales of the modules' low and high voltage ranges.
struct VoltageRange {
  std::int32_t volts;
  int listIndex;
};
constexpr auto kVoltageRanges = std::to_array<VoltageRange>(
    {{16, kLowRange}, {125, kLowRange}, {80, kHighRange}, {500, kHighRange}});

void showWhole(Control& control, const std::string& answer) {
  dynamic_cast<CheckBox&>(control).setValue(text::toWhole16(text::Val(answer)));
}

void showText(Control& control, const std::string& answer) {
  dynamic_cast<TextBox&>(control).setText(answer);
}

/// UVP has no state of its own on the instrument: it is on when its level is not 0.
void showLevelState(Control& control, const std::string& answer) {
  dynamic_cast<CheckBox&>(control).setValue(text::Val(answer) == 0 ? CheckBox::kClear
                                                                   : CheckBox::kTicked);
}

/// One query of the settings read-back: whose tag names the command, what the answer is shown in
/// and how.
struct ReadBack {
  Control& (*asks)(Form&);
  Control& (*shows)(Form&);
  void (*show)(Control&, const std::string& answer);
};
constexpr auto kReadBacks = std::to_array<ReadBack>({
    {[](Form& f) -> Control& { return f.chkVON; }, [](Form& f) -> Control& { return f.chkVON; },
     showWhole},
    {[](Form& f) -> Control& { return f.txtInput(kVonBox); },
     [](Form& f) -> Control& { return f.txtInput(kVonBox); }, showText},
    {[](Form& f) -> Control& { return f.chkLoad; }, [](Form& f) -> Control& { return f.chkLoad; },
     showWhole},
    {[](Form& f) -> Control& { return f.chkOCP; }, [](Form& f) -> Control& { return f.chkOCP; },
     showWhole},
    {[](Form& f) -> Control& { return f.chkOVP; }, [](Form& f) -> Control& { return f.chkOVP; },
     showWhole},
    {[](Form& f) -> Control& { return f.cmdSet(kUvpBox); },
     [](Form& f) -> Control& { return f.chkUVP; }, showLevelState},
    {[](Form& f) -> Control& { return f.chkGoNogo; },
     [](Form& f) -> Control& { return f.chkGoNogo; }, showWhole},
});

}  // namespace

ChannelPanel::ChannelPanel(link::Link& link, link::Exchange& exchange, SettingCommands& settings,
                           Modes& modes)
    : link_(link), exchange_(exchange), settings_(settings), modes_(modes) {
  link_.form.cmbChannel.click.handle([this] { select(); });
}

void ChannelPanel::select() {
  Form& form = link_.form;
  const std::string channel(form.cmbChannel.text());
  if (channel.empty()) {
    return;
  }
  if (form.chkAutoQuery.value() == CheckBox::kTicked) {
    form.chkAutoQuery.setValue(CheckBox::kClear);
  }
  if (!link_.connected()) {
    return;
  }
  // The number is one digit; a longer one does not fit the channel texts that the instrument knows.
  exchange_.runCommand(settings_.prefix(form.cmbChannel) + text::Mid(channel, 3, 1));
  modes_.ModeReadBack();
  SettingsReadBack();
  ReadingsReadBack();
  if (!link_.connected()) {
    return;  // the link went while one of the queries waited
  }
  link_.panelState =
      form.chkAutoQuery.value() == CheckBox::kTicked ? link::kLoadedAutoQuery : link::kLoaded;
}

void ChannelPanel::SettingsReadBack() {
  if (!link_.connected()) {
    return;
  }
  Form& form = link_.form;
  readRange();
  for (const ReadBack& row : kReadBacks) {
    const std::string answer = exchange_.query(settings_.query(row.asks(form)));
    attempt([&] { row.show(row.shows(form), answer); });
  }
  modes_.tagGoNogoBoxes();
  for (int i = kFirstLimitBox; i <= kLastLimitBox; ++i) {
    settings_.readBack(form.txtInput(i));
  }
}

void ChannelPanel::readRange() {
  Form& form = link_.form;
  const std::string answer = exchange_.query(settings_.query(form.cmbVolRange));
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

void ChannelPanel::ReadingsReadBack() {
  if (!link_.connected()) {
    return;
  }
  for (TextBox* box :
       {&link_.form.txtVoltage(0), &link_.form.txtCurrent(0), &link_.form.txtPower(0)}) {
    box->setText(exchange_.query(text::Trim(settings_.prefix(*box))));
  }
}

}  // namespace lumodevice::panel
