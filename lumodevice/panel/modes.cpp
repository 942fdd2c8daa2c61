#include "lumodevice/panel/modes.hpp"

#include <algorithm>
#include <array>
#include <string_view>

#include "lumodevice/form/control_rows.hpp"
#include "lumodevice/panel/mode_rows.hpp"
#include "lumodevice/text/text.hpp"
#include "lumodevice/toolkit/handling.hpp"

namespace lumodevice::panel {

namespace {

constexpr int kCcHigh = 0;
constexpr int kCv = 2;

constexpr std::string_view kNoFrame;
constexpr auto kModeFrames = std::to_array<std::string_view>(
    {"FrameCCStatic", "fraCCDynamic", "FrameCRStatic", "fraCRDynamic", "FrameCV"});

/// Every mode has a frame with boxes, its B value among them.
constexpr bool modesFitTheForm() {
  return std::all_of(kModes.begin(), kModes.end(), [](const Mode& mode) {
    const auto box = std::find_if(
        form::kSettings.begin(), form::kSettings.end(), [&](const form::SettingRow& row) {
          return row.frame == mode.frame &&
                 (mode.bValueBox == kNoBox || row.index == mode.bValueBox);
        });
    return box != form::kSettings.end() &&
           std::find(kModeFrames.begin(), kModeFrames.end(), mode.frame) != kModeFrames.end();
  });
}
static_assert(modesFitTheForm());
static_assert(kModes.size() == form::elements("optMode"));
static_assert(form::kSettings[kGoNogoHighBox].command == kVoltageHigh);
static_assert(form::kSettings[kGoNogoLowBox].command == kVoltageLow);

const Mode& modeAt(int index) {
  return kModes.at(static_cast<std::size_t>(index));
}

/// The mode that an answer selects.
int modeOf(std::string_view answer) {
  for (int i = 0; i < static_cast<int>(kModes.size()); ++i) {
    if (modeAt(i).answer == answer) {
      return i;
    }
  }
  return kNoBox;
}

}  // namespace

Modes::Modes(form::Controls& form, const link::LinkState& state, link::Exchange& exchange,
             const TaggedCommands& commands)
    : form_(form), state_(state), exchange_(exchange), commands_(commands), mode_(kNoBox) {
  for (int i = 0; i < form_.optMode.count(); ++i) {
    toolkit::handle(form_.optMode(i).click, [this, i] { click(i); });
  }
}

void Modes::ModeReadBack() {
  const auto answer = exchange_.ask(":Mode?");
  const bool observing = exchange_.gate().observing();
  if (!answer) {
    return;
  }
  const int mode = observing ? modeNamed(*answer) : modeOf(*answer);
  const bool known = !answer->empty() || !exchange_.turns().inTurn();
  if (!known || (observing && mode == kNoBox)) {
    showNotKnown();
    return;
  }
  mode_ = mode;
  toolkit::OptionButton& option = form_.optMode(mode == kNoBox ? kCcHigh : mode);
  const link::Gate::Echo echo(exchange_.gate());
  if (!option.value()) {
    option.setValue(true);
  } else if (mode == kCv && !observing) {
    ModeFieldsReadBack(kCv);
  } else if (mode != kNoBox) {
    click(mode);
  }
}

/// No mode is chosen: to choose one would set the load to it.
void Modes::showNotKnown() {
  mode_ = kNoBox;
  for (int i = 0; i < form_.optMode.count(); ++i) {
    form_.optMode(i).setValue(false);
  }
}

/// The option whose command would choose the mode that the instrument is in. Where nothing is sent,
/// no other one may be shown.
int Modes::modeNamed(std::string_view answer) const {
  for (int i = 0; i < form_.optMode.count(); ++i) {
    const std::string command = text::Trim(commands_.prefix(form_.optMode(i)));
    if (!answer.empty() && command.substr(command.find(' ') + 1) == answer) {
      return i;
    }
  }
  return kNoBox;
}

void Modes::click(int mode) {
  const Mode& chosen = modeAt(mode);
  const bool echo = exchange_.gate().takeEcho();
  showOnly(kNoFrame);
  if (state_.connected() && !echo) {
    const bool sends = !isGroupChannel();
    const bool wentOut = sends && exchange_.runCommand(commands_.prefix(form_.optMode(mode)));
    if (exchange_.gate().observing()) {
      showNotKnown();  // until the instrument has said which it is in
      ModeReadBack();
      return;
    }
    if (wentOut) {
      mode_ = mode;
    } else if (sends && mode_ != kNoBox && mode_ != mode) {
      form_.optMode(mode_).setValue(true);
      return;
    }
  }
  showOnly(chosen.frame);
  if (chosen.bValueBox != kNoBox) {
    const std::string_view channel = form_.cmbChannel.text();
    const bool half = channel.ends_with('L') || channel.ends_with('R');
    form_.txtInput(chosen.bValueBox).setEnabled(!half);
    form_.cmdSet(chosen.bValueBox).setEnabled(!half);
  }
  if (mode == kCv && isGroupChannel()) {
    return;
  }
  ModeFieldsReadBack(mode);
  tagGoNogoBoxes();
}

/// The others are hidden and disabled.
void Modes::showOnly(std::string_view frame) const {
  for (const std::string_view name : kModeFrames) {
    auto& modeFrame = form_.surface().get<toolkit::Frame>(name);
    modeFrame.setVisible(name == frame);
    modeFrame.setEnabled(name == frame && state_.connected());
    if (name == frame) {
      modeFrame.moveTo(form::kModeFramePlace.left, form::kModeFramePlace.top);
    }
  }
}

void Modes::showChosenFrame() const {
  for (int i = 0; i < form_.optMode.count(); ++i) {
    if (form_.optMode(i).value()) {
      showOnly(modeAt(i).frame);
    }
  }
}

void Modes::ModeFieldsReadBack(int mode) {
  if (!state_.connected()) {
    return;
  }
  const Mode& chosen = modeAt(mode);
  for (const form::SettingRow& row : form::kSettings) {
    toolkit::TextBox& box = form_.txtInput(row.index);
    if (row.frame == chosen.frame && (box.enabled() || !chosen.onlyEnabledBoxes)) {
      commands_.readBack(box);
    }
  }
  if (mode == kCv) {
    readCvResponse();
  }
}

void Modes::readCvResponse() {
  toolkit::ComboBox& speed = form_.cmbCVFreq;
  const auto answer = exchange_.ask(commands_.query(speed));
  if (answer == "0" || answer == "1") {
    const link::Gate::Echo echo(exchange_.gate());
    attempt([&] { speed.setListIndex(answer == "1" ? 1 : 0); });
  }
}

void Modes::tagGoNogoBoxes() const {
  const bool cv = form_.optMode(kCv).value();
  form_.setCommand(kGoNogoHighBox, cv ? kCurrentHigh : kVoltageHigh);
  form_.setCommand(kGoNogoLowBox, cv ? kCurrentLow : kVoltageLow);
}

bool Modes::isGroupChannel() const {
  const std::string_view channel = form_.cmbChannel.text();
  return channel.ends_with("G1") || channel.ends_with("G2");
}

}  // namespace lumodevice::panel
