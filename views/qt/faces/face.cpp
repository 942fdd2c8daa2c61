#include "views/qt/faces/face.hpp"

#include <utility>

#include "views/qt/act.hpp"

namespace lumodevice::qt {

void Stage::act(const toolkit::Control& control, std::function<void()> deed) const {
  Act::post(view_, [life = control.life(), deed = std::move(deed)] {
    if (!life.expired()) {
      deed();
    }
  });
}

std::unique_ptr<Face> makeFace(Stage& stage, toolkit::Control& control, QWidget& parent) {
  using toolkit::Kind;
  switch (control.kind()) {
    case Kind::Form:
    case Kind::Timer:
      return nullptr;
    case Kind::Frame:
      return makeFrame(stage, dynamic_cast<toolkit::Frame&>(control), parent);
    case Kind::Label:
      return makeLabel(stage, dynamic_cast<toolkit::Label&>(control), parent);
    case Kind::TextBox:
      return makeTextBox(stage, dynamic_cast<toolkit::TextBox&>(control), parent);
    case Kind::ComboBox:
      return makeComboBox(stage, dynamic_cast<toolkit::ComboBox&>(control), parent);
    case Kind::ListBox:
      return makeListBox(stage, dynamic_cast<toolkit::ListBox&>(control), parent);
    case Kind::CheckBox:
      return makeCheckBox(stage, dynamic_cast<toolkit::CheckBox&>(control), parent);
    case Kind::OptionButton:
      return makeOption(stage, dynamic_cast<toolkit::OptionButton&>(control), parent);
    case Kind::CommandButton:
      return makeButton(stage, dynamic_cast<toolkit::CommandButton&>(control), parent);
    case Kind::PictureBox:
    case Kind::Image:
      return makePicture(stage, dynamic_cast<toolkit::Pictured&>(control), parent);
  }
  return nullptr;
}

}  // namespace lumodevice::qt
