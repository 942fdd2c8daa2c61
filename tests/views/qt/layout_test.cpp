#include <QtGui/QFontMetrics>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QApplication>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleOptionComboBox>
#include <gtest/gtest.h>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "lumodevice/form/controls.hpp"
#include "lumodevice/qt/form_view.hpp"

// Every state of the panel that can be reached is laid out and looked at with the font that is
// there: what can be seen lies beside what else can be seen, and its texts have room.
namespace lumodevice::qt {
namespace {

QRect placeIn(const FormView& view, const QWidget& widget) {
  return {widget.mapTo(&view, QPoint(0, 0)), widget.size()};
}

std::string text(const QString& characters) {
  return characters.toStdString();
}

/// The widgets of the form's controls that can be seen.
std::vector<const QWidget*> seen(const FormView& view, const toolkit::Surface& surface) {
  std::vector<const QWidget*> found;
  for (const auto& control : surface.controls()) {
    const QWidget* const widget = view.widgetOf(*control);
    if (widget != nullptr && control->container() != nullptr && widget->isVisibleTo(&view)) {
      found.push_back(widget);
    }
  }
  return found;
}

/// A label without a text shows nothing, and a frame as wide as the form is the ground of others.
bool isFilled(const QWidget& widget) {
  const auto* const label = qobject_cast<const QLabel*>(&widget);
  const bool page = qobject_cast<const QGroupBox*>(&widget) != nullptr &&
                    widget.width() == widget.parentWidget()->width();
  return !page && (label == nullptr || !label->text().isEmpty());
}

std::string overlaps(const FormView& view, const std::vector<const QWidget*>& widgets) {
  std::string wrong;
  for (std::size_t i = 0; i < widgets.size(); ++i) {
    for (std::size_t j = i + 1; j < widgets.size(); ++j) {
      const QWidget& a = *widgets[i];
      const QWidget& b = *widgets[j];
      const bool nested = a.isAncestorOf(&b) || b.isAncestorOf(&a);
      if (!nested && isFilled(a) && isFilled(b) && placeIn(view, a).intersects(placeIn(view, b))) {
        wrong += text(a.objectName() + " lies over " + b.objectName() + '\n');
      }
    }
  }
  return wrong;
}

std::string outside(const std::vector<const QWidget*>& widgets) {
  std::string wrong;
  for (const QWidget* widget : widgets) {
    if (!widget->parentWidget()->rect().contains(widget->geometry())) {
      wrong += text(widget->objectName() + " sticks out of what it sits in\n");
    }
  }
  return wrong;
}

/// How wide and high a text is that the widget shows, and the room for it.
struct Fit {
  QString text;
  int room;
};

Fit fitOf(const QWidget& widget) {
  const QStyle& style = *widget.style();
  if (const auto* const label = qobject_cast<const QLabel*>(&widget)) {
    return {label->text().remove(QLatin1Char('&')), label->width()};
  }
  if (const auto* const button = qobject_cast<const QAbstractButton*>(&widget)) {
    const bool mark = qobject_cast<const QPushButton*>(button) == nullptr;
    const int beside = mark ? style.pixelMetric(QStyle::PM_IndicatorWidth) +
                                  style.pixelMetric(QStyle::PM_CheckBoxLabelSpacing)
                            : 2 * style.pixelMetric(QStyle::PM_ButtonMargin);
    return {button->text().remove(QLatin1Char('&')), button->width() - beside};
  }
  if (const auto* const frame = qobject_cast<const QGroupBox*>(&widget)) {
    return {frame->title().remove(QLatin1Char('&')), frame->width() - 2 * 12};
  }
  if (const auto* const combo = qobject_cast<const QComboBox*>(&widget)) {
    QStyleOptionComboBox option;
    option.initFrom(combo);
    option.editable = combo->isEditable();
    const QRect field =
        style.subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, combo);
    QString widest;
    for (int i = 0; i < combo->count(); ++i) {
      const QString item = combo->itemText(i);
      widest = item.size() > widest.size() ? item : widest;
    }
    return {widest, field.width()};
  }
  if (const auto* const field = qobject_cast<const QLineEdit*>(&widget)) {
    constexpr int kFrame = 8;
    return {field->text(), field->width() - kFrame};
  }
  return {QString(), 0};
}

std::string cut(const std::vector<const QWidget*>& widgets) {
  std::string wrong;
  for (const QWidget* widget : widgets) {
    const Fit fit = fitOf(*widget);
    const QFontMetrics letters = widget->fontMetrics();
    const bool list = qobject_cast<const QListWidget*>(widget) != nullptr;
    if (letters.horizontalAdvance(fit.text) > fit.room || fit.text.contains(QStringLiteral("…"))) {
      wrong += text(widget->objectName() + ": no room for the width of " + fit.text + '\n');
    }
    if (!list && !fit.text.isEmpty() && letters.height() > widget->height()) {
      wrong += text(widget->objectName() + ": no room for the height of " + fit.text + '\n');
    }
  }
  return wrong;
}

/// The captions of frames stand within them, above all that sits there.
std::string underCaptions(const std::vector<const QWidget*>& widgets) {
  std::string wrong;
  for (const QWidget* widget : widgets) {
    const auto* const frame = qobject_cast<const QGroupBox*>(widget->parentWidget());
    constexpr int kCaptionTop = 6;
    if (frame != nullptr && widget->y() < kCaptionTop + frame->fontMetrics().height() &&
        widget->x() < 12 + frame->fontMetrics().horizontalAdvance(frame->title()) * 3 / 2) {
      wrong += text(widget->objectName() + " lies on the caption of " + frame->objectName() + '\n');
    }
  }
  return wrong;
}

class Layout : public testing::TestWithParam<int> {
 protected:
  Layout() {
    QFont font = QApplication::font();
    font.setPointSize(GetParam());
    view.setFont(font);
    view.resize(view.sizeHint());
    view.show();
    for (const char* channel : {"CH1-2021L", "CH2-2041-G1", "CH8-2040-G2"}) {
      form.cmbChannel.addItem(channel);
    }
    form.cmbChannel.setListIndex(1);
    form.lblVoRange.setCaption("500");
    form.lblKeyX.setCaption("10245.5");
    form.lblKeyY.setCaption("10245.5");
    for (const char* port : {"COM1", "COM16"}) {
      form.Combo1.addItem(port);
    }
    for (toolkit::TextBox* reading :
         {&form.txtVoltage(0), &form.txtCurrent(0), &form.txtPower(0)}) {
      reading->setText("-123.4567");
    }
    for (toolkit::TextBox* box : form.txtInput) {
      box->setText("-1234.5678");
    }
  }

