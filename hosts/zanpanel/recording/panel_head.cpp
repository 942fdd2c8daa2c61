#include "hosts/zanpanel/recording/panel_head.hpp"

#include "lumodevice/toolkit/controls.hpp"
#include "lumodevice/toolkit/reach.hpp"

namespace zanpanel {

namespace toolkit = lumodevice::toolkit;

namespace {

/// Visible together with the frame that it sits in, wherever the form itself lies.
bool shown(const toolkit::Control& control) {
  const toolkit::Control* const frame = control.container();
  return control.visible() && frame != nullptr && frame->visible();
}

}  // namespace

Head settingsOf(const toolkit::Surface& surface) {
  Head head;
  for (const auto& control : surface.controls()) {
    if (!shown(*control)) {
      continue;
    }
    if (const auto* mode = dynamic_cast<const toolkit::OptionButton*>(control.get())) {
      if (mode->name() == "optMode" && mode->value()) {
        head.emplace_back("Mode", mode->caption());
      }
    } else if (const auto* text = dynamic_cast<const toolkit::TextBox*>(control.get())) {
      if (text->name() == "txtInput") {
        head.emplace_back(text->look().accessibleName, text->text());
      }
    } else if (const auto* box = dynamic_cast<const toolkit::CheckBox*>(control.get())) {
      if (box->container()->name() == "fraOverChk") {
        head.emplace_back(box->caption(),
                          box->value() == toolkit::CheckBox::kTicked ? "on" : "off");
      }
    }
  }
  const auto& range = surface.get<toolkit::ComboBox>("cmbVolRange");
  head.emplace_back("Voltage range", std::string(range.text()));
  return head;
}

}  // namespace zanpanel
