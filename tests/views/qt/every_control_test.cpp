#include <QtTest/QTest>
#include <QtWidgets/QComboBox>
#include <chrono>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "lumodevice/form/controls.hpp"
#include "lumodevice/form/table_checks.hpp"
#include "lumodevice/qt/form_view.hpp"
#include "lumodevice/toolkit/hand.hpp"
#include "tests/support/form_acts.hpp"
#include "tests/views/qt/shown.hpp"
#include "tests/views/qt/widget_hand.hpp"

// The panel's form alone, without the component: what is done to a control or its widget does
// nothing else. What is tested of one control is tested of all, as the form's table has them.
namespace lumodevice::qt {
namespace {

using support::differences;
using toolkit::Control;

class EveryControl : public testing::Test {
 protected:
  EveryControl() {
    view.resize(view.sizeHint());
    view.show();
    view.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&view));
  }

  /// All of one type that an operator could use.
  template <typename ControlType>
  std::vector<ControlType*> all() {
    std::vector<ControlType*> found;
    for (const auto& control : surface.controls()) {
      if (auto* const typed = dynamic_cast<ControlType*>(control.get())) {
        found.push_back(typed);
      }
    }
    EXPECT_FALSE(found.empty());
    return found;
  }

  toolkit::VirtualLoop loop;
  form::Controls form{loop};
  toolkit::Surface& surface = form.surface();
  FormView view{surface};
  support::WidgetHand hand{view};
};

TEST_F(EveryControl, isShownAsItIs) {
  EXPECT_EQ(differences(view, surface), "");
}

TEST_F(EveryControl, isShownAsItIsByAViewThatComesLater) {
  form.frmSetting.setVisible(false);
  form.cmbChannel.addItem("CH1-2040");
  form.cmbChannel.setListIndex(0);
  form.chkLoad.setValue(toolkit::CheckBox::kGreyed);
  form.panel.setEnabled(false);
  const FormView late(surface);
  EXPECT_EQ(differences(late, surface), "");
  EXPECT_EQ(differences(view, surface), "");
}

TEST_F(EveryControl, isShownAsItIsAfterAnyRunOfChangesByCode) {
  std::mt19937 random(1);
  const auto& controls = surface.controls();
  for (int i = 0; i < 3000; ++i) {
    support::act(*controls[random() % controls.size()], random);
    if (i % 500 == 499) {
      ASSERT_EQ(differences(view, surface), "") << i;
      support::WidgetHand::flush();
    }
  }
}

TEST_F(EveryControl, thatIsAButtonIsClickedOnce) {
  for (toolkit::CommandButton* button : all<toolkit::CommandButton>()) {
    support::expose(*button);
    int clicks = 0;
    const auto watching = button->click.observe([&clicks] { ++clicks; });
    EXPECT_TRUE(hand.click(*button));
    EXPECT_EQ(clicks, 1) << button->fullName();
    button->setEnabled(false);
    EXPECT_FALSE(hand.click(*button));
    EXPECT_EQ(clicks, 1) << button->fullName();
  }
}

TEST_F(EveryControl, thatIsALabelIsClickedOnce) {
  for (toolkit::Label* label : all<toolkit::Label>()) {
    support::expose(*label);
    int clicks = 0;
    const auto watching = label->click.observe([&clicks] { ++clicks; });
    EXPECT_TRUE(hand.click(*label));
    EXPECT_EQ(clicks, 1) << label->fullName();
  }
}

TEST_F(EveryControl, thatIsACheckBoxFlips) {
  for (toolkit::CheckBox* box : all<toolkit::CheckBox>()) {
    support::expose(*box);
    for (const int before : {0, 1, 2}) {
      box->setValue(before);
      EXPECT_TRUE(hand.click(*box));
      EXPECT_EQ(box->value(), before == 0 ? 1 : 0) << box->fullName() << before;
      EXPECT_EQ(differences(view, *box), "");
    }
    box->setEnabled(false);
    EXPECT_FALSE(hand.click(*box));
    EXPECT_EQ(box->value(), 0) << box->fullName();
  }
}

TEST_F(EveryControl, thatIsAnOptionIsChosen) {
  for (toolkit::OptionButton* option : all<toolkit::OptionButton>()) {
    support::expose(*option);
    EXPECT_TRUE(hand.click(*option));
    EXPECT_TRUE(option->value()) << option->fullName();
    EXPECT_EQ(differences(view, surface), "");
    EXPECT_TRUE(hand.click(*option)) << "once more changes nothing";
    EXPECT_TRUE(option->value()) << option->fullName();
  }
}

TEST_F(EveryControl, thatIsAFieldIsTypedInto) {
  for (toolkit::TextBox* box : all<toolkit::TextBox>()) {
    support::expose(*box);
    box->setText("before");
    const bool reading = box->look().colorRole == toolkit::ColorRole::Value;
    EXPECT_EQ(hand.type(*box, "1.5 Vx"), !reading);
    EXPECT_EQ(box->text(), reading ? "before" : "1.5 Vx") << box->fullName();
    std::vector<toolkit::Key> keys;
    const auto watching = box->keyDown.observe([&keys](toolkit::Key key) { keys.push_back(key); });
    for (const toolkit::Key key : {toolkit::Key::Enter, toolkit::Key::Up, toolkit::Key::Down}) {
      EXPECT_TRUE(hand.press(*box, key));
    }
    EXPECT_EQ(keys, (std::vector{toolkit::Key::Enter, toolkit::Key::Up, toolkit::Key::Down}))
        << box->fullName();
    const std::string text = box->text();
    box->setEnabled(false);
    EXPECT_FALSE(hand.type(*box, "refused"));
    EXPECT_EQ(box->text(), text) << box->fullName();
    EXPECT_EQ(differences(view, *box), "");
  }
}

