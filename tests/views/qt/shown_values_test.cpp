#include <QtTest/QTest>
#include <array>
#include <charconv>
#include <gtest/gtest.h>
#include <optional>
#include <string>

#include "lumodevice/form/control_rows.hpp"
#include "lumodevice/qt/form_view.hpp"
#include "simulator/links/connection.hpp"
#include "tests/control/simulated_panel.hpp"
#include "tests/views/qt/widget_hand.hpp"

// What the window shows is what the instrument has: after each act of the operator the instrument
// is asked over a connection of its own.
namespace lumodevice::qt {
namespace {

using support::SimulatedPanel;
using toolkit::CheckBox;
using toolkit::OptionButton;
using toolkit::TextBox;

std::optional<double> number(std::string_view text) {
  double value = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
  return read.ec == std::errc() ? std::optional(value) : std::nullopt;
}

struct SwitchRow {
  const char* box;
  const char* query;
};
constexpr std::array kSwitches{
    SwitchRow{"chkVON", ":CONF:VOLT:LAT?"},       SwitchRow{"chkOCP", ":CONF:PROT:CURR:STAT?"},
    SwitchRow{"chkOVP", ":CONF:PROT:VOLT:STAT?"}, SwitchRow{"chkUVP", ":CONF:PROT:UVP:LEV?"},
    SwitchRow{"chkGoNogo", ":SPEC:PASS?"},        SwitchRow{"chkLoad", ":LOAD?"}};
constexpr std::array kModes{"CCH", "CCL", "CV", "CRH", "CRL", "CCDH", "CCDL", "CRDH", "CRDL"};
constexpr int kCRDynamicHigh = 7;
constexpr int kUvp = 26;

class TheWindow : public testing::TestWithParam<support::Over> {
 protected:
  TheWindow() : panel({.link = GetParam()}) {
    view.resize(view.sizeHint());
    view.show();
    view.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&view));
    EXPECT_TRUE(panel.connect());
    panel.load.ShowControl();
  }

  /// What the instrument answers to somebody else.
  std::string ask(const std::string& query) {
    other.feed(query + '\n', true, panel.clock.now());
    std::string answer = other.takeAll(panel.clock.now());
    while (!answer.empty() && answer.back() == '\n') {
      answer.pop_back();
    }
    EXPECT_NE(answer, "") << query;
    return answer;
  }

  /// What a module does not have is disabled, and empty. Without UVP its box keeps the level for
  /// when it is ticked again.
  bool inUse(const toolkit::Control& box) {
    if (&box == &panel.control<TextBox>("txtInput", kUvp) &&
        panel.control<CheckBox>("chkUVP").value() != CheckBox::kTicked) {
      return false;
    }
    const QWidget& widget = *view.widgetOf(box);
    return widget.isVisibleTo(&view) && widget.isEnabledTo(&view);
  }

  /// Everything that is in view; a line for each thing that is not as the instrument has it.
  std::string lies() {
    std::string lies;
    const auto differ = [&](std::string_view name, const std::string& shown,
                            const std::string& is) {
      lies += std::string(name) + " shows " + shown + ", the instrument has " + is + '\n';
    };
    for (const form::SettingRow& row : form::kSettings) {
      auto& box = panel.control<TextBox>("txtInput", row.index);
      const std::string is = ask(std::string(row.command.text()) + '?');
      if (inUse(box) && number(box.text()) != number(is)) {
        differ(row.command.text(), box.text(), is);
      }
    }
    for (const SwitchRow& row : kSwitches) {
      const bool shown = panel.control<CheckBox>(row.box).value() == CheckBox::kTicked;
      const std::string is = ask(row.query);
      if (shown != (number(is).value_or(0) != 0)) {
        differ(row.box, shown ? "on" : "off", is);
      }
    }
    const std::string mode = ask(":MODE?");
    for (std::size_t i = 0; i < kModes.size(); ++i) {
      const bool shown = panel.control<OptionButton>("optMode", static_cast<int>(i)).value();
      if (shown && mode != kModes.at(i) && mode != std::to_string(i)) {
        differ("optMode", kModes.at(i), mode);
      }
    }
    return lies;
  }

  SimulatedPanel panel;
  FormView view{panel.load.surface()};
  support::WidgetHand hand{view};
  zansim::Connection other{panel.bench.instrument, zansim::Connection::Kind::Stream};
};

TEST_P(TheWindow, showsWhatTheInstrumentHasAfterEachAct) {
  const auto& channels = panel.control<toolkit::ComboBox>("cmbChannel");
  for (int channel = 0; channel < channels.listCount(); channel += 2) {
    ASSERT_TRUE(hand.select(channels, channel));
    EXPECT_EQ(lies(), "") << "after channel " << channels.list(channel);
    // The dynamic resistance modes are answered crossed by the instruments in the field.
    for (int mode = 0; mode < kCRDynamicHigh; ++mode) {
      ASSERT_TRUE(hand.click(panel.control<OptionButton>("optMode", mode)));
      EXPECT_EQ(lies(), "") << "after mode " << mode;
      for (const form::SettingRow& row : form::kSettings) {
        auto& box = panel.control<TextBox>("txtInput", row.index);
        if (!inUse(box)) {
          continue;
        }
        const std::string most = ask(std::string(row.command.text()) + "? MAX");
        ASSERT_TRUE(hand.type(box, most));
        ASSERT_TRUE(hand.click(panel.control<toolkit::CommandButton>("cmdSet", row.index)));
        EXPECT_EQ(lies(), "") << "after " << row.command.text() << " in mode " << mode;
      }
    }
    for (const SwitchRow& row : kSwitches) {
      for (int i = 0; i < 2; ++i) {
        (void)hand.click(panel.control<CheckBox>(row.box));
        EXPECT_EQ(lies(), "") << "after " << row.box;
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(EachLink, TheWindow, testing::ValuesIn(support::kLinks));

}  // namespace
}  // namespace lumodevice::qt
