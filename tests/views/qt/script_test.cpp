#include "hosts/zanctl/script/script.hpp"

#include <QtGui/QGuiApplication>
#include <QtTest/QTest>
#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>
#include <optional>
#include <sstream>
#include <string>

#include "hosts/zanctl/station/station.hpp"
#include "lumodevice/qt/form_view.hpp"
#include "tests/hosts/zanctl/output/text_output.hpp"
#include "tests/views/qt/shown.hpp"
#include "tests/views/qt/widget_hand.hpp"

// A host script does through the window what it does through the terminal, to the last byte.
namespace lumodevice::qt {
namespace {

using toolkit::Control;

/// The operator in front of the window. What the panel covers is brought into view first, by the
/// buttons that the panel has for it.
class WindowHand : public zanctl::OperatorHand {
 public:
  WindowHand(toolkit::Surface& surface, FormView& view)
      : surface_(surface), view_(view), widgets_(view) {}

  bool click(Control& control) override {
    bringIntoView(control);
    return widgets_.click(control);
  }
  bool type(Control& control, std::string_view text) override {
    bringIntoView(control);
    return widgets_.type(control, text);
  }
  bool select(Control& control, int index) override {
    bringIntoView(control);
    return widgets_.select(control, index);
  }
  bool press(Control& control, toolkit::Key key) override {
    bringIntoView(control);
    return widgets_.press(control, key);
  }
  bool drag(toolkit::ListBox& from, std::string_view text, toolkit::ListBox& onto) override {
    bringIntoView(from);
    // Without a screen Qt has no drags.
    return QGuiApplication::platformName() == QStringLiteral("offscreen")
               ? OperatorHand::drag(from, text, onto)
               : widgets_.drag(from, text, onto);
  }

 private:
  void bringIntoView(const Control& control) {
    if (!view_.widgetOf(control)->isVisibleTo(&view_)) {
      const Control& connection = *surface_.find("frmSetting");
      widgets_.click(*surface_.find(connection.visible() ? "cmdConnectOK" : "cmdConnect"));
    }
  }

  toolkit::Surface& surface_;
  FormView& view_;
  support::WidgetHand widgets_;
};

struct Ran {
  std::string printed;
  std::string wire;
};

/// Runs a script on a simulated instrument of its own; in a window or not.
class OneScript : public testing::TestWithParam<std::string> {
 protected:
  static Ran run(const std::string& file, bool inWindow) {
    zanctl::StationOptions options;
    options.simulate = true;
    options.virtualTime = true;
    options.driveC = testing::TempDir() + "/one_script" + (inWindow ? "_window" : "");
    options.trace = "-";
    std::istringstream nothing;
    zanctl::TextOutput output;
    zanctl::TextOutput errors;
    zanctl::Station station(options, {nothing, output, errors});
    zanctl::Script script(station.component(), station.loop(), station.output(), station.errors());
    toolkit::Surface& surface = station.component().surface();
    std::optional<FormView> view;
    std::optional<WindowHand> hand;
    if (inWindow) {
      view.emplace(surface);
      view->resize(view->sizeHint());
      view->show();
      view->activateWindow();
      EXPECT_TRUE(QTest::qWaitForWindowActive(&*view));
      hand.emplace(surface, *view);
      script.setHand(*hand);
    }
    std::ifstream lines(file);
    EXPECT_EQ(script.run(lines, file), zanctl::kDone) << errors.text();
    if (inWindow) {
      EXPECT_EQ(support::differences(*view, surface), "");
    }
    return {output.text(), errors.text()};
  }
};

TEST_P(OneScript, putsTheSameBytesOnTheWireThroughTheWindow) {
  const Ran terminal = run(GetParam(), false);
  EXPECT_GT(terminal.wire.size(), 500U);
  const Ran window = run(GetParam(), true);
  EXPECT_EQ(window.printed, terminal.printed);
  EXPECT_EQ(window.wire, terminal.wire);
}

INSTANTIATE_TEST_SUITE_P(EveryFace, OneScript,
                         testing::Values(EVERYTHING_SCRIPT, EXAMPLE_SCRIPTS "/first-contact.zan",
                                         EXAMPLE_SCRIPTS "/discharge.zan",
                                         EXAMPLE_SCRIPTS "/serial-search.zan",
                                         EXAMPLE_SCRIPTS "/screen-and-files.zan"),
                         [](const auto& script) {
                           std::string name = script.param.substr(script.param.rfind('/') + 1);
                           name.resize(name.rfind('.'));
                           std::replace(name.begin(), name.end(), '-', '_');
                           return name;
                         });

}  // namespace
}  // namespace lumodevice::qt
