#include <chrono>
#include <gtest/gtest.h>
#include <iterator>
#include <map>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "lumodevice/form/controls.hpp"
#include "lumodevice/toolkit/event_loop.hpp"
#include "lumodevice/toolkit/hand.hpp"
#include "lumodevice/toolkit/handling.hpp"
#include "lumodevice/toolkit/properties.hpp"
#include "lumodevice/toolkit/surface.hpp"

namespace lumodevice::toolkit {
namespace {

constexpr const char* kNames[] = {
    "Text",         "Caption",     "Value",   "Enabled",  "Visible",     "Tag",
    "ListIndex",    "Interval",    "Left",    "Top",      "Width",       "Height",
    "MousePointer", "OLEDropMode", "Picture", "Stretch",  "FontSize",    "FontBold",
    "Alignment",    "ColorRole",   "Style",   "Mnemonic", "ToolTipText", "AccessibleName"};

/// All that a view could draw of one control.
struct Copy {
  std::map<std::string, std::string> properties;
  std::vector<std::string> items;
  int zOrder = 0;
  friend bool operator==(const Copy&, const Copy&) = default;
};

std::string readOrEmpty(const Control& control, const char* property) {
  try {
    return readProperty(control, property);
  } catch (const PropertyFault&) {
    return {};
  }
}

Copy copyOf(const Control& control) {
  Copy copy;
  for (const char* name : kNames) {
    copy.properties[name] = readOrEmpty(control, name);
  }
  if (const auto* list = dynamic_cast<const ListControl*>(&control)) {
    for (int i = 0; i < list->listCount(); ++i) {
      copy.items.push_back(list->list(i));
    }
  }
  copy.zOrder = control.zOrder();
  return copy;
}

/// Keeps its own copy of every property, fed by notifications alone: of what it is told it reads
/// just the property that the notification names.
class CopyingView : public View {
 public:
  explicit CopyingView(Surface& surface) : surface_(surface) {
    for (const auto& control : surface.controls()) {
      copies_[control.get()] = copyOf(*control);
    }
    surface.attach(*this);
  }
  ~CopyingView() override { surface_.detach(*this); }
  CopyingView(const CopyingView&) = delete;
  CopyingView& operator=(const CopyingView&) = delete;

  void changed(const Control& control, Property property, int item) override {
    Copy& copy = copies_.at(&control);
    switch (property) {
      case Property::ItemInserted:
        copy.items.insert(copy.items.begin() + item,
                          dynamic_cast<const ListControl&>(control).list(item));
        return;
      case Property::ItemRemoved:
        copy.items.erase(copy.items.begin() + item);
        return;
      case Property::ItemsCleared:
        copy.items.clear();
        return;
      case Property::ZOrder:
        copy.zOrder = control.zOrder();
        return;
      case Property::Place:
        for (const char* name : {"Left", "Top", "Width", "Height"}) {
          copy.properties[name] = readProperty(control, name);
        }
        return;
      case Property::Look:
        for (const char* name : {"FontSize", "FontBold", "Alignment", "ColorRole", "Style",
                                 "Mnemonic", "ToolTipText", "AccessibleName"}) {
          copy.properties[name] = readOrEmpty(control, name);
        }
        return;
      case Property::ListIndex:
        copy.properties["ListIndex"] = readProperty(control, "ListIndex");
        if (control.kind() == Kind::ListBox) {
          copy.properties["Text"] = readProperty(control, "Text");
        }
        return;
      default: {
        static const std::map<Property, const char*> names = {
            {Property::Text, "Text"},
            {Property::Caption, "Caption"},
            {Property::Value, "Value"},
            {Property::Enabled, "Enabled"},
            {Property::Visible, "Visible"},
            {Property::Tag, "Tag"},
            {Property::Interval, "Interval"},
            {Property::MousePointer, "MousePointer"},
            {Property::OLEDropMode, "OLEDropMode"},
            {Property::Picture, "Picture"},
            {Property::Stretch, "Stretch"}};
        const char* name = names.at(property);
        copy.properties[name] = readProperty(control, name);
      }
    }
  }

