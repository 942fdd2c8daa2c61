#include <gtest/gtest.h>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "lumodevice/toolkit/controls.hpp"
#include "lumodevice/toolkit/handling.hpp"
#include "lumodevice/toolkit/observers.hpp"
#include "lumodevice/toolkit/surface.hpp"

namespace lumodevice::toolkit {
namespace {

class Observing : public testing::Test {
 protected:
  [[nodiscard]] Subscription observe(const std::string& word) {
    return button.click.observe([this, word] { told += word + " "; });
  }

  std::string told;
  Surface surface;
  CommandButton& button = surface.add<CommandButton>("button");
};

TEST_F(Observing, tellsAllAfterTheHandlerInTheOrderInWhichTheyCame) {
  const Subscription first = observe("first");
  handle(button.click, [&] { told += "handler "; });
  const Subscription second = observe("second");
  button.click.raise();
  EXPECT_EQ(told, "handler first second ");
}

TEST_F(Observing, needsNoHandler) {
  const Subscription only = observe("only");
  button.click.raise();
  EXPECT_EQ(told, "only ");
}

TEST_F(Observing, endsWithTheSubscription) {
  {
    const Subscription passing = observe("passing");
    Subscription ended = observe("ended");
    ended.end();
    button.click.raise();
  }
  button.click.raise();
  EXPECT_EQ(told, "passing ");
}

TEST_F(Observing, thatEndsWhileItIsToldIsNotToldAgainFromWithin) {
  Subscription once;
  once = button.click.observe([&] {
    told += "once ";
    once.end();
    button.click.raise();
  });
  button.click.raise();
  EXPECT_EQ(told, "once ");
}

TEST_F(Observing, goesOnInTheSubscriptionThatTookItOver) {
  Subscription held;
  {
    Subscription begun = observe("moved");
    held = std::move(begun);
  }
  button.click.raise();
  held = observe("another");
  button.click.raise();
  EXPECT_EQ(told, "moved another ");
}

TEST_F(Observing, handsOnWhatTheEventCarriesForLookingAt) {
  auto& list = surface.add<ListBox>("list");
  handle(list.startDrag, [](DragData& data) { data = {"CH1", kDropEffectMove}; });
  const Subscription watching =
      list.startDrag.observe([&](const DragData& data) { told += data.text; });
  DragData data;
  list.startDrag.raise(data);
  EXPECT_EQ(told, "CH1");
}

TEST_F(Observing, mayEndItselfInTheCall) {
  Subscription once;
  once = button.click.observe([&, kept = std::string("once ")] {
    once.end();
    told += kept;  // the observer lives until it has returned
  });
  const Subscription after = observe("after");
  button.click.raise();
  button.click.raise();
  EXPECT_EQ(told, "once after after ");
}

TEST_F(Observing, mayEndOthersInTheCall) {
  Subscription before = observe("before");
  Subscription after;
  const Subscription ending = button.click.observe([&] {
    before.end();
    after.end();
  });
  after = observe("after");
  const Subscription last = observe("last");
  button.click.raise();
  button.click.raise();
  EXPECT_EQ(told, "before last last ");
}

TEST_F(Observing, tellsThoseWhoCameInTheCallFromTheNextTimeOn) {
  std::vector<Subscription> came;
  const Subscription growing = button.click.observe([&] { came.push_back(observe("new")); });
  handle(button.click, [&] { told += "click "; });
  button.click.raise();
  button.click.raise();
  EXPECT_EQ(told, "click click new ");
}

TEST_F(Observing, tellsOfAnEventWithinItsOwnEvent) {
  const Subscription raising = button.click.observe([&, depth = 0]() mutable {
    if (depth++ == 0) {
      button.click.raise();
    }
    told += "raising ";
  });
  const Subscription other = observe("other");
  button.click.raise();
  EXPECT_EQ(told, "raising other raising other ");
}

TEST_F(Observing, tellsTheOthersWhenOneThrowsAndThenThrowsTheFirst) {
  const Subscription one = button.click.observe([] { throw std::runtime_error("one"); });
  const Subscription two = button.click.observe([] { throw std::logic_error("two"); });
  const Subscription other = observe("other");
  EXPECT_THROW(button.click.raise(), std::runtime_error);
  EXPECT_EQ(told, "other ");
}

TEST_F(Observing, keepsNoHandlerFromItsWorkByThrowing) {
  handle(button.click, [&] { told += "handler "; });
  const Subscription throwing = button.click.observe([] { throw std::runtime_error("mine"); });
  EXPECT_THROW(button.click.raise(), std::runtime_error);
  EXPECT_EQ(told, "handler ");
}

TEST_F(Observing, tellsAlsoWhenTheHandlerThrew) {
  handle(button.click, [] { throw std::runtime_error("of the host's view"); });
  const Subscription watching = observe("watching");
  EXPECT_THROW(button.click.raise(), std::runtime_error);
  EXPECT_EQ(told, "watching ");
}

TEST(Subscription, outlivesWhatItObserved) {
  Subscription event;
  Subscription change;
  auto witness = std::make_shared<int>();
  {
    Surface surface;
    auto& text = surface.add<TextBox>("text");
    event = text.change.observe([witness] {});
    change = surface.observe([witness](const Control&, Property, int) {});
  }
  EXPECT_EQ(witness.use_count(), 3);
  event.end();
  change.end();
  EXPECT_EQ(witness.use_count(), 1);
}

/// A form that goes with the last hold on it, as a component's does.
class Owned : public testing::Test {
 protected:
  struct Panel {
    Surface surface;
    CommandButton& button = surface.add<CommandButton>("button");
  };
  Owned() {
    panel->surface.belongTo(panel);
    handle(panel->button.click, [this] { told += "handler "; });
  }
  /// As a component does that its host lets go of.
  void end() {
    panel->surface.retire();
    panel.reset();
  }

