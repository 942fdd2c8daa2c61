#pragma once

#include <QtCore/QCoreApplication>
#include <QtTest/QTest>
#include <QtWidgets/qtestsupport_widgets.h>
#include <gtest/gtest.h>

#include "lumodevice/qt/form_view.hpp"
#include "tests/support/panel_bench.hpp"
#include "tests/views/qt/widget_hand.hpp"

namespace lumodevice::support {

/// The panel of a scripted bench in a window.
class PanelWindow : public testing::Test {
 protected:
  PanelWindow() : PanelWindow(Exchanges::InTurn) {}
  explicit PanelWindow(Exchanges exchanges) : bench({.exchanges = exchanges}) {
    view.resize(view.sizeHint());
    view.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&view));
    view.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&view));
    QCoreApplication::processEvents();
  }

  [[nodiscard]] toolkit::Surface& surface() { return bench.zan().surface(); }
  [[nodiscard]] toolkit::Control& control(std::string_view name, std::optional<int> index = {}) {
    return *surface().find(name, index);
  }
  template <typename Widget>
  [[nodiscard]] Widget& widget(const toolkit::Control& of) {
    return dynamic_cast<Widget&>(*view.widgetOf(of));
  }

  PanelBench bench;
  qt::FormView view{bench.zan().surface()};
  WidgetHand hand{view};
};

}  // namespace lumodevice::support
