#include "lumodevice/toolkit/controls.hpp"

#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <vector>

#include "lumodevice/toolkit/handling.hpp"
#include "lumodevice/toolkit/surface.hpp"

namespace lumodevice::toolkit {
namespace {

int faultOf(auto act) {
  try {
    act();
  } catch (const PropertyFault& fault) {
    return fault.number();
  }
  return 0;
}

TEST(TextBox, raisesChangeForAnotherTextOnly) {
  Surface surface;
  auto& box = surface.add<TextBox>("Text2");
  int changes = 0;
  toolkit::handle(box.change, [&] { ++changes; });
  box.setText("*IDN?");
  box.setText("*IDN?");
  EXPECT_EQ(changes, 1);
  box.setText("");
  EXPECT_EQ(changes, 2);
}

TEST(TextBox, runsItsHandlerInsideTheAssignment) {
  Surface surface;
  auto& box = surface.add<TextBox>("TXT");
  std::string seen;
  toolkit::handle(box.change, [&] { seen = box.text(); });
  box.setText(":CHAN?");
  EXPECT_EQ(seen, ":CHAN?");
}

TEST(CheckBox, raisesClickWhenItsValueChanges) {
  Surface surface;
  auto& box = surface.add<CheckBox>("chkLoad");
  std::vector<int> clicks;
  toolkit::handle(box.click, [&] { clicks.push_back(box.value()); });
  for (const int value : {1, 1, 2, 0, 0}) {
    box.setValue(value);
  }
  EXPECT_EQ(clicks, (std::vector{1, 2, 0}));
}

TEST(CheckBox, refusesValuesThatItCannotShow) {
  Surface surface;
  auto& box = surface.add<CheckBox>("chkLoad");
  for (const int value : {-1, 3, 32767}) {
    EXPECT_EQ(faultOf([&] { box.setValue(value); }), kInvalidPropertyValue) << value;
  }
  EXPECT_EQ(box.value(), CheckBox::kClear);
}

TEST(OptionButton, clearsItsSiblingsWithoutAClick) {
  Surface surface;
  auto& frame = surface.add<Frame>("fraMode");
  auto& elsewhere = surface.add<Frame>("fraVISA");
  auto& first = surface.add<OptionButton>("optMode", 0, &frame);
  auto& second = surface.add<OptionButton>("optMode", 1, &frame);
  auto& other = surface.add<OptionButton>("optVisa1", std::nullopt, &elsewhere);
  std::string clicks;
  toolkit::handle(first.click, [&] { clicks += "first "; });
  toolkit::handle(second.click, [&] { clicks += "second "; });
  other.setValue(true);
  first.setValue(true);
  first.setValue(true);
  second.setValue(true);
  EXPECT_EQ(clicks, "first second ");
  EXPECT_FALSE(first.value());
  EXPECT_TRUE(second.value());
  EXPECT_TRUE(other.value());
}

TEST(OptionButton, clearedFromCodeRaisesNothing) {
  Surface surface;
  auto& option = surface.add<OptionButton>("optSync");
  int clicks = 0;
  toolkit::handle(option.click, [&] { ++clicks; });
  option.setValue(true);
  option.setValue(false);
  EXPECT_EQ(clicks, 1);
}

TEST(ComboBox, raisesClickWhenTheSelectionChangesFromCode) {
  Surface surface;
  auto& combo = surface.add<ComboBox>("cmbChannel");
  combo.addItem("CH1-A");
  combo.addItem("CH2-B");
  std::vector<std::string> clicked;
  toolkit::handle(combo.click, [&] { clicked.emplace_back(combo.text()); });
  combo.setListIndex(1);
  combo.setListIndex(1);
  combo.setListIndex(0);
  EXPECT_EQ(clicked, (std::vector<std::string>{"CH2-B", "CH1-A"}));
}

TEST(ComboBox, clearEmptiesListSelectionAndTextSilently) {
  Surface surface;
  auto& combo = surface.add<ComboBox>("Combo1");
  combo.addItem("COM1");
  combo.setListIndex(0);
  int clicks = 0;
  toolkit::handle(combo.click, [&] { ++clicks; });
  combo.clear();
  EXPECT_EQ(combo.listCount(), 0);
  EXPECT_EQ(combo.listIndex(), -1);
  EXPECT_EQ(combo.text(), "");
  EXPECT_EQ(clicks, 0);
}

TEST(ComboBox, clearEmptiesATypedTextToo) {
  Surface surface;
  auto& combo = surface.add<ComboBox>("cmbVISARes");
  combo.setText("typed");
  combo.clear();
  EXPECT_EQ(combo.text(), "");
}

TEST(ComboBox, typedTextLeavesTheSelectionAlone) {
  Surface surface;
  auto& combo = surface.add<ComboBox>("cmbVISARes");
  combo.addItem("USB0::INSTR");
  combo.setListIndex(0);
  combo.setText("TCPIP0::127.0.0.1::5025::SOCKET");
  EXPECT_EQ(combo.listIndex(), 0);
}

TEST(ComboBox, selectingAnEntryAgainPutsItsTextInPlaceOfWhatWasTypedWithoutAClick) {
  Surface surface;
  auto& combo = surface.add<ComboBox>("cmbChannel");
  combo.addItem("CH1-A");
  combo.setListIndex(0);
  int clicks = 0;
  toolkit::handle(combo.click, [&] { ++clicks; });
  combo.setText("chz");
  combo.setListIndex(0);
  EXPECT_EQ(combo.text(), "CH1-A");
  EXPECT_EQ(clicks, 0);
}

TEST(ComboBox, selectingNothingWhereNothingIsSelectedKeepsWhatWasTyped) {
  Surface surface;
  auto& combo = surface.add<ComboBox>("cmbVISARes");
  combo.setText("?*INSTR");
  combo.setListIndex(-1);
  EXPECT_EQ(combo.text(), "?*INSTR");
}

TEST(ListControl, refusesIndicesOutsideItsList) {
  Surface surface;
  auto& list = surface.add<ListBox>("List1");
  list.addItem("CH1");
  EXPECT_EQ(faultOf([&] { list.setListIndex(1); }), kInvalidPropertyValue);
  EXPECT_EQ(faultOf([&] { list.setListIndex(-2); }), kInvalidPropertyValue);
  EXPECT_NE(faultOf([&] { (void)list.list(1); }), 0);
  EXPECT_NE(faultOf([&] { (void)list.list(-1); }), 0);
  EXPECT_NE(faultOf([&] { list.removeItem(1); }), 0);
  EXPECT_NE(faultOf([&] { list.addItem("CH2", 3); }), 0);
}

TEST(ListControl, keepsTheSelectedItemSelectedWhenOthersComeAndGo) {
  Surface surface;
  auto& list = surface.add<ListBox>("List2");
  list.addItem("CH3");
  list.setListIndex(0);
  list.addItem("CH2", 0);
  EXPECT_EQ(list.text(), "CH3");
  list.removeItem(0);
  EXPECT_EQ(list.text(), "CH3");
  list.removeItem(0);
  EXPECT_EQ(list.listIndex(), -1);
  EXPECT_EQ(list.text(), "");
}

TEST(ListBox, knowsTwoDropModes) {
  Surface surface;
  auto& list = surface.add<ListBox>("List3");
  list.setOleDropMode(ListBox::kDropManual);
  EXPECT_EQ(list.oleDropMode(), 1);
  EXPECT_EQ(faultOf([&] { list.setOleDropMode(2); }), kInvalidPropertyValue);
}

TEST(Control, isUsableOnlyTogetherWithItsContainers) {
  Surface surface;
  auto& form = surface.add<Form>("ZANCtrl");
  auto& frame = surface.add<Frame>("FrameCV", std::nullopt, &form);
  auto& box = surface.add<TextBox>("txtInput", 11, &frame);
  EXPECT_TRUE(box.usable());
  form.setEnabled(false);
  EXPECT_FALSE(box.usable());
  EXPECT_TRUE(box.enabled());
  form.setEnabled(true);
  frame.setEnabled(false);
  EXPECT_FALSE(box.usable());
  frame.setEnabled(true);
  box.setEnabled(false);
  EXPECT_FALSE(box.usable());
}

TEST(Surface, findsControlsByNameAndIndex) {
  Surface surface;
  auto& first = surface.add<TextBox>("txtInput", 0);
  auto& second = surface.add<TextBox>("txtInput", 1);
  auto& single = surface.add<TextBox>("Text2");
  EXPECT_EQ(surface.find("txtInput", 0), &first);
  EXPECT_EQ(surface.find("txtInput", 1), &second);
  EXPECT_EQ(surface.find("Text2"), &single);
  EXPECT_EQ(surface.find("Text2", 0), nullptr);
  EXPECT_EQ(surface.find("txtInput"), nullptr);
  EXPECT_EQ(surface.find("nobody"), nullptr);
  EXPECT_EQ(second.fullName(), "txtInput(1)");
  EXPECT_THROW((void)surface.get<CheckBox>("Text2"), std::logic_error);
  EXPECT_THROW(surface.add<TextBox>("Text2"), std::logic_error);
}

TEST(ControlArray, givesItsElementsByIndex) {
  Surface surface;
  for (int i = 0; i < 3; ++i) {
    surface.add<Label>("lblConcate", i);
  }
  const ControlArray<Label, 3> labels(surface, "lblConcate");
  EXPECT_EQ(labels(2).index(), 2);
  EXPECT_THROW((void)labels(3), std::out_of_range);
  EXPECT_THROW((void)labels(-1), std::out_of_range);
}

TEST(ControlArray, takesAllElementsOrNone) {
  Surface surface;
  for (int i = 0; i < 3; ++i) {
    surface.add<Label>("lblConcate", i);
  }
  EXPECT_THROW((ControlArray<Label, 2>(surface, "lblConcate")), std::logic_error);
  EXPECT_THROW((ControlArray<Label, 4>(surface, "lblConcate")), std::logic_error);
}

}  // namespace
}  // namespace lumodevice::toolkit