  std::shared_ptr<Panel> panel = std::make_shared<Panel>();
  std::string told;
};

TEST_F(Owned, mayBeEndedByAnObserverAfterWhichNobodyIsTold) {
  const Subscription ending = panel->button.click.observe([this] { end(); });
  const Subscription other = panel->button.click.observe([this] { told += "other "; });
  const std::weak_ptr<Panel> gone = panel;
  panel->button.click.raise();
  EXPECT_EQ(told, "handler ");
  EXPECT_TRUE(gone.expired());
}

TEST_F(Owned, endsTheOperationUnderWhichAnObserverEndedIt) {
  auto& caption = panel->surface.add<TextBox>("caption");
  const Subscription ending = caption.change.observe([this] { end(); });
  handle(panel->button.click, [&] {
    told += "begun ";
    caption.setText("sending");
    told += "sent ";
  });
  EXPECT_NO_THROW(panel->button.click.raise());
  EXPECT_EQ(told, "begun ");
}

TEST_F(Owned, tellsNobodyAfterAHandlerInWhichItEnded) {
  for (const bool waits : {false, true}) {
    panel = std::make_shared<Panel>();
    panel->surface.belongTo(panel);
    handle(panel->button.click, [this, waits] {
      end();
      if (waits) {
        throw OperationEnded();
      }
    });
    const Subscription watching = panel->button.click.observe([this] { told += "told "; });
    EXPECT_NO_THROW(panel->button.click.raise());
    EXPECT_EQ(told, "");
  }
}

TEST_F(Owned, mayGoWithoutAnOwnerInItsHandler) {
  auto lone = std::make_unique<Surface>();
  auto& button = lone->add<CommandButton>("button");
  handle(button.click, [&] { lone.reset(); });
  const Subscription watching = button.click.observe([this] { told += "told "; });
  button.click.raise();
  EXPECT_EQ(told, "");
}

/// A view that counts what it is told and says what it was last.
class CountingView : public View {
 public:
  int changes = 0;
  int confirmations = 0;
  int ends = 0;
  void changed(const Control& /*control*/, Property /*property*/, int /*item*/) override {
    ++changes;
  }
  void confirmed(const Control& /*control*/, Property /*property*/) override { ++confirmations; }
  void ended() noexcept override { ++ends; }
};

TEST_F(Owned, tellsItsViewsOnceThatItEnds) {
  CountingView view;
  panel->surface.attach(view);
  panel->surface.retire();
  panel->button.setCaption("nobody is told of that");
  end();
  EXPECT_EQ(view.ends, 1);
  EXPECT_EQ(view.changes, 0);
}

TEST(ASurface, tellsItsViewsThatItEndsAlsoWithoutAnOwner) {
  CountingView view;
  {
    Surface surface;
    surface.attach(view);
  }
  EXPECT_EQ(view.ends, 1);
}

class ObservingChanges : public Observing {
 protected:
  [[nodiscard]] Subscription watch() {
    return surface.observe([this](const Control& control, Property property, int item) {
      told += control.name() + (property == Property::Caption ? ".Caption " : ".other ");
      EXPECT_EQ(item, -1);
    });
  }
};

TEST_F(ObservingChanges, tellsOfEachChangeWhileTheSubscriptionLives) {
  {
    const Subscription watching = watch();
    button.setCaption("Send");
    button.setCaption("Send");
    button.setTag("x");
  }
  button.setCaption("Stop");
  EXPECT_EQ(told, "button.Caption button.other ");
}

TEST_F(ObservingChanges, tellsNotOfWhatAnActOnlyConfirmed) {
  auto& box = surface.add<CheckBox>("box");
  const Subscription watching = watch();
  box.confirm();
  EXPECT_EQ(told, "");
}

TEST_F(ObservingChanges, mayEndItselfInTheCall) {
  Subscription once;
  once = surface.observe([&, kept = std::string("once ")](const Control&, Property, int) {
    once.end();
    told += kept;
  });
  const Subscription watching = watch();
  button.setCaption("Send");
  button.setCaption("Stop");
  EXPECT_EQ(told, "once button.Caption button.Caption ");
}

TEST_F(ObservingChanges, tellsTheOthersWhenOneThrows) {
  const Subscription throwing = surface.observe(
      [](const Control&, Property, int) { throw std::runtime_error("of the host's own"); });
  const Subscription watching = watch();
  EXPECT_THROW(button.setCaption("Send"), std::runtime_error);
  EXPECT_EQ(told, "button.Caption ");
}

}  // namespace
}  // namespace lumodevice::toolkit
