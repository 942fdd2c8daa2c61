#include "lumodevice/toolkit/hand.hpp"

#include <gtest/gtest.h>
#include <string>

#include "lumodevice/toolkit/handling.hpp"
#include "lumodevice/toolkit/surface.hpp"

namespace lumodevice::toolkit {
namespace {

class Operator : public testing::Test {
 protected:
  Surface surface;
  Frame& frame = surface.add<Frame>("frame");
  std::string events;

  template <typename ControlType>
  ControlType& make(const char* name) {
    auto& control = surface.add<ControlType>(name, std::nullopt, &frame);
    if constexpr (requires { control.click; }) {
      toolkit::handle(control.click, [this, name] { events += std::string(name) + " "; });
    }
    return control;
  }
};

TEST_F(Operator, clicksWhatCanBeClicked) {
  auto& box = make<CheckBox>("box");
  EXPECT_TRUE(hand::click(make<CommandButton>("button")));
  EXPECT_TRUE(hand::click(make<Label>("label")));
  EXPECT_TRUE(hand::click(make<PictureBox>("picture")));
  EXPECT_TRUE(hand::click(box));
  EXPECT_TRUE(hand::click(make<OptionButton>("option")));
  EXPECT_EQ(events, "button label picture box option ");
  EXPECT_EQ(box.value(), CheckBox::kTicked);
}

TEST_F(Operator, flipsAGreyedCheckBoxToClear) {
  auto& box = make<CheckBox>("box");
  box.setValue(CheckBox::kGreyed);
  hand::click(box);
  EXPECT_EQ(box.value(), CheckBox::kClear);
}

TEST_F(Operator, clicksTheSelectedEntryAgain) {
  auto& combo = make<ComboBox>("combo");
  combo.addItem("CH1");
  EXPECT_TRUE(hand::click(combo));
  EXPECT_EQ(events, "") << "nothing is selected yet";
  hand::select(combo, 0);
  hand::click(combo);
  hand::select(combo, 0);
  EXPECT_EQ(events, "combo combo combo ");
}

TEST_F(Operator, cannotUseWhatIsDisabledWithItsContainers) {
  auto& button = make<CommandButton>("button");
  auto& text = make<TextBox>("text");
  auto& list = make<ListBox>("list");
  list.addItem("CH1");
  frame.setEnabled(false);
  EXPECT_FALSE(hand::click(button));
  EXPECT_FALSE(hand::type(text, "1"));
  EXPECT_FALSE(hand::press(text, Key::Enter));
  EXPECT_FALSE(hand::select(list, 0));
  EXPECT_FALSE(hand::drag(list, "CH1", list));
  EXPECT_EQ(events, "");
  EXPECT_EQ(text.text(), "");
}

TEST_F(Operator, canUseWhatIsHidden) {
  auto& button = make<CommandButton>("button");
  button.setVisible(false);
  EXPECT_TRUE(hand::click(button));
  EXPECT_EQ(events, "button ");
}

TEST_F(Operator, typesAndPressesKeysInFields) {
  auto& text = make<TextBox>("text");
  auto& combo = make<ComboBox>("combo");
  toolkit::handle(text.change, [&] { events += "change "; });
  toolkit::handle(text.keyDown,
                  [&](Key key) { events += std::to_string(static_cast<int>(key)) + " "; });
  EXPECT_TRUE(hand::type(text, "1.5"));
  EXPECT_TRUE(hand::type(text, "1.5"));
  EXPECT_TRUE(hand::press(text, Key::Up));
  EXPECT_TRUE(hand::type(combo, "TCPIP0"));
  EXPECT_EQ(events, "change 38 ");
  EXPECT_EQ(combo.text(), "TCPIP0");
}

TEST_F(Operator, cannotDoWhatAControlDoesNotKnow) {
  auto& label = make<Label>("label");
  auto& image = surface.add<Image>("image");
  EXPECT_THROW(hand::type(label, "x"), PropertyFault);
  EXPECT_THROW(hand::press(label, Key::Enter), PropertyFault);
  EXPECT_THROW(hand::select(label, 0), PropertyFault);
  EXPECT_THROW(hand::click(image), PropertyFault);
  EXPECT_THROW(hand::click(frame), PropertyFault);
  EXPECT_THROW(hand::select(make<ComboBox>("combo"), 0), PropertyFault);
}

class Drag : public Operator {
 protected:
  Drag() {
    from.addItem("CH1");
    from.addItem("CH2");
    onto.setOleDropMode(ListBox::kDropManual);
    toolkit::handle(onto.drop, [this](const DragData& data) { events += "drop " + data.text; });
  }
  ListBox& from = make<ListBox>("from");
  ListBox& onto = make<ListBox>("onto");
};

TEST_F(Drag, carriesWhatTheSourceOffers) {
  toolkit::handle(from.startDrag, [&](DragData& data) {
    data.text = from.text();
    data.allowedEffects = kDropEffectMove;
  });
  EXPECT_TRUE(hand::drag(from, "CH2", onto));
  EXPECT_EQ(events, "from drop CH2") << "pressing the mouse selects the item first";
}

TEST_F(Drag, endsWithoutATextOrAnEffect) {
  toolkit::handle(from.startDrag, [&](DragData& data) { data.allowedEffects = kDropEffectMove; });
  hand::drag(from, "CH1", onto);
  toolkit::handle(from.startDrag, [&](DragData& data) { data.text = "CH1"; });
  hand::drag(from, "CH1", onto);
  EXPECT_EQ(events.find("drop"), std::string::npos);
}

TEST_F(Drag, isNotDroppedWhereDropsAreOff) {
  onto.setOleDropMode(ListBox::kDropNone);
  toolkit::handle(from.startDrag, [&](DragData& data) { data = {"CH1", kDropEffectMove}; });
  hand::drag(from, "CH1", onto);
  EXPECT_EQ(events.find("drop"), std::string::npos);
}

TEST_F(Drag, needsAnItemThatIsThere) {
  try {
    hand::drag(from, "CH9", onto);
    FAIL() << "nothing was refused";
  } catch (const PropertyFault& fault) {
    EXPECT_STREQ(fault.what(), "from holds no item \"CH9\"");
  }
}

}  // namespace
}  // namespace lumodevice::toolkit
