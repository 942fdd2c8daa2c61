#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

#include "lumodevice/form/controls.hpp"
#include "lumodevice/form/table_checks.hpp"
#include "lumodevice/toolkit/drawing.hpp"
#include "lumodevice/toolkit/handling.hpp"
#include "tests/support/form_acts.hpp"
#include "tests/views/win32/form_window.hpp"

// The panel's form alone, without the component: what is done to a control or its window does
// nothing else. What is tested of one control is tested of all, as the form's table has them.
namespace lumodevice::win32 {
namespace {

using support::all;
using support::differences;

class EveryControl : public testing::Test {
 protected:
  toolkit::VirtualLoop loop;
  form::Controls form{loop};
  toolkit::Surface& surface = form.surface();
  support::FormWindow window{surface};
  FormView& view = window.view;
  support::WindowHand& hand = window.hand;
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
  const support::FormWindow late(surface);
  EXPECT_EQ(differences(late.view, surface), "");
  EXPECT_EQ(differences(view, surface), "");
}

TEST_F(EveryControl, isShownAsItIsAfterAnyRunOfChangesByCode) {
  std::mt19937 random(1);
  const auto& controls = surface.controls();
  for (int i = 0; i < 1000; ++i) {
    support::act(*controls[random() % controls.size()], random);
    if (i % 250 == 249) {
      ASSERT_EQ(differences(view, surface), "") << i;
      support::WindowHand::flush();
    }
  }
  EXPECT_EQ(window.failures, "");
}

TEST_F(EveryControl, liesWhereTheFormHasIt) {
  for (const auto& control : surface.controls()) {
    const HWND own = view.windowOf(*control);
    if (own == nullptr || control->container() == nullptr) {
      continue;
    }
    RECT place{};
    GetWindowRect(own, &place);
    MapWindowPoints(nullptr, view.windowOf(*control->container()), reinterpret_cast<POINT*>(&place),
                    2);
    // Where letters are larger the form is, too.
    const double scale = view.size().width / (11400 / 15.0);
    constexpr double kRounding = 1;
    EXPECT_NEAR(place.left, control->place().left / 15.0 * scale, kRounding) << control->fullName();
    EXPECT_NEAR(place.top, control->place().top / 15.0 * scale, kRounding) << control->fullName();
    EXPECT_NEAR(place.right - place.left, control->place().width / 15.0 * scale, kRounding)
        << control->fullName();
    EXPECT_NEAR(place.bottom - place.top, control->place().height / 15.0 * scale, kRounding)
        << control->fullName();
  }
}

TEST_F(EveryControl, thatIsAButtonIsClickedOnce) {
  for (toolkit::CommandButton* button : all<toolkit::CommandButton>(surface)) {
    support::expose(*button);
    int clicks = 0;
    const auto watching = button->click.observe([&clicks] { ++clicks; });
    EXPECT_TRUE(hand.click(*button)) << button->fullName();
    EXPECT_EQ(clicks, 1) << button->fullName();
    EXPECT_TRUE(hand.press(*button, VK_RETURN));
    EXPECT_EQ(clicks, 2) << button->fullName();
    button->setEnabled(false);
    EXPECT_FALSE(hand.click(*button));
    EXPECT_EQ(clicks, 2) << button->fullName();
  }
}

TEST_F(EveryControl, thatIsALabelIsClickedOnce) {
  for (toolkit::Label* label : all<toolkit::Label>(surface)) {
    support::expose(*label);
    int clicks = 0;
    const auto watching = label->click.observe([&clicks] { ++clicks; });
    EXPECT_TRUE(hand.click(*label));
    EXPECT_EQ(clicks, 1) << label->fullName();
  }
}

TEST_F(EveryControl, thatIsACheckBoxFlips) {
  for (toolkit::CheckBox* box : all<toolkit::CheckBox>(surface)) {
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
  for (toolkit::OptionButton* option : all<toolkit::OptionButton>(surface)) {
    support::expose(*option);
    EXPECT_TRUE(hand.click(*option));
    EXPECT_TRUE(option->value()) << option->fullName();
    EXPECT_EQ(differences(view, surface), "");
    EXPECT_TRUE(hand.click(*option)) << "once more changes nothing";
    EXPECT_TRUE(option->value()) << option->fullName();
  }
}

TEST_F(EveryControl, thatIsAnOptionIsNotChosenByTheFocusAlone) {
  support::expose(form.optMode(3));
  int clicks = 0;
  const auto watching = form.optMode(3).click.observe([&clicks] { ++clicks; });
  SetFocus(view.windowOf(form.optMode(3)));
  support::WindowHand::flush();
  EXPECT_EQ(clicks, 0);
  EXPECT_FALSE(form.optMode(3).value());
}

TEST_F(EveryControl, thatIsAFieldIsTypedInto) {
  for (toolkit::TextBox* box : all<toolkit::TextBox>(surface)) {
    support::expose(*box);
    box->setText("before");
    const bool reading = box->look().colorRole == toolkit::ColorRole::Value;
    EXPECT_EQ(hand.type(*box, "1.5 V\xC3\xA4"), !reading);
    std::vector<toolkit::Key> keys;
    const auto watching = box->keyDown.observe([&keys](toolkit::Key key) { keys.push_back(key); });
    for (const WPARAM key : {VK_RETURN, VK_UP, VK_DOWN}) {
      EXPECT_TRUE(hand.press(*box, key));
    }
    EXPECT_EQ(box->text(), reading ? "before" : "1.5 V\xC3\xA4") << box->fullName();
    EXPECT_EQ(keys, (std::vector{toolkit::Key::Enter, toolkit::Key::Up, toolkit::Key::Down}))
        << box->fullName();
    box->setEnabled(false);
    EXPECT_FALSE(hand.type(*box, "refused"));
    EXPECT_EQ(differences(view, *box), "");
  }
}

TEST_F(EveryControl, thatIsAComboBoxIsPickedFrom) {
  for (toolkit::ComboBox* box : all<toolkit::ComboBox>(surface)) {
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
  for (toolkit::ListBox* box : all<toolkit::ListBox>(surface)) {
    support::expose(*box);
    for (const char* item : {"CH1", "CH2", "CH3"}) {
      box->addItem(item);
    }
    int clicks = 0;
    const auto watching = box->click.observe([&clicks] { ++clicks; });
    EXPECT_TRUE(hand.select(*box, 2));
    EXPECT_EQ(box->text(), "CH3") << box->fullName();
    EXPECT_EQ(clicks, 1) << box->fullName();
    EXPECT_TRUE(hand.press(*box, VK_UP));
    EXPECT_EQ(box->text(), "CH2") << box->fullName();
    EXPECT_EQ(clicks, 2) << box->fullName();
  }
}

TEST_F(EveryControl, thatIsAListIsDraggedFromAndOnto) {
  const auto lists = all<toolkit::ListBox>(surface);
  for (toolkit::ListBox* list : lists) {
    support::expose(*list);
    list->addItem("CH1");
    list->addItem("CH3");
    list->setOleDropMode(toolkit::ListBox::kDropManual);
  }
  for (toolkit::ListBox* from : lists) {
    toolkit::handle(from->startDrag, [from](toolkit::DragData& data) {
      data = {std::string(from->text()), toolkit::kDropEffectMove};
    });
  }
  for (toolkit::ListBox* from : lists) {
    for (toolkit::ListBox* onto : lists) {
      std::string dropped;
      const auto watching =
          onto->drop.observe([&dropped](const toolkit::DragData& data) { dropped += data.text; });
      EXPECT_TRUE(hand.drag(*from, 1, *onto));
      EXPECT_EQ(dropped, "CH3") << from->fullName() << " to " << onto->fullName();
    }
  }
  lists[1]->setOleDropMode(toolkit::ListBox::kDropNone);
  std::string dropped;
  const auto watching =
      lists[1]->drop.observe([&dropped](const toolkit::DragData& data) { dropped += data.text; });
  EXPECT_TRUE(hand.drag(*lists[0], 0, *lists[1]));
  EXPECT_EQ(dropped, "");
}

TEST_F(EveryControl, thatIsAPictureKnowsWhereItIsPressed) {
  for (toolkit::Pictured* picture : all<toolkit::Pictured>(surface)) {
    support::expose(*picture);
    std::vector<toolkit::MousePress> presses;
    int clicks = 0;
    const auto pressing = picture->mouseDown.observe(
        [&](const toolkit::MousePress& press) { presses.push_back(press); });
    const auto clicking = picture->click.observe([&clicks] { ++clicks; });
    const HWND own = view.windowOf(*picture);
    SendMessageW(own, WM_LBUTTONDOWN, MK_LBUTTON | MK_SHIFT, MAKELPARAM(20, 10));
    SendMessageW(own, WM_LBUTTONUP, 0, MAKELPARAM(20, 10));
    SendMessageW(own, WM_RBUTTONDOWN, MK_RBUTTON, MAKELPARAM(1, 1));
    support::WindowHand::flush();
    ASSERT_EQ(presses.size(), 2U) << picture->fullName();
    EXPECT_EQ(presses[0].button, toolkit::MousePress::kLeft);
    EXPECT_EQ(presses[0].shift, toolkit::MousePress::kShift);
    EXPECT_NEAR(presses[0].x, 20 * 15, 30);
    EXPECT_NEAR(presses[0].y, 10 * 15, 30);
    EXPECT_EQ(presses[1].button, toolkit::MousePress::kRight);
    EXPECT_EQ(clicks, 1) << picture->fullName();
    EXPECT_TRUE(hand.press(*picture, VK_SPACE));
    EXPECT_EQ(clicks, 2) << picture->fullName();
  }
}

TEST_F(EveryControl, thatTheEnterKeyClicksIsClicked) {
  int fields = 0;
  for (const auto& control : surface.controls()) {
    toolkit::Control* const button = toolkit::clickedByEnter(*control);
    if (control->look().enterClicks.empty() || button == nullptr) {
      continue;
    }
    ++fields;
    support::expose(*control);
    button->setEnabled(true);
    int clicks = 0;
    const auto watching =
        dynamic_cast<toolkit::CommandButton&>(*button).click.observe([&clicks] { ++clicks; });
    EXPECT_TRUE(hand.press(*control, VK_RETURN));
    EXPECT_EQ(clicks, 1) << control->fullName();
  }
  EXPECT_EQ(fields, 29 + 3);
}

// ---- the keyboard

class Keys : public EveryControl {
 protected:
  Keys() {
    form.frmSetting.setVisible(false);
    form.optMode(0).setValue(true);
  }
  /// The control that has the focus.
  [[nodiscard]] std::string focused() const {
    for (const auto& control : surface.controls()) {
      const HWND own = view.windowOf(*control);
      if (control->kind() != toolkit::Kind::Frame && control->kind() != toolkit::Kind::Form &&
          own != nullptr && (own == GetFocus() || IsChild(own, GetFocus()) != FALSE)) {
        return control->fullName();
      }
    }
    return "";
  }
  /// As a program's loop has it. False when the view leaves it to the program.
  [[nodiscard]] bool key(UINT message, WPARAM key) {
    MSG pressed{};
    pressed.hwnd = GetFocus();
    pressed.message = message;
    pressed.wParam = key;
    const bool taken = view.translate(pressed);
    support::WindowHand::flush();
    return taken;
  }
  /// In the order of the Tab key. Of a group of options it is the chosen one, and what is disabled
  /// is passed over.
  [[nodiscard]] std::vector<std::string> expectedStops() const {
    std::vector<std::string> stops;
    for (const auto& control : surface.controls()) {
      const auto* const option = dynamic_cast<const toolkit::OptionButton*>(control.get());
      if (form::checks::isWorkedWith(control->kind()) && control->usable() &&
          toolkit::seen(surface, *control) && (option == nullptr || option->value())) {
        stops.push_back(control->fullName());
      }
    }
    return stops;
  }
};

TEST_F(Keys, tabStopsAtAllThatIsWorkedWithInTheOrderOfTheForm) {
  ASSERT_TRUE(view.focusEnd(true));
  std::vector<std::string> stops;
  const std::string first = focused();
  do {
    stops.push_back(focused());
    EXPECT_TRUE(key(WM_KEYDOWN, VK_TAB));
  } while (focused() != first && stops.size() < 100);
  EXPECT_EQ(stops, expectedStops());
}

TEST_F(Keys, tabStopsThereWhereNobodyTranslatesMessagesToo) {
  ASSERT_TRUE(view.focusEnd(true));
  std::vector<std::string> stops;
  for (std::size_t i = 0; i < expectedStops().size(); ++i) {
    stops.push_back(focused());
    SendMessageW(GetFocus(), WM_KEYDOWN, VK_TAB, 1);
  }
  EXPECT_EQ(stops, expectedStops());
}

TEST_F(Keys, tabLeavesTheFormWhereTheProgramGoesOn) {
  view.setTabLeaves(true);
  ASSERT_TRUE(view.focusEnd(false));
  const std::string last = focused();
  EXPECT_EQ(last, expectedStops().back());
  EXPECT_FALSE(key(WM_KEYDOWN, VK_TAB));
  EXPECT_EQ(focused(), last);
}

TEST_F(Keys, anArrowChoosesTheNextOption) {
  ASSERT_TRUE(view.focusEnd(true));
  SetFocus(view.windowOf(form.optMode(0)));
  EXPECT_TRUE(key(WM_KEYDOWN, VK_DOWN));
  EXPECT_EQ(focused(), "optMode(1)");
  EXPECT_TRUE(form.optMode(1).value());
  EXPECT_TRUE(key(WM_KEYDOWN, VK_UP));
  EXPECT_TRUE(key(WM_KEYDOWN, VK_UP));
  EXPECT_EQ(focused(), "optMode(8)") << "around the end";
}

TEST_F(Keys, aMarkedLetterGoesToItsControl) {
  ASSERT_TRUE(view.focusEnd(true));
  EXPECT_TRUE(key(WM_SYSCHAR, 'm'));
  EXPECT_EQ(focused(), "optMode(0)") << "that of a frame to what is chosen in it";
  EXPECT_TRUE(key(WM_SYSCHAR, 'A'));
  EXPECT_EQ(focused(), "txtInput(0)") << "that of a label to its field";
  const int before = form.chkOCP.value();
  EXPECT_TRUE(key(WM_SYSCHAR, 'o'));
  EXPECT_EQ(form.chkOCP.value(), 1 - before) << "that of a box ticks it";
  EXPECT_FALSE(key(WM_SYSCHAR, '#'));
  EXPECT_NE(view.mnemonics().find(L'o'), std::wstring::npos);
  EXPECT_EQ(view.mnemonics().find(L'#'), std::wstring::npos);
}

TEST_F(Keys, theFocusWaitsForAControlThatCannotBeUsedForAWhile) {
  SetFocus(view.windowOf(form.chkOCP));
  form.chkOCP.setEnabled(false);
  EXPECT_EQ(focused(), "");
  form.chkOCP.setEnabled(true);
  EXPECT_EQ(focused(), "chkOCP");
  form.chkOCP.setEnabled(false);
  EXPECT_TRUE(key(WM_KEYDOWN, VK_TAB));
  EXPECT_NE(focused(), "") << "goes on from there";
}

}  // namespace
}  // namespace lumodevice::win32
