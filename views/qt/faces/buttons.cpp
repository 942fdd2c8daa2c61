#include <QtWidgets/QButtonGroup>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QRadioButton>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleOptionButton>
#include <QtWidgets/QStylePainter>
#include <algorithm>

#include "lumodevice/toolkit/hand.hpp"
#include "views/qt/dress.hpp"
#include "views/qt/faces/face.hpp"
#include "views/qt/texts.hpp"

namespace lumodevice::qt {

namespace {

using toolkit::Property;

/// What the three share: a caption, and that they are clicked.
template <typename ControlType, typename ButtonType>
class ButtonFace : public Face {
 public:
  ButtonFace(Stage& stage, ControlType& control, QWidget& parent)
      : ButtonFace(stage, control, *new ButtonType(&parent)) {}

  void draw(Property property, int /*item*/) override {
    if (property == Property::Caption) {
      drawCaption();
    } else if (property == Property::Value) {
      drawValue();
    }
  }
  void drawAll() override {
    drawCaption();
    drawValue();
  }

 protected:
  [[nodiscard]] ControlType& model() const { return control_; }
  [[nodiscard]] ButtonType& button() const { return button_; }
  virtual void drawValue() {}
  /// What stands beside the caption, in pixels.
  [[nodiscard]] virtual int beside() const = 0;

 private:
  ButtonFace(Stage& stage, ControlType& control, ButtonType& button)
      : Face(control, button), control_(control), button_(button) {
    QObject::connect(&button, &QAbstractButton::clicked, &button, [&stage, &control] {
      stage.act(control, [&control] { toolkit::hand::click(control); });
    });
  }

  void drawCaption() {
    const QString whole = shown(control_.caption());
    const int room = button_.width() - beside();
    const QFontMetrics letters = button_.fontMetrics();
    button_.setText(letters.horizontalAdvance(whole) <= room
                        ? marked(control_.caption(), control_.look().mnemonic)
                        : letters.elidedText(whole, Qt::ElideRight, room)
                              .replace(QLatin1Char('&'), QLatin1String("&&")));
  }

  ControlType& control_;
  ButtonType& button_;
};

class CommandButtonFace : public ButtonFace<toolkit::CommandButton, QPushButton> {
 public:
  CommandButtonFace(Stage& stage, toolkit::CommandButton& control, QWidget& parent)
      : ButtonFace(stage, control, parent) {
    button().setAutoDefault(false);
  }

 protected:
  [[nodiscard]] int beside() const override {
    return 2 * button().style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, &button());
  }
};

/// One that must not be overlooked is painted all over while it is ticked.
class CheckWidget : public QCheckBox {
 public:
  using QCheckBox::QCheckBox;
  void setWarning(bool warning) {
    warning_ = warning;
    update();
  }

 protected:
  void paintEvent(QPaintEvent* event) override {
    if (!warning_) {
      QCheckBox::paintEvent(event);
      return;
    }
    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    if (isEnabled() && checkState() == Qt::Checked) {
      constexpr double kRounding = 4;
      painter.setRenderHint(QPainter::Antialiasing);
      painter.setPen(Qt::NoPen);
      painter.setBrush(alarmColour());
      painter.drawRoundedRect(rect(), kRounding, kRounding);
      option.palette.setColor(QPalette::WindowText, onAlarmColour());
    } else if (isEnabled()) {
      option.palette.setColor(QPalette::WindowText,
                              parentWidget()->palette().color(QPalette::WindowText));
    }
    option.rect.adjust(kMargin, 0, 0, 0);
    painter.drawControl(QStyle::CE_CheckBox, option);
  }
  [[nodiscard]] bool hitButton(const QPoint& position) const override {
    return rect().contains(position);
  }

 private:
  static constexpr int kMargin = 8;
  bool warning_ = false;
};

class CheckBoxFace : public ButtonFace<toolkit::CheckBox, CheckWidget> {
 public:
  using ButtonFace::ButtonFace;

 protected:
  void drawValue() override {
    button().setWarning(model().look().colorRole == toolkit::ColorRole::Warning);
    const bool greyed = model().value() == toolkit::CheckBox::kGreyed;
    button().setTristate(greyed);
    button().setCheckState(greyed                                          ? Qt::PartiallyChecked
                           : model().value() == toolkit::CheckBox::kTicked ? Qt::Checked
                                                                           : Qt::Unchecked);
  }
  [[nodiscard]] int beside() const override {
    const QStyle& style = *button().style();
    return style.pixelMetric(QStyle::PM_IndicatorWidth, nullptr, &button()) +
           style.pixelMetric(QStyle::PM_CheckBoxLabelSpacing, nullptr, &button());
  }
};

/// The options of one container are a group, so that Tab stops at the chosen one and the arrow keys
/// walk among them.
class OptionFace : public ButtonFace<toolkit::OptionButton, QRadioButton> {
 public:
  OptionFace(Stage& stage, toolkit::OptionButton& control, QWidget& parent)
      : ButtonFace(stage, control, parent) {
    auto* group = parent.findChild<QButtonGroup*>(QString(), Qt::FindDirectChildrenOnly);
    if (group == nullptr) {
      group = new QButtonGroup(&parent);
    }
    group->addButton(&button());
  }

 protected:
  void drawValue() override {
    // A group does not let go of its last one otherwise.
    button().group()->setExclusive(model().value());
    button().setChecked(model().value());
    button().group()->setExclusive(true);
  }
  [[nodiscard]] int beside() const override {
    const QStyle& style = *button().style();
    return style.pixelMetric(QStyle::PM_ExclusiveIndicatorWidth, nullptr, &button()) +
           style.pixelMetric(QStyle::PM_RadioButtonLabelSpacing, nullptr, &button());
  }
};

}  // namespace

std::unique_ptr<Face> makeButton(Stage& stage, toolkit::CommandButton& button, QWidget& parent) {
  return std::make_unique<CommandButtonFace>(stage, button, parent);
}

std::unique_ptr<Face> makeCheckBox(Stage& stage, toolkit::CheckBox& box, QWidget& parent) {
  return std::make_unique<CheckBoxFace>(stage, box, parent);
}

std::unique_ptr<Face> makeOption(Stage& stage, toolkit::OptionButton& option, QWidget& parent) {
  return std::make_unique<OptionFace>(stage, option, parent);
}

}  // namespace lumodevice::qt
