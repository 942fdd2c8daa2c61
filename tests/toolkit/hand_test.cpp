#include "lumodevice/toolkit/hand.hpp"

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <utility>

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
  EXPECT_TRUE(hand::click(make<Image>("image")));
  EXPECT_TRUE(hand::click(box));
  EXPECT_TRUE(hand::click(make<OptionButton>("option")));
  EXPECT_EQ(events, "button label picture image box option ");
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

TEST_F(Operator, picksTheSelectedEntryAgainInPlaceOfWhatWasTyped) {
  auto& combo = make<ComboBox>("combo");
  combo.addItem("CH1");
  combo.setListIndex(0);
  std::string seen;
  toolkit::handle(combo.click, [&] { seen += std::string(combo.text()) + " "; });
  hand::type(combo, "chz");
  hand::select(combo, 0);
  EXPECT_EQ(combo.text(), "CH1");
  hand::type(combo, "chz");
  hand::click(combo);
  EXPECT_EQ(combo.text(), "CH1");
  EXPECT_EQ(seen, "CH1 CH1 ") << "the click comes once, and finds the text there";
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

TEST_F(Operator, pressesPicturesAtAPosition) {
  for (Pictured* picture : {static_cast<Pictured*>(&make<PictureBox>("picture")),
                            static_cast<Pictured*>(&make<Image>("image"))}) {
    MousePress last;
    handle(picture->mouseDown, [&](const MousePress& press) { last = press; });
    EXPECT_TRUE(hand::mouseDown(*picture, {.button = MousePress::kRight,
                                           .shift = MousePress::kShift | MousePress::kAlt,
                                           .x = 150.5F,
                                           .y = 30}));
    EXPECT_EQ(last.button, 2);
    EXPECT_EQ(last.shift, 5);
    EXPECT_EQ(last.x, 150.5F);
    EXPECT_EQ(last.y, 30);
    frame.setEnabled(false);
    EXPECT_FALSE(hand::mouseDown(*picture, {.x = 7}));
    EXPECT_EQ(last.x, 150.5F);
    frame.setEnabled(true);
  }
  EXPECT_EQ(events, "") << "a Click comes when the mouse goes up again";
}

TEST_F(Operator, cannotDoWhatAControlDoesNotKnow) {
  auto& label = make<Label>("label");
  EXPECT_THROW(hand::mouseDown(label, {}), PropertyFault);
  EXPECT_THROW(hand::type(label, "x"), PropertyFault);
  EXPECT_THROW(hand::press(label, Key::Enter), PropertyFault);
  EXPECT_THROW(hand::select(label, 0), PropertyFault);
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
  static void offer(ListBox& source) {
    handle(source.startDrag, [&source](DragData& data) {
      data = {std::string(source.text()), kDropEffectMove};
    });
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

TEST_F(Drag, isBegunThenDropped) {
  offer(from);
  hand::Drag drag(from, 1);
  EXPECT_EQ(events, "from ");
  EXPECT_TRUE(drag.inProgress());
  EXPECT_EQ(drag.data().text, "CH2");
  EXPECT_TRUE(drag.dropOn(onto));
  EXPECT_EQ(events, "from drop CH2");
  EXPECT_FALSE(drag.inProgress());
  EXPECT_FALSE(drag.dropOn(onto)) << "it is over";
  EXPECT_EQ(events, "from drop CH2");
}

TEST_F(Drag, endsWithoutADropWhenCancelledOrOutOfScope) {
  offer(from);
  {
    hand::Drag drag(from, 0);
    drag.cancel();
    EXPECT_FALSE(drag.inProgress());
    EXPECT_FALSE(drag.canDropOn(onto));
    EXPECT_FALSE(drag.dropOn(onto));
  }
  { const hand::Drag drag(from, 0); }
  EXPECT_EQ(events.find("drop"), std::string::npos);
}

TEST_F(Drag, goesOnWhereItIsMovedTo) {
  offer(from);
  hand::Drag begun(from, 0);
  hand::Drag drag = std::move(begun);
  EXPECT_FALSE(begun.inProgress());  // NOLINT(bugprone-use-after-move): what is left of it
  EXPECT_TRUE(drag.dropOn(onto));
}

TEST_F(Drag, doesNotBeginWhereNothingIsOfferedOrTheListCannotBeUsed) {
  EXPECT_FALSE(hand::Drag(from, 0).inProgress());
  offer(from);
  from.setEnabled(false);
  EXPECT_FALSE(hand::Drag(from, 0).inProgress());
  EXPECT_EQ(events, "from ") << "the first one picked its item";
  from.setEnabled(true);
  EXPECT_THROW(hand::Drag(from, 2), PropertyFault);
}

TEST_F(Drag, asksWhereItMayBeDropped) {
  Surface elsewhere;
  auto& foreign = elsewhere.add<ListBox>("foreign");
  foreign.setOleDropMode(ListBox::kDropManual);
  offer(from);
  const hand::Drag drag(from, 0);
  EXPECT_TRUE(drag.canDropOn(onto));
  EXPECT_FALSE(drag.canDropOn(from)) << "drops are off there";
  EXPECT_FALSE(drag.canDropOn(foreign)) << "a list of another form";
  onto.setEnabled(false);
  EXPECT_FALSE(drag.canDropOn(onto));
  onto.setEnabled(true);
  handle(onto.dragOver, [&](const DragData& data, int& effect) {
    EXPECT_EQ(data.text, "CH1");
    EXPECT_EQ(effect, kDropEffectMove);
    effect = kDropEffectNone;
  });
  EXPECT_FALSE(drag.canDropOn(onto));
  EXPECT_EQ(events, "from ") << "asking drops nothing";
}

TEST_F(Drag, isRefusedWhereItMayNotBeDropped) {
  offer(from);
  onto.setEnabled(false);
  EXPECT_FALSE(hand::Drag(from, 0).dropOn(onto));
  onto.setEnabled(true);
  EXPECT_FALSE(hand::Drag(from, 0).dropOn(from));
  handle(onto.dragOver, [](const DragData&, int& effect) { effect = kDropEffectNone; });
  EXPECT_FALSE(hand::Drag(from, 0).dropOn(onto));
  EXPECT_EQ(events.find("drop"), std::string::npos);
}

TEST_F(Drag, confirmsBothLists) {
  struct : View {
    std::string told;
    void changed(const Control&, Property, int) override {}
    void confirmed(const Control& control, Property property) override {
      told += control.name() + (property == Property::ListIndex ? " " : ".other ");
    }
  } view;
  surface.attach(view);
  offer(from);
  hand::Drag drag(from, 0);
  EXPECT_EQ(view.told, "from ");
  onto.setEnabled(false);
  drag.dropOn(onto);
  EXPECT_EQ(view.told, "from onto from ");
  surface.detach(view);
}

TEST_F(Drag, isOverWhenItIsDropped) {
  offer(from);
  auto drag = std::make_unique<hand::Drag>(from, 0);
  handle(onto.drop, [&](const DragData& data) {
    EXPECT_FALSE(drag->inProgress());
    drag.reset();
    events += data.text;
  });
  EXPECT_TRUE(drag->dropOn(onto));
  EXPECT_EQ(events, "from CH1");
}

/// A drag on a form that goes meanwhile.
class DragOfAPassingForm : public testing::Test {
 protected:
  DragOfAPassingForm() {
    surface->belongTo(surface);
    from.addItem("CH1");
    onto.setOleDropMode(ListBox::kDropManual);
    handle(from.startDrag, [](DragData& data) { data = {"CH1", kDropEffectMove}; });
  }
  std::shared_ptr<Surface> surface = std::make_shared<Surface>();
  ListBox& from = surface->add<ListBox>("from");
  ListBox& onto = surface->add<ListBox>("onto");
};

TEST_F(DragOfAPassingForm, isOver) {
  hand::Drag drag(from, 0);
  surface.reset();
  EXPECT_FALSE(drag.inProgress());
  EXPECT_FALSE(drag.canDropOn(onto));
  EXPECT_FALSE(drag.dropOn(onto));
}

TEST_F(DragOfAPassingForm, isOverWhereverInItThatHappens) {
  const auto end = [this] {
    surface->retire();
    surface.reset();
  };
  const int events = 4;
  for (int event = 0; event < events; ++event) {
    surface = std::make_shared<Surface>();
    surface->belongTo(surface);
    auto& source = surface->add<ListBox>("from");
    auto& target = surface->add<ListBox>("onto");
    source.addItem("CH1");
    target.setOleDropMode(ListBox::kDropManual);
    handle(source.startDrag, [&](DragData& data) {
      data = {"CH1", kDropEffectMove};
      if (event == 1) {
        end();
      }
    });
    if (event == 0) {
      handle(source.click, end);
    } else if (event == 2) {
      handle(target.dragOver, [&](const DragData&, int&) { end(); });
    } else if (event == 3) {
      handle(target.drop, [&](const DragData&) { end(); });
    }
    hand::Drag drag(source, 0);
    EXPECT_EQ(drag.inProgress(), event > 1) << event;
    EXPECT_EQ(drag.dropOn(target), event == 3) << event;
    EXPECT_EQ(surface, nullptr) << event;
  }
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