  void expectEqualToControls() const {
    for (const auto& control : surface_.controls()) {
      EXPECT_TRUE(copies_.at(control.get()) == copyOf(*control)) << control->fullName();
    }
  }

 private:
  Surface& surface_;
  std::map<const Control*, Copy> copies_;
};

/// One random act of code or operator; acts that a control refuses are part of the game.
void act(Control& control, std::mt19937& random) {
  const auto number = [&](int limit) {
    return static_cast<int>(random() % static_cast<unsigned>(limit));
  };
  const std::string text(static_cast<std::size_t>(number(4)), static_cast<char>('a' + number(3)));
  attempt([&] {
    switch (number(12)) {
      case 0:
        control.setEnabled(number(2) == 0);
        break;
      case 1:
        control.setVisible(number(2) == 0);
        break;
      case 2:
        control.setTag(text);
        break;
      case 3:
        control.moveTo(number(5), number(5));
        break;
      case 4:
        control.bringToFront();
        break;
      case 9:
        control.setLook(
            {.fontSize = number(3),
             .bold = number(2) == 0,
             .alignment = static_cast<Alignment>(number(3)),
             .comboStyle = number(2) == 0 ? ComboStyle::Editable : ComboStyle::DropDownList,
             .mnemonic = number(2),
             .toolTip = text});
        break;
      case 5:
        hand::click(control);
        break;
      case 6:
        hand::type(control, text);
        break;
      case 7:
        hand::select(control, number(4));
        break;
      case 8:
        writeProperty(control, kNames[number(static_cast<int>(std::size(kNames)))],
                      number(2) == 0 ? std::to_string(number(4)) : text);
        break;
      default:
        if (auto* list = dynamic_cast<ListControl*>(&control)) {
          switch (number(4)) {
            case 0:
              list->clear();
              break;
            case 1:
              list->removeItem(number(3));
              break;
            case 2:
              list->addItem(text, number(3));
              break;
            default:
              list->addItem(text);
              break;
          }
        }
    }
  });
}

TEST(View, fedByNotificationsAloneEqualsTheControlsAfterAnyRunOfActs) {
  for (unsigned seed = 0; seed < 20; ++seed) {
    std::mt19937 random(seed);
    VirtualLoop loop;
    form::Controls form(loop);
    const CopyingView view(form.surface());
    const auto& controls = form.surface().controls();
    for (int i = 0; i < 3000; ++i) {
      act(*controls[random() % controls.size()], random);
    }
    SCOPED_TRACE("seed " + std::to_string(seed));
    view.expectEqualToControls();
  }
}

TEST(View, isToldBeforeTheEventIsRaised) {
  Surface surface;
  auto& box = surface.add<CheckBox>("chkLoad");
  std::string order;
  struct Recorder : View {
    std::string& order;
    explicit Recorder(std::string& record) : order(record) {}
    void changed(const Control& /*control*/, Property /*property*/, int /*item*/) override {
      order += "view ";
    }
  } recorder(order);
  surface.attach(recorder);
  toolkit::handle(box.click, [&] { order += "click"; });
  box.setValue(1);
  EXPECT_EQ(order, "view click");
  surface.detach(recorder);
  box.setValue(0);
  EXPECT_EQ(order, "view clickclick");
}

/// Throws when it is told of that property.
class ThrowingView : public View {
 public:
  ThrowingView(Surface& surface, Property property) : surface_(surface), property_(property) {
    surface_.attach(*this);
  }
  ~ThrowingView() override { surface_.detach(*this); }
  ThrowingView(const ThrowingView&) = delete;
  ThrowingView& operator=(const ThrowingView&) = delete;
  void changed(const Control& /*control*/, Property property, int /*item*/) override {
    if (property == property_) {
      throw std::runtime_error("of the view's own");
    }
  }

