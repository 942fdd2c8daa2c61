#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <utility>

#include "lumodevice/form/controls.hpp"
#include "lumodevice/toolkit/hand.hpp"
#include "lumodevice/toolkit/handling.hpp"
#include "lumodevice/toolkit/properties.hpp"
#include "lumodevice/toolkit/surface.hpp"

namespace lumodevice::toolkit {
namespace {

/// What the widgets of a window show. A widget shows what its operator does before anyone else
/// hears of it, as those of window systems do; for the rest it draws what a notification names.
class Window : public View {
 public:
  explicit Window(Surface& surface) : surface_(surface) {
    for (const auto& control : surface.controls()) {
      for (const Property property : {Property::Value, Property::Text, Property::ListIndex}) {
        draw(*control, property);
      }
    }
    surface.attach(*this);
  }
  ~Window() override { surface_.detach(*this); }
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  void changed(const Control& control, Property property, int /*item*/) override {
    draw(control, property);
    if (property == Property::ListIndex) {
      draw(control, Property::Text);
    }
  }

  void click(Control& control) {
    if (control.kind() == Kind::CheckBox) {
      shown_[{&control, Property::Value}] = shows(control, Property::Value) == "1" ? "0" : "1";
    } else if (control.kind() == Kind::OptionButton) {
      for (const auto& other : surface_.controls()) {
        if (other->kind() == control.kind() && other->container() == control.container()) {
          shown_[{other.get(), Property::Value}] = "False";
        }
      }
      shown_[{&control, Property::Value}] = "True";
    }
    hand::click(control);
  }
  void type(Control& control, const std::string& text) {
    shown_[{&control, Property::Text}] = text;
    hand::type(control, text);
  }
  void select(ListControl& list, int index) {
    shown_[{&list, Property::ListIndex}] = std::to_string(index);
    shown_[{&list, Property::Text}] = list.list(index);
    hand::select(list, index);
  }

  [[nodiscard]] std::string shows(const Control& control, Property property) const {
    return shown_.at({&control, property});
  }
  void expectTrue() const {
    for (const auto& [of, text] : shown_) {
      EXPECT_EQ(text, readProperty(*of.first, kNames.at(of.second))) << of.first->fullName();
    }
  }

 private:
  void draw(const Control& control, Property property) {
    if (!kNames.contains(property)) {
      return;
    }
    try {
      shown_[{&control, property}] = readProperty(control, kNames.at(property));
    } catch (const PropertyFault&) {  // a control without it
    }
  }

  inline static const std::map<Property, std::string> kNames = {
      {Property::Value, "Value"}, {Property::Text, "Text"}, {Property::ListIndex, "ListIndex"}};
  Surface& surface_;
  std::map<std::pair<const Control*, Property>, std::string> shown_;
};

struct ConfirmationCount : View {
  int told = 0;
  void changed(const Control& /*control*/, Property /*property*/, int /*item*/) override {}
  void confirmed(const Control& /*control*/, Property /*property*/) override { ++told; }
};

class AWidget : public testing::Test {
 protected:
  AWidget() {
    for (ListControl* control :
         {static_cast<ListControl*>(&list), static_cast<ListControl*>(&combo)}) {
      control->addItem("CH1");
      control->addItem("CH2");
      control->setListIndex(0);
    }
    first.setValue(true);
    window = std::make_unique<Window>(surface);
  }
  ~AWidget() override { window->expectTrue(); }

