#include "lumodevice/toolkit/properties.hpp"

#include <gtest/gtest.h>

#include "lumodevice/toolkit/controls.hpp"
#include "lumodevice/toolkit/surface.hpp"
#include "lumodevice/toolkit/timer.hpp"

namespace lumodevice::toolkit {
namespace {

class Properties : public testing::Test {
 protected:
  Surface surface;
};

TEST_F(Properties, areReadAndWrittenAsText) {
  struct Row {
    Control& control;
    const char* property;
    const char* value;
  };
  auto& list = surface.add<ListBox>("list");
  list.addItem("CH1");
  list.addItem("CH2");
  const Row rows[] = {
      {surface.add<TextBox>("text"), "Text", "*IDN?"},
      {surface.add<ComboBox>("combo"), "Text", "COM3"},
      {surface.add<Label>("label"), "Caption", "A Value(Ω)"},
      {surface.add<Frame>("frame"), "Caption", "Protection"},
      {surface.add<CheckBox>("check"), "Value", "2"},
      {surface.add<OptionButton>("option"), "Value", "True"},
      {surface.add<CommandButton>("button"), "Enabled", "False"},
      {surface.add<Image>("image"), "Visible", "False"},
      {surface.add<PictureBox>("picture"), "Tag", "a tag"},
      {list, "ListIndex", "1"},
      {list, "OLEDropMode", "1"},
      {surface.add<Timer>("timer"), "Interval", "200"},
      {list, "Left", "120"},
      {list, "Top", "3000"},
      {surface.add<Form>("form"), "MousePointer", "11"},
  };
  for (const Row& row : rows) {
    writeProperty(row.control, row.property, row.value);
    EXPECT_EQ(readProperty(row.control, row.property), row.value) << row.property;
  }
  EXPECT_EQ(readProperty(list, "Text"), "CH2");
  EXPECT_EQ(readProperty(list, "ListCount"), "2");
  EXPECT_EQ(readProperty(list, "List(0)"), "CH1");
  EXPECT_EQ(readProperty(list, "Width"), "0");
  EXPECT_EQ(readProperty(list, "Height"), "0");
}

TEST_F(Properties, tellTheLookByItsCustomaryNames) {
  auto& label = surface.add<Label>("label");
  auto& combo = surface.add<ComboBox>("combo");
  EXPECT_EQ(readProperty(label, "FontSize"), "0");
  EXPECT_EQ(readProperty(label, "FontBold"), "False");
  EXPECT_EQ(readProperty(label, "Alignment"), "0");
  EXPECT_EQ(readProperty(label, "ColorRole"), "Normal");
  EXPECT_EQ(readProperty(label, "Mnemonic"), "-1");
  EXPECT_EQ(readProperty(combo, "Style"), "0");
  const Look look{.fontSize = 14,
                  .bold = true,
                  .alignment = Alignment::Center,
                  .colorRole = ColorRole::Hint,
                  .comboStyle = ComboStyle::DropDownList,
                  .mnemonic = 3,
                  .toolTip = ":CHAN",
                  .accessibleName = "Channel"};
  label.setLook(look);
  combo.setLook(look);
  EXPECT_EQ(readProperty(label, "FontSize"), "14");
  EXPECT_EQ(readProperty(label, "FontBold"), "True");
  EXPECT_EQ(readProperty(label, "Alignment"), "2");
  EXPECT_EQ(readProperty(label, "ColorRole"), "Hint");
  EXPECT_EQ(readProperty(label, "Mnemonic"), "3");
  EXPECT_EQ(readProperty(label, "ToolTipText"), ":CHAN");
  EXPECT_EQ(readProperty(label, "AccessibleName"), "Channel");
  EXPECT_EQ(readProperty(combo, "Style"), "2");
  EXPECT_EQ(readProperty(label, "TabIndex"), "0");
  EXPECT_EQ(readProperty(combo, "TabIndex"), "1");
}

TEST_F(Properties, ofTheLookAreNoneOfATimerAndCannotBeSetByName) {
  auto& timer = surface.add<Timer>("timer");
  auto& label = surface.add<Label>("label");
  for (const char* name : {"FontSize", "FontBold", "Alignment", "ColorRole", "Style", "Mnemonic",
                           "ToolTipText", "AccessibleName", "TabIndex"}) {
    EXPECT_THROW((void)readProperty(timer, name), PropertyFault) << name;
    EXPECT_THROW(writeProperty(label, name, "1"), PropertyFault) << name;
  }
  EXPECT_THROW((void)readProperty(label, "Style"), PropertyFault);
}

TEST_F(Properties, thatAControlHasNotAreRefused) {
  auto& label = surface.add<Label>("label");
  auto& list = surface.add<ListBox>("list");
  EXPECT_THROW((void)readProperty(label, "Text"), PropertyFault);
  EXPECT_THROW((void)readProperty(label, "List(0)"), PropertyFault);
  EXPECT_THROW((void)readProperty(label, "caption"), PropertyFault);
  EXPECT_THROW((void)readProperty(list, "List(0)"), PropertyFault);
  EXPECT_THROW((void)readProperty(list, "List(x)"), PropertyFault);
  EXPECT_THROW(writeProperty(label, "Value", "1"), PropertyFault);
  EXPECT_THROW(writeProperty(label, "Width", "1"), PropertyFault);
  EXPECT_THROW(writeProperty(list, "Text", "CH1"), PropertyFault);
  EXPECT_THROW(writeProperty(list, "List(0)", "CH1"), PropertyFault);
}

TEST_F(Properties, refuseValuesOfAnotherType) {
  auto& check = surface.add<CheckBox>("check");
  EXPECT_THROW(writeProperty(check, "Value", "True"), PropertyFault);
  EXPECT_THROW(writeProperty(check, "Value", "1x"), PropertyFault);
  EXPECT_THROW(writeProperty(check, "Value", "99999999999"), PropertyFault);
  EXPECT_THROW(writeProperty(check, "Enabled", "1"), PropertyFault);
  EXPECT_EQ(check.value(), 0);
  EXPECT_TRUE(check.enabled());
}

TEST_F(Properties, knowWhichOfThemAControlShows) {
  EXPECT_EQ(shownProperty(surface.add<Label>("label")), "Caption");
  EXPECT_EQ(shownProperty(surface.add<TextBox>("text")), "Text");
  EXPECT_EQ(shownProperty(surface.add<Timer>("timer")), "");
}

TEST_F(Properties, nameTheKinds) {
  EXPECT_EQ(kindName(Kind::Form), "Form");
  EXPECT_EQ(kindName(Kind::CommandButton), "CommandButton");
  EXPECT_EQ(kindName(Kind::Image), "Image");
}

}  // namespace
}  // namespace lumodevice::toolkit
