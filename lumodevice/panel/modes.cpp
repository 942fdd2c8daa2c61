#include "lumodevice/panel/modes.hpp"

#include <array>
#include <string_view>

#include "lumodevice/form/tables.hpp"
#include "lumodevice/text/text.hpp"
#include "lumodevice/toolkit/handling.hpp"

namespace lumodevice::panel {

namespace {

constexpr int kNoBox = -1;
constexpr int kCcHigh = 0;
constexpr int kCv = 2;
constexpr int kGoNogoHighBox = 27;
constexpr int kGoNogoLowBox = 28;

enum class ModeFrame { CcStatic, CcDynamic, CrStatic, CrDynamic, Cv };

struct Mode {
  ModeFrame frame;
  int firstBox;
  int lastBox;
  bool onlyEnabledBoxes;    ///< the read-back skips a disabled box
  int bValueBox;            ///< the box that half of a two-channel module has not
  std::string_view answer;  ///< answer of the instrument that selects this mode
};

// By option. Some modes ask for a disabled box too, and the two CR dynamic answers are crossed: so
// the instruments in the field are used to it.
constexpr auto kModes = std::to_array<Mode>({
    {ModeFrame::CcStatic, 0, 3, true, 1, "CCH"},
    {ModeFrame::CcStatic, 0, 3, true, 1, "CCL"},
    {ModeFrame::Cv, 11, 13, true, 12, "CV"},
    {ModeFrame::CrStatic, 14, 17, true, 15, "CRH"},
    {ModeFrame::CrStatic, 14, 17, false, 15, "CRL"},
    {ModeFrame::CcDynamic, 4, 9, false, kNoBox, "CCDH"},
    {ModeFrame::CcDynamic, 4, 9, false, kNoBox, "CCDL"},
    {ModeFrame::CrDynamic, 18, 23, false, kNoBox, "CRDL"},
    {ModeFrame::CrDynamic, 18, 23, true, kNoBox, "CRDH"},
});

const Mode& modeAt(int index) {
  return kModes.at(static_cast<std::size_t>(index));
}

int modeOf(std::string_view answer) {
  for (int i = 0; i < static_cast<int>(kModes.size()); ++i) {
    if (modeAt(i).answer == answer) {
      return i;
    }
  }
  return kNoBox;
}

std::array<toolkit::Frame*, 5> modeFrames(form::Controls& form) {
  return {&form.FrameCCStatic, &form.fraCCDynamic, &form.FrameCRStatic, &form.fraCRDynamic,
          &form.FrameCV};
}

}  // namespace

Modes::Modes(form::Controls& form, const link::LinkState& state, link::Exchange& exchange,
             const TaggedCommands& commands)
    : form_(form), state_(state), exchange_(exchange), commands_(commands) {
  for (int i = 0; i < form_.optMode.count(); ++i) {
    toolkit::handle(form_.optMode(i).click, [this, i] { click(i); });
  }
}

void Modes::ModeReadBack() {
  const auto answer = exchange_.ask(":Mode?");
  if (!answer) {
    return;
  }
  const int mode = modeOf(*answer);
  toolkit::OptionButton& option = form_.optMode(mode == kNoBox ? kCcHigh : mode);
  if (!option.value()) {
    option.setValue(true);
  } else if (mode == kCv) {
    ModeFieldsReadBack(kCv);
  } else if (mode != kNoBox) {
    click(mode);
  }
}

void Modes::click(int mode) {
  const Mode& chosen = modeAt(mode);
  const auto frames = modeFrames(form_);
  for (toolkit::Frame* frame : frames) {
    frame->setVisible(false);
    frame->setEnabled(false);
  }
  if (!isGroupChannel() && state_.connected()) {
    exchange_.runCommand(commands_.prefix(form_.optMode(mode)));
  }
  toolkit::Frame& frame = *frames.at(static_cast<std::size_t>(chosen.frame));
  frame.setVisible(true);
  frame.setEnabled(state_.connected());
  frame.moveTo(form::kModeFramePlace.left, form::kModeFramePlace.top);
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

void Modes::ModeFieldsReadBack(int mode) {
  if (!state_.connected()) {
    return;
  }
  const Mode& chosen = modeAt(mode);
  for (int i = chosen.firstBox; i <= chosen.lastBox; ++i) {
    toolkit::TextBox& box = form_.txtInput(i);
    if (box.enabled() || !chosen.onlyEnabledBoxes) {
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
    attempt([&] { speed.setListIndex(answer == "1" ? 1 : 0); });
  }
}

void Modes::tagGoNogoBoxes() const {
  const bool cv = form_.optMode(kCv).value();
  form_.txtInput(kGoNogoHighBox).setTag(cv ? "42" : "38");
  form_.txtInput(kGoNogoLowBox).setTag(cv ? "43" : "39");
}

bool Modes::isGroupChannel() const {
  const std::string_view channel = form_.cmbChannel.text();
  return channel.ends_with("G1") || channel.ends_with("G2");
}

}  // namespace lumodevice::panel
