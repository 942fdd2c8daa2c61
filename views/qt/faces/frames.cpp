#include <QtWidgets/QGroupBox>

#include "views/qt/faces/face.hpp"
#include "views/qt/texts.hpp"

namespace lumodevice::qt {

namespace {

class FrameFace : public Face {
 public:
  FrameFace(const toolkit::Frame& frame, QWidget& parent)
      : FrameFace(frame, *new QGroupBox(&parent)) {}

  void draw(toolkit::Property property, int /*item*/) override {
    if (property == toolkit::Property::Caption) {
      drawAll();
    }
  }
  void drawAll() override { box_.setTitle(marked(frame_.caption(), frame_.look().mnemonic)); }

 private:
  FrameFace(const toolkit::Frame& frame, QGroupBox& box)
      : Face(frame, box), frame_(frame), box_(box) {
    // It may lie over others, which then must not show through.
    box.setAutoFillBackground(true);
  }

  const toolkit::Frame& frame_;
  QGroupBox& box_;
};

}  // namespace

std::unique_ptr<Face> makeFrame(Stage& /*stage*/, toolkit::Frame& frame, QWidget& parent) {
  return std::make_unique<FrameFace>(frame, parent);
}

}  // namespace lumodevice::qt
