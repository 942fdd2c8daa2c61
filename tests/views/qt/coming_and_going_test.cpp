#include <QtCore/QTimer>
#include <QtTest/QTest>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QLineEdit>
#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "lumodevice/qt/form_view.hpp"
#include "lumodevice/qt/qt_loop.hpp"
#include "lumodevice/simulated_host.hpp"
#include "lumodevice/toolkit/handling.hpp"
#include "lumodevice/zan_ctrl.hpp"
#include "tests/views/qt/panel_window.hpp"
#include "tests/views/qt/shown.hpp"

namespace lumodevice::qt {
namespace {

using support::differences;
using support::PanelWindow;
using support::WidgetHand;
using toolkit::CheckBox;
using toolkit::CommandButton;
using toolkit::TextBox;

// ---- two views

TEST_F(PanelWindow, twoViewsOfOneComponentStayInStep) {
  bench.connect();
  FormView second(surface());
  second.show();
  WidgetHand otherHand(second);
  bench.zan().ShowControl();
  EXPECT_TRUE(hand.type(control("txtInput", 0), "1.5"));
  EXPECT_TRUE(otherHand.click(control("cmdSet", 0)));
  EXPECT_TRUE(otherHand.click(control("chkOCP")));
  EXPECT_EQ(bench.sent(), ":CURR:STAT:L1 1.5\n:CONF:PROT:CURR:STAT 1\n");
  for (const FormView* each : {&view, &second}) {
    EXPECT_EQ(differences(*each, surface()), "");
    EXPECT_TRUE(dynamic_cast<QCheckBox&>(*each->widgetOf(control("chkOCP"))).isChecked());
  }
}

// ---- a view that goes

/// Where every exchange passes events, whether its answer is there or not.
class InterleavedWindow : public PanelWindow {
 protected:
  InterleavedWindow() : PanelWindow(Exchanges::Interleaved) {}
};

TEST_F(PanelWindow, aViewGoesAndTheComponentStays) {
  auto second = std::make_unique<FormView>(surface());
  second->show();
  bench.connect();
  second.reset();
  bench.zan().ShowControl();
  EXPECT_TRUE(hand.click(control("chkOVP")));
  EXPECT_EQ(differences(view, surface()), "");
}

TEST_F(InterleavedWindow, aViewGoesInTheMiddleOfAnActOfItsOwn) {
  bench.connect();
  auto doomed = std::make_unique<FormView>(surface());
  doomed->show();
  // The wait for the answer comes back to Qt, where somebody closes the window.
  bool gone = false;
  const auto watching = bench.loop.observePasses([&] {
    doomed.reset();
    gone = true;
  });
  WidgetHand(*doomed).click(control("Command1"));
  EXPECT_TRUE(gone);
  EXPECT_EQ(bench.sent(), "*IDN?\n");
  EXPECT_EQ(differences(view, surface()), "");
}

TEST_F(InterleavedWindow, aViewComesInTheMiddleOfAnAct) {
  bench.connect();
  std::unique_ptr<FormView> late;
  const auto watching = bench.loop.observePasses([&] {
    if (!late) {
      late = std::make_unique<FormView>(surface());
      late->show();
    }
  });
  EXPECT_TRUE(hand.click(control("Command1")));
  ASSERT_NE(late, nullptr);
  EXPECT_EQ(differences(*late, surface()), "");
}

TEST_F(PanelWindow, theComponentGoesAndTheViewIsLeftWithoutUse) {
  bench.connect();
  bench.zan().ShowControl();
  auto& edit = widget<QLineEdit>(control("txtInput", 0));
  const toolkit::Control* const before = &control("txtInput", 0);
  bench.destroy();
  EXPECT_FALSE(edit.isEnabled());
  EXPECT_EQ(view.widgetOf(*before), nullptr);
  QTest::keyClicks(&edit, QStringLiteral("2"));
  WidgetHand::flush();
  QFont larger = view.font();
  larger.setPointSize(larger.pointSize() + 3);
  view.setFont(larger);
  view.grab();
}

TEST_F(InterleavedWindow, theComponentGoesInTheMiddleOfAnAct) {
  bench.connect();
  bool gone = false;
  const auto watching = bench.loop.observePasses([&] {
    if (!std::exchange(gone, true)) {
      bench.destroy();
    }
  });
  (void)hand.click(control("Command1"));
  EXPECT_TRUE(gone);
  EXPECT_FALSE(view.widget()->isEnabled());
}

TEST_F(PanelWindow, anActOnItsWayIsForgottenWithItsComponent) {
  bench.connect();
  bench.zan().ShowControl();
  QTest::mouseClick(view.widgetOf(control("chkOCP")), Qt::LeftButton, {}, QPoint(8, 12));
  bench.destroy();
  WidgetHand::flush();
}

// ---- refusals and failures

/// A form of the test's own.
class SmallForm : public testing::Test {
 protected:
  SmallForm() {
    form.setPlace({0, 0, 6000, 3000});
    int top = 0;
    for (toolkit::Control* control :
         std::initializer_list<toolkit::Control*>{&box, &button, &field}) {
      control->setPlace({0, top, 3000, 400});
      top += 500;
    }
    view.emplace(surface);
    view->setFailureHandler([this](const std::exception_ptr& failure) {
      try {
        std::rethrow_exception(failure);
      } catch (const std::exception& exception) {
        failures += exception.what();
      }
    });
    view->show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&*view));
  }

