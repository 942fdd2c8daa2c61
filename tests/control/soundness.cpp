#include "tests/control/soundness.hpp"

#include <chrono>
#include <gtest/gtest.h>
#include <string>

#include "lumodevice/toolkit/timer.hpp"

namespace lumodevice::support {

namespace {

constexpr int kHourglass = 11;

void expectListsFit(PanelBench& bench) {
  for (const auto& control : bench.zan().surface().controls()) {
    if (const auto* list = dynamic_cast<const toolkit::ListControl*>(control.get())) {
      EXPECT_LT(list->listIndex(), list->listCount()) << control->fullName();
      if (list->listIndex() >= 0 && list->listIndex() < list->listCount() &&
          control->kind() == toolkit::Kind::ListBox) {
        EXPECT_EQ(list->text(), list->list(list->listIndex())) << control->fullName();
      }
    }
  }
}

void reconnect(PanelBench& bench) {
  const bool serial = bench.control<toolkit::OptionButton>("optConnRS232").value();
  if (serial) {
    bench.control<toolkit::TextBox>("Text1").setText("3");
    bench.combo("Combo2").setListIndex(-1);
    bench.combo("Combo2").setListIndex(0);
  }
  bench.control<toolkit::CommandButton>(serial ? "Command2" : "cmdAutoConnVISA").click.raise();
}

/// The console as a new component has it, and no answer on its way.
void settle(PanelBench& bench) {
  bench.zan().AutoQuery(false);
  bench.control<toolkit::TextBox>("Text5").setText("200");
  bench.control<toolkit::TextBox>("Text6").setText("35");
  bench.control<toolkit::TextBox>("Text6").keyDown.raise(toolkit::Key::Enter);
  bench.control<toolkit::TextBox>("txtSetCmd").setText("");
  bench.run(std::chrono::seconds(2));
}

}  // namespace

void expectConsistent(PanelBench& bench) {
  ZANCtrl& zan = bench.zan();
  expectListsFit(bench);
  EXPECT_NE(bench.control<toolkit::Form>("ZANCtrl").mousePointer(), kHourglass);
  EXPECT_EQ(zan.ConnStyle() != LinkKind::NotConnected, zan.isConnected());
  EXPECT_EQ(zan.ChCount(), zan.isConnected() ? bench.combo("cmbChannel").listCount() : 0);
  if (!zan.isConnected()) {
    EXPECT_FALSE(bench.switchesSend());
    EXPECT_EQ(zan.ErrMessage(), "");
    EXPECT_EQ(bench.sent(), "");
  }
}

bool keepsItsWord(PanelBench& bench) {
  settle(bench);
  return !bench.zan().isConnected() || bench.ask("*IDN?") == kIdentity ||
         bench.ask("*IDN?") == kIdentity;
}

void expectUsable(PanelBench& bench) {
  settle(bench);
  if (!bench.zan().isConnected() || !keepsItsWord(bench)) {
    reconnect(bench);
    ASSERT_TRUE(bench.zan().isConnected());
    ASSERT_EQ(bench.ask("*IDN?"), kIdentity);
  }
  bench.selectChannel("CH2");
  EXPECT_TRUE(bench.switchesSend());
}
}  // namespace lumodevice::support