  void expectInOrder(const std::string& state) {
    const auto widgets = seen(view, surface);
    EXPECT_GT(widgets.size(), 5U) << state;
    EXPECT_EQ(overlaps(view, widgets), "") << state;
    EXPECT_EQ(outside(widgets), "") << state;
    EXPECT_EQ(cut(widgets), "") << state;
    EXPECT_EQ(underCaptions(widgets), "") << state;
    ++states;
  }

  void showHidden(bool shown) {
    for (toolkit::Control* control :
         std::initializer_list<toolkit::Control*>{&form.cmdGetCTRLScrn, &form.cmdWork, &form.TXT}) {
      control->setVisible(shown);
    }
  }

  void showScreen(bool shown) {
    for (toolkit::Pictured* picture :
         std::initializer_list<toolkit::Pictured*>{&form.Picture1, &form.Image1}) {
      picture->setPicture(std::make_shared<toolkit::Picture>(320, 240));
      picture->setVisible(shown);
      picture->bringToFront();
    }
  }

  toolkit::VirtualLoop loop;
  form::Controls form{loop};
  toolkit::Surface& surface = form.surface();
  FormView view{surface};
  int states = 0;
};

TEST_P(Layout, isInOrderInEveryStateOfThePanel) {
  for (const bool hidden : {false, true}) {
    showHidden(hidden);
    form.frmSetting.setVisible(true);
    form.frmSetting.bringToFront();
    expectInOrder("connection panel");
    showScreen(true);
    expectInOrder("connection panel with the screen before it");
    showScreen(false);
    form.frmSetting.setVisible(false);
    for (const bool loadOn : {false, true}) {
      form.chkLoad.setValue(loadOn ? toolkit::CheckBox::kTicked : toolkit::CheckBox::kClear);
      form.chkLoad.setCaption(loadOn ? "CHAN LOAD ON" : "CHAN LOAD OFF");
      for (toolkit::Frame* mode : {&form.FrameCCStatic, &form.fraCCDynamic, &form.FrameCRStatic,
                                   &form.fraCRDynamic, &form.FrameCV}) {
        for (toolkit::Frame* other : {&form.FrameCCStatic, &form.fraCCDynamic, &form.FrameCRStatic,
                                      &form.fraCRDynamic, &form.FrameCV}) {
          other->setVisible(other == mode);
        }
        for (const bool screen : {false, true}) {
          showScreen(screen);
          for (const bool grouping : {false, true}) {
            form.fraParallel.setVisible(grouping);
            form.fraParallel.bringToFront();
            expectInOrder(mode->name() + (screen ? " screen" : "") + (grouping ? " groups" : ""));
          }
          form.fraParallel.setVisible(false);
        }
      }
    }
  }
  EXPECT_EQ(states, 2 * (2 + 2 * 5 * 2 * 2));
}

INSTANTIATE_TEST_SUITE_P(InTheSizes, Layout, testing::Values(8, 9, 11, 14));

TEST(TheLayout, standsOnAGrid) {
  toolkit::VirtualLoop loop;
  form::Controls form(loop);
  constexpr int kTwipsPerStep = 30;  // two pixels: whole ones at one and a half times the size, too
  for (const auto& control : form.surface().controls()) {
    const toolkit::Place& place = control->place();
    for (const int edge : {place.left, place.top, place.width, place.height}) {
      EXPECT_EQ(edge % kTwipsPerStep, 0) << control->fullName();
    }
  }
}

}  // namespace
}  // namespace lumodevice::qt