  toolkit::Surface surface;
  toolkit::Form& form = surface.add<toolkit::Form>("form");
  CheckBox& box = surface.add<CheckBox>("box", {}, &form);
  CommandButton& button = surface.add<CommandButton>("button", {}, &form);
  TextBox& field = surface.add<TextBox>("field", {}, &form);
  std::optional<FormView> view;
  std::string failures;
};

TEST_F(SmallForm, anActThatIsRefusedBringsItsWidgetBack) {
  QWidget* const widget = view->widgetOf(box);
  QTest::mouseClick(widget, Qt::LeftButton, {}, QPoint(8, 10));
  EXPECT_TRUE(dynamic_cast<QCheckBox*>(widget)->isChecked()) << "what the operator means";
  box.setEnabled(false);  // before it comes to that
  WidgetHand::flush();
  EXPECT_EQ(box.value(), CheckBox::kClear);
  EXPECT_FALSE(dynamic_cast<QCheckBox*>(widget)->isChecked());
}

TEST_F(SmallForm, anActThatItsHandlerTakesBackBringsItsWidgetBack) {
  toolkit::handle(box.click, [this] { box.setValue(CheckBox::kClear); });
  WidgetHand(*view).click(box);
  EXPECT_EQ(differences(*view, box), "");
}

TEST_F(SmallForm, whatAHandlerThrowsIsHandedOverAndGoesNowhereElse) {
  toolkit::handle(button.click, [] { throw std::runtime_error("of the host's own"); });
  WidgetHand(*view).click(button);
  EXPECT_EQ(failures, "of the host's own");
  WidgetHand(*view).click(box);
  EXPECT_EQ(box.value(), CheckBox::kTicked) << "the form goes on";
}

TEST_F(SmallForm, theLettersTypedWhileAnActRunsAreNotLost) {
  std::vector<std::string> texts;
  const auto watching = field.change.observe([&] { texts.push_back(field.text()); });
  auto& edit = dynamic_cast<QLineEdit&>(*view->widgetOf(field));
  edit.setFocus();
  QTest::keyClicks(&edit, QStringLiteral("1.5"));  // three acts on their way
  WidgetHand::flush();
  EXPECT_EQ(field.text(), "1.5");
  EXPECT_EQ(edit.text().toStdString(), "1.5");
  EXPECT_EQ(edit.cursorPosition(), 3);
}

TEST_F(SmallForm, theFormLearnsThatItCameIntoView) {
  int shows = 0;
  const auto watching = form.show.observe([&] { ++shows; });
  WidgetHand::flush();
  shows = 0;
  view->hide();
  view->show();
  WidgetHand::flush();
  EXPECT_EQ(shows, 1);
}

TEST_F(SmallForm, showsTheHourglassOverAllOfItself) {
  QWidget* const edit = view->widgetOf(field);
  const Qt::CursorShape before = edit->cursor().shape();
  form.setMousePointer(11);
  EXPECT_EQ(edit->cursor().shape(), Qt::WaitCursor);
  EXPECT_EQ(view->widgetOf(button)->cursor().shape(), Qt::WaitCursor);
  form.setMousePointer(1);
  EXPECT_EQ(edit->cursor().shape(), before);
  EXPECT_EQ(view->widgetOf(button)->cursor().shape(), Qt::ArrowCursor);
}

// ---- in real time

TEST(InAWait, noActRunsThatCameWithoutInput) {
  toolkit::Surface surface;
  auto& button = surface.add<CommandButton>("button");
  button.setPlace({0, 0, 1500, 420});
  int clicks = 0;
  toolkit::handle(button.click, [&] { ++clicks; });
  QtLoop loop;
  FormView view(surface);
  view.show();
  // A button that a key has pressed clicks a little later, by a timer of Qt's.
  QTimer::singleShot(10, [&] { dynamic_cast<QAbstractButton*>(view.widgetOf(button))->click(); });
  loop.sleep(60);
  EXPECT_EQ(clicks, 0);
  loop.processEvents();
  EXPECT_EQ(clicks, 1);
}

TEST(InAWait, aViewCloses) {
  toolkit::Surface surface;
  auto& button = surface.add<CommandButton>("button");
  button.setPlace({0, 0, 1500, 420});
  QtLoop loop;
  auto view = std::make_unique<FormView>(surface);
  view->show();
  bool done = false;
  toolkit::handle(button.click, [&] {
    QTimer::singleShot(10, [&] { view.reset(); });
    loop.sleep(50);
    done = true;
  });
  WidgetHand(*view).click(button);
  EXPECT_TRUE(done);
  EXPECT_EQ(view, nullptr);
}

TEST(ASearch, keepsTheWindowAlive) {
  QtLoop loop;
  ZANCtrl load(simulatedHost({.loop = &loop, .driveC = testing::TempDir() + "/qt_c"}));
  FormView view(load.surface());
  view.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&view));
  WidgetHand(view).click(*load.surface().find("cmdAutoConnVISA"));
  EXPECT_TRUE(load.isConnected());
  EXPECT_EQ(differences(view, load.surface()), "");
}

}  // namespace
}  // namespace lumodevice::qt