  Surface surface;
  Frame& frame = surface.add<Frame>("frame");
  CheckBox& box = surface.add<CheckBox>("box", std::nullopt, &frame);
  OptionButton& first = surface.add<OptionButton>("first", std::nullopt, &frame);
  OptionButton& second = surface.add<OptionButton>("second", std::nullopt, &frame);
  TextBox& text = surface.add<TextBox>("text", std::nullopt, &frame);
  ListBox& list = surface.add<ListBox>("list", std::nullopt, &frame);
  ComboBox& combo = surface.add<ComboBox>("combo", std::nullopt, &frame);
  std::unique_ptr<Window> window;
};

TEST_F(AWidget, goesBackWhenTheActWasRefused) {
  frame.setEnabled(false);
  window->click(box);
  EXPECT_EQ(window->shows(box, Property::Value), "0");
  window->click(second);
  EXPECT_EQ(window->shows(second, Property::Value), "False");
  EXPECT_EQ(window->shows(first, Property::Value), "True");
  window->type(text, "20");
  EXPECT_EQ(window->shows(text, Property::Text), "");
  window->type(combo, "20");
  EXPECT_EQ(window->shows(combo, Property::Text), "CH1");
  window->select(combo, 1);
  EXPECT_EQ(window->shows(combo, Property::ListIndex), "0");
  EXPECT_EQ(window->shows(combo, Property::Text), "CH1");
  window->select(list, 1);
  EXPECT_EQ(window->shows(list, Property::ListIndex), "0");
}

TEST_F(AWidget, goesBackWhenTheHandlerSetTheControlBack) {
  handle(box.click, [&] {
    if (box.value() == CheckBox::kTicked) {
      box.setValue(CheckBox::kClear);
    }
  });
  window->click(box);
  EXPECT_EQ(window->shows(box, Property::Value), "0");
  handle(text.change, [&] { text.setText("no"); });
  window->type(text, "yes");
  EXPECT_EQ(window->shows(text, Property::Text), "no");
}

TEST_F(AWidget, showsWhatTheControlMadeOfTheAct) {
  box.setValue(CheckBox::kGreyed);
  window->click(box);
  EXPECT_EQ(window->shows(box, Property::Value), "0") << "where the widget would tick it";
  window->click(first);
  EXPECT_EQ(window->shows(first, Property::Value), "True");
}

TEST_F(AWidget, isToldOnlyByChangesBetweenActs) {
  ConfirmationCount view;
  surface.attach(view);
  box.setValue(1);
  text.setText("20");
  EXPECT_EQ(view.told, 0);
  hand::click(box);
  EXPECT_EQ(view.told, 1);
  hand::click(second);
  EXPECT_EQ(view.told, 3) << "with its sibling";
  surface.detach(view);
}

TEST_F(AWidget, isToldAlsoAfterAnActThatThrew) {
  ConfirmationCount view;
  surface.attach(view);
  handle(box.click, [] { throw std::runtime_error("of the host's own"); });
  EXPECT_THROW(hand::click(box), std::runtime_error);
  EXPECT_EQ(view.told, 1);
  EXPECT_THROW(hand::select(list, 2), PropertyFault);
  EXPECT_EQ(view.told, 2);
  surface.detach(view);
}

TEST_F(AWidget, isNotToldByAnActInWhichItsFormEnded) {
  ConfirmationCount view;
  auto other = std::make_shared<Surface>();
  other->belongTo(other);
  auto& button = other->add<CheckBox>("button");
  other->attach(view);
  handle(button.click, [&] {
    other->retire();
    other.reset();
  });
  EXPECT_TRUE(hand::click(button)) << "the act was taken";
  EXPECT_EQ(view.told, 0);
}

TEST(AWindow, agreesWithItsControlsWhateverTheOperatorDoes) {
  for (unsigned seed = 0; seed < 10; ++seed) {
    std::mt19937 random(seed);
    const auto below = [&](std::size_t limit) { return random() % limit; };
    VirtualLoop loop;
    form::Controls form(loop);
    Window window(form.surface());
    const auto& controls = form.surface().controls();
    for (int i = 0; i < 3000; ++i) {
      Control& control = *controls[below(controls.size())];
      auto* list = dynamic_cast<ListControl*>(&control);
      if (below(4) == 0) {
        control.setEnabled(!control.enabled());
      } else if (list != nullptr && list->listCount() > 0 && below(2) == 0) {
        window.select(*list, static_cast<int>(below(static_cast<std::size_t>(list->listCount()))));
      } else if (control.kind() == Kind::TextBox || control.kind() == Kind::ComboBox) {
        window.type(control, std::string(below(3), 'x'));
      } else if (control.kind() == Kind::CheckBox || control.kind() == Kind::OptionButton) {
        window.click(control);
      }
    }
    SCOPED_TRACE("seed " + std::to_string(seed));
    window.expectTrue();
  }
}

}  // namespace
}  // namespace lumodevice::toolkit