 private:
  Surface& surface_;
  Property property_;
};

class AThrowingView : public testing::Test {
 protected:
  AThrowingView() {
    combo.addItem("one");
    combo.addItem("two");
    list.addItem("one");
  }

  Surface surface;
  ComboBox& combo = surface.add<ComboBox>("combo");
  ListBox& list = surface.add<ListBox>("list");
  TextBox& text = surface.add<TextBox>("text");
};

TEST_F(AThrowingView, doesNotKeepTheChangeFromTheOthers) {
  const ThrowingView thrower(surface, Property::Text);
  const CopyingView copy(surface);
  EXPECT_THROW(text.setText("new"), std::runtime_error);
  copy.expectEqualToControls();
}

TEST_F(AThrowingView, leavesTheTextOfTheSelectedEntry) {
  const ThrowingView thrower(surface, Property::ListIndex);
  EXPECT_THROW(combo.setListIndex(1), std::runtime_error);
  EXPECT_EQ(combo.text(), "two");
  EXPECT_THROW(combo.clear(), std::runtime_error);
  EXPECT_EQ(combo.text(), "");
}

TEST_F(AThrowingView, leavesNoSelectionInAnEmptyList) {
  list.setListIndex(0);
  const ThrowingView thrower(surface, Property::ItemsCleared);
  EXPECT_THROW(list.clear(), std::runtime_error);
  EXPECT_EQ(list.listIndex(), -1);
  EXPECT_EQ(list.text(), "");
}

TEST_F(AThrowingView, doesNotKeepACheckBoxFromItsHandler) {
  auto& box = surface.add<CheckBox>("box");
  int seen = CheckBox::kClear;
  toolkit::handle(box.click, [&] { seen = box.value(); });
  const ThrowingView thrower(surface, Property::Value);
  EXPECT_THROW(box.setValue(CheckBox::kTicked), std::runtime_error);
  EXPECT_EQ(seen, CheckBox::kTicked);
}

TEST_F(AThrowingView, doesNotKeepATimerFromTicking) {
  VirtualLoop loop;
  auto& timer = surface.add<Timer>("timer");
  int ticks = 0;
  toolkit::handle(timer.tick, [&] { ++ticks; });
  timer.setEnabled(false);
  timer.joinLoop(loop);
  {
    const ThrowingView enabling(surface, Property::Enabled);
    const ThrowingView setting(surface, Property::Interval);
    EXPECT_THROW(timer.setInterval(100), std::runtime_error);
    EXPECT_THROW(timer.setEnabled(true), std::runtime_error);
  }
  loop.runFor(std::chrono::milliseconds(350));
  EXPECT_EQ(ticks, 3);
  {
    const ThrowingView enabling(surface, Property::Enabled);
    EXPECT_THROW(timer.setEnabled(false), std::runtime_error);
  }
  loop.runFor(std::chrono::milliseconds(350));
  EXPECT_EQ(ticks, 3);
  timer.leaveLoop();
}

/// Takes another view off the surface when it is told of something.
class DismissingView : public View {
 public:
  DismissingView(Surface& surface, View& other) : surface_(surface), other_(other) {}
  void changed(const Control& /*control*/, Property /*property*/, int /*item*/) override {
    surface_.detach(other_);
    surface_.detach(*this);
  }

 private:
  Surface& surface_;
  View& other_;
};

TEST(DetachedWhileToldOfAChange, isNotToldAndTheNextOneIs) {
  Surface surface;
  auto& text = surface.add<TextBox>("text");
  ThrowingView dismissed(surface, Property::Text);
  surface.detach(dismissed);
  DismissingView dismisser(surface, dismissed);
  surface.attach(dismisser);
  surface.attach(dismissed);
  const CopyingView copy(surface);
  EXPECT_NO_THROW(text.setText("new"));
  copy.expectEqualToControls();
}

}  // namespace
}  // namespace lumodevice::toolkit