TEST_F(EveryControl, thatIsAComboBoxIsPickedFrom) {
  for (toolkit::ComboBox* box : all<toolkit::ComboBox>()) {
    support::expose(*box);
    box->clear();
    for (const char* item : {"one", "two", "three"}) {
      box->addItem(item);
    }
    int clicks = 0;
    const auto watching = box->click.observe([&clicks] { ++clicks; });
    EXPECT_TRUE(hand.select(*box, 1));
    EXPECT_EQ(box->listIndex(), 1) << box->fullName();
    EXPECT_EQ(box->text(), "two");
    EXPECT_EQ(clicks, 1) << box->fullName();
    EXPECT_TRUE(hand.select(*box, 1)) << "the same entry once more";
    EXPECT_EQ(clicks, 2) << box->fullName();
    EXPECT_EQ(differences(view, *box), "");
    if (box->look().comboStyle == toolkit::ComboStyle::Editable) {
      EXPECT_TRUE(hand.type(*box, "typed"));
      EXPECT_EQ(box->text(), "typed") << box->fullName();
    }
  }
}

TEST_F(EveryControl, thatIsAListIsPickedFrom) {
  for (toolkit::ListBox* box : all<toolkit::ListBox>()) {
    support::expose(*box);
    for (const char* item : {"CH1", "CH2", "CH3"}) {
      box->addItem(item);
    }
    int clicks = 0;
    const auto watching = box->click.observe([&clicks] { ++clicks; });
    EXPECT_TRUE(hand.select(*box, 2));
    EXPECT_EQ(box->text(), "CH3") << box->fullName();
    EXPECT_EQ(clicks, 1) << box->fullName();
  }
}

TEST_F(EveryControl, thatIsAPictureKnowsWhereItIsPressed) {
  for (toolkit::Pictured* picture : all<toolkit::Pictured>()) {
    support::expose(*picture);
    std::vector<toolkit::MousePress> presses;
    int clicks = 0;
    const auto pressing = picture->mouseDown.observe(
        [&](const toolkit::MousePress& press) { presses.push_back(press); });
    const auto clicking = picture->click.observe([&clicks] { ++clicks; });
    QWidget* const widget = view.widgetOf(*picture);
    QTest::mouseClick(widget, Qt::LeftButton, Qt::ShiftModifier | Qt::AltModifier, QPoint(20, 10));
    QTest::mouseClick(widget, Qt::RightButton, {}, QPoint(1, 1));
    support::WidgetHand::flush();
    ASSERT_EQ(presses.size(), 2U) << picture->fullName();
    EXPECT_EQ(presses[0].button, toolkit::MousePress::kLeft);
    EXPECT_EQ(presses[0].shift, toolkit::MousePress::kShift + toolkit::MousePress::kAlt);
    EXPECT_NEAR(presses[0].x, 20 * 15, 15);
    EXPECT_NEAR(presses[0].y, 10 * 15, 15);
    EXPECT_EQ(presses[1].button, toolkit::MousePress::kRight);
    EXPECT_EQ(clicks, 1) << picture->fullName();
    QTest::keyClick(widget, Qt::Key_Space);
    support::WidgetHand::flush();
    EXPECT_EQ(clicks, 2) << picture->fullName();
  }
}

TEST_F(EveryControl, thatTheEnterKeyClicksIsClicked) {
  int fields = 0;
  for (const auto& control : surface.controls()) {
    const std::string& name = control->look().enterClicks;
    if (name.empty()) {
      continue;
    }
    ++fields;
    support::expose(*control);
    auto& button = dynamic_cast<toolkit::CommandButton&>(
        name.ends_with(')') ? *surface.find("cmdSet", control->index()) : *surface.find(name));
    button.setEnabled(true);
    int clicks = 0;
    const auto watching = button.click.observe([&clicks] { ++clicks; });
    EXPECT_TRUE(hand.press(*control, toolkit::Key::Enter));
    EXPECT_EQ(clicks, 1) << control->fullName();
  }
  EXPECT_EQ(fields, 29 + 3);
}

TEST_F(EveryControl, thatIsWorkedWithIsAStopOfTheTabKeyInTheOrderOfTheForm) {
  form.frmSetting.setVisible(false);
  form.optMode(0).setValue(true);
  std::vector<std::string> stops;
  QTest::keyClick(view.window(), Qt::Key_Tab);
  const QWidget* const first = QApplication::focusWidget();
  ASSERT_NE(first, nullptr);
  do {
    stops.push_back(QApplication::focusWidget()->objectName().toStdString());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  } while (QApplication::focusWidget() != first && stops.size() < 100);
  // Of a group of options it is the chosen one, and what is disabled is passed over.
  std::vector<std::string> expected;
  for (const auto& control : surface.controls()) {
    const auto* const option = dynamic_cast<const toolkit::OptionButton*>(control.get());
    if (form::checks::isWorkedWith(control->kind()) && control->usable() &&
        view.widgetOf(*control)->isVisibleTo(&view) && (option == nullptr || option->value())) {
      expected.push_back(control->fullName());
    }
  }
  const auto begin = std::find(stops.begin(), stops.end(), expected.front());
  ASSERT_NE(begin, stops.end());
  std::rotate(stops.begin(), begin, stops.end());
  EXPECT_EQ(stops, expected);
}

}  // namespace
}  // namespace lumodevice::qt
