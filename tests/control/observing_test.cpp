#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "lumodevice/link/gate.hpp"
#include "tests/control/simulated_panel.hpp"

namespace lumodevice {
namespace {

using std::chrono::seconds;
using support::Over;
using support::SimulatedPanel;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using toolkit::CheckBox;
using toolkit::ComboBox;
using toolkit::CommandButton;
using toolkit::OptionButton;
using toolkit::TextBox;

TEST(OnlyLooks, queriesAndTheChoiceOfAChannel) {
  for (const char* message :
       {"*IDN?", "*IDN?\r", ":FETC:VOLT?\n", ":CHAN? LIST\r", ":CHAN 3", "chan 2\n",
        ":CHAN 1;:LOAD?", " :SYST:ERR? ", ":MEM:FILE:SEQ?\n", ":MODE?;:LOAD?"}) {
    EXPECT_TRUE(link::onlyLooks(message)) << message;
  }
}

TEST(OnlyLooks, whatMayDoMoreIsNoLook) {
  for (const char* message :
       {"", "\n", ":LOAD ON", "*RST", "*CLS", ":LOAD ON;:LOAD?", ":LOAD?;:LOAD ON", ":CHAN",
        ":CHAN MAX", ":CHAN 1;", ":SHOW \"what?\"", ":LOAD?ON;*RST", ":LOAD?\n:LOAD ON\n",
        ":LOAD?\t;*RST", ":SYST:SET #45580", ":CHANNEL:ID 2", ":KEYBoard:CODE 111,1"}) {
    EXPECT_FALSE(link::onlyLooks(message)) << message;
  }
}

/// All that an observer must leave alone.
struct State {
  std::vector<zansim::Settings> settings;
  std::vector<bool> on;
  std::vector<zansim::Trip> trips;
  std::size_t selected;
  zansim::Mainframe::Style style;
  zansim::Mainframe::Page page;
  friend bool operator==(const State&, const State&) = default;
};

State stateOf(SimulatedPanel& panel) {
  zansim::Mainframe& mainframe = panel.bench.instrument.mainframe;
  State state{.settings = {},
              .on = {},
              .trips = {},
              .selected = mainframe.selectedChannel(),
              .style = mainframe.style(),
              .page = mainframe.page()};
  for (std::size_t i = 1; i <= mainframe.channelCount(); ++i) {
    const zansim::Channel& channel = panel.channel(i);
    state.settings.push_back(channel.settings());
    state.on.push_back(channel.isOn());
    state.trips.push_back(channel.trip());
  }
  return state;
}

/// A running load: every mode, switched on or off, with its protections and tests on or off.
struct Running {
  const zansim::Mode* mode;
  bool on;
  bool protections;
};

std::vector<Running> allRunning() {
  std::vector<Running> all;
  for (const zansim::Mode& mode : zansim::modes()) {
    for (const bool on : {false, true}) {
      for (const bool protections : {false, true}) {
        all.push_back({&mode, on, protections});
      }
    }
  }
  return all;
}

void start(SimulatedPanel& panel, const Running& running) {
  for (std::size_t i = 1; i <= 2; ++i) {
    zansim::Channel& channel = panel.channel(i);
    zansim::Settings settings = channel.settings();
    settings.mode = running.mode;
    settings.lowAmps = running.mode->low;
    settings.lowOhms = running.mode->low;
    settings.staticAmpsA = 0.0008;
    settings.highVolts = !running.protections;
    settings.overCurrentOn = running.protections;
    settings.overVoltageOn = running.protections;
    settings.underVoltage = running.protections ? 0.5 : 0;
    settings.judging = running.protections;
    settings.onLatch = running.protections;
    channel.apply(settings);
    if (running.on) {
      (void)channel.switchOn();
    }
  }
}

struct Case {
  Over link;
  Exchanges exchanges;
};

class Observing : public testing::TestWithParam<Case> {
 protected:
  [[nodiscard]] static SimulatedPanel::Setup setup() {
    return {.link = GetParam().link, .observing = true, .exchanges = GetParam().exchanges};
  }
};

INSTANTIATE_TEST_SUITE_P(Links, Observing,
                         testing::Values(Case{Over::VisaLibrary, Exchanges::InTurn},
                                         Case{Over::VisaCom, Exchanges::InTurn},
                                         Case{Over::Serial, Exchanges::InTurn},
                                         Case{Over::VisaLibrary, Exchanges::Interleaved},
                                         Case{Over::Serial, Exchanges::Interleaved}));

TEST_P(Observing, aConnectAndAChannelSelectionLeaveARunningLoadAsItIs) {
  for (const Running& running : allRunning()) {
    SimulatedPanel panel(setup());
    start(panel, running);
    const State before = stateOf(panel);
    ASSERT_TRUE(panel.connect());
    EXPECT_TRUE(stateOf(panel) == before) << running.mode->word;
    auto& channels = panel.control<ComboBox>("cmbChannel");
    channels.setListIndex(1);
    panel.load.AutoQuery(true);
    panel.loop.runFor(seconds(3));
    channels.setListIndex(0);
    EXPECT_TRUE(stateOf(panel) == before) << running.mode->word;
    EXPECT_THAT(panel.heldBack, IsEmpty()) << running.mode->word;
    EXPECT_THAT(panel.boxes, IsEmpty()) << running.mode->word;
  }
}

TEST_P(Observing, thePanelShowsTheInstrumentsModeAndLoadState) {
  for (const Running& running : allRunning()) {
    SimulatedPanel panel(setup());
    start(panel, running);
    ASSERT_TRUE(panel.connect());
    std::string chosen;
    for (int i = 0; i < 9; ++i) {
      if (panel.control<OptionButton>("optMode", i).value()) {
        chosen = panel.control<OptionButton>("optMode", i).look().toolTip;
      }
    }
    EXPECT_EQ(chosen, ":MODE " + std::string(running.mode->word));
    EXPECT_EQ(panel.control<CheckBox>("chkLoad").value() == CheckBox::kTicked, running.on);
    for (const char* protection : {"chkOCP", "chkOVP", "chkUVP", "chkGoNogo"}) {
      EXPECT_EQ(panel.control<CheckBox>(protection).value() == CheckBox::kTicked,
                running.protections)
          << protection;
    }
  }
}

TEST_P(Observing, noActOfAnOperatorReachesTheInstrument) {
  SimulatedPanel panel(setup());
  start(panel, {&zansim::modes().front(), true, true});
  panel.drive.content("c:\\temp\\ZANProgUpload.b").assign(5580, 1);
  panel.drive.content("c:\\temp\\zanbank.dev").assign(898, 1);
  (void)panel.drive.content("c:\\temp\\test.dev");
  ASSERT_TRUE(panel.connect());
  const State before = stateOf(panel);
  const std::uint64_t stored = panel.bench.instrument.mainframe.memory().changes();
  const std::vector<devButton> keys{{.btnTitle = "LOAD", .x1 = 0, .y1 = 0, .x2 = 9, .y2 = 9}};
  panel.load.setKeys(keys);
  const std::vector<std::pair<const char*, std::function<void()>>> acts{
      {"load", [&] { panel.control<CheckBox>("chkLoad").setValue(CheckBox::kClear); }},
      {"OCP", [&] { panel.control<CheckBox>("chkOCP").setValue(CheckBox::kClear); }},
      {"UVP", [&] { panel.control<CheckBox>("chkUVP").setValue(CheckBox::kClear); }},
      {"range", [&] { panel.control<ComboBox>("cmbVolRange").setListIndex(1); }},
      {"mode", [&] { panel.control<OptionButton>("optMode", 2).setValue(true); }},
      {"value",
       [&] {
         panel.control<TextBox>("txtInput", 0).setText("3");
         panel.control<CommandButton>("cmdSet", 0).click.raise();
       }},
      {"groups", [&] { panel.control<CommandButton>("cmdParaOK").click.raise(); }},
      {"key", [&] { panel.load.PressKeyAt(1, 0, 5, 5); }},
      {"command", [&] { panel.load.SendCmd(":LOAD OFF"); }},
      {"two commands", [&] { panel.load.SendCmd(":LOAD?;:LOAD OFF"); }},
      {"system", [&] { (void)panel.load.SendSysFile(); }},
      {"preset", [&] { (void)panel.load.SetPresetFile(); }},
  };
  for (const auto& [name, act] : acts) {
    panel.heldBack.clear();
    act();
    EXPECT_EQ(panel.heldBack.size(), 1U) << name;
    EXPECT_TRUE(stateOf(panel) == before) << name;
  }
  EXPECT_EQ(panel.bench.instrument.mainframe.memory().changes(), stored);
  EXPECT_THAT(panel.boxes, IsEmpty());
}

TEST_P(Observing, whatWasHeldBackIsNotShownAsDone) {
  SimulatedPanel panel(setup());
  start(panel, {&zansim::modes().front(), true, true});
  ASSERT_TRUE(panel.connect());
  const std::string amps = panel.control<TextBox>("txtInput", 0).text();
  panel.control<CheckBox>("chkLoad").setValue(CheckBox::kClear);
  panel.control<CheckBox>("chkUVP").setValue(CheckBox::kClear);
  panel.control<OptionButton>("optMode", 2).setValue(true);
  panel.control<TextBox>("txtInput", 0).setText("3");
  panel.control<CommandButton>("cmdSet", 0).click.raise();
  EXPECT_EQ(panel.control<CheckBox>("chkLoad").value(), CheckBox::kTicked);
  EXPECT_EQ(panel.control<CheckBox>("chkLoad").caption(), "CHAN LOAD ON");
  EXPECT_EQ(panel.control<CheckBox>("chkUVP").value(), CheckBox::kTicked);
  EXPECT_FALSE(panel.control<OptionButton>("optMode", 2).value());
  EXPECT_EQ(panel.control<TextBox>("txtInput", 0).text(), amps);
}

TEST(ObservingAtRunTime, canBeSwitchedOnAndOff) {
  SimulatedPanel panel({});
  ASSERT_TRUE(panel.connect());
  panel.load.observing(true);
  EXPECT_TRUE(panel.load.observing());
  panel.load.SendCmd(":LOAD ON");
  EXPECT_THAT(panel.heldBack, ElementsAre(":LOAD ON"));
  EXPECT_EQ(panel.load.failure().kind, FailureKind::HeldBack);
  EXPECT_FALSE(panel.channel(1).isOn());
  panel.load.observing(false);
  panel.load.SendCmd(":LOAD ON");
  EXPECT_TRUE(panel.channel(1).isOn());
  EXPECT_EQ(panel.load.failure().kind, FailureKind::None);
}

TEST(ObservingAtRunTime, aSwitchThatTheInstrumentDoesNotTellIsNotShownAsSwitched) {
  SimulatedPanel panel({});
  ASSERT_TRUE(panel.connect());
  panel.load.observing(true);
  panel.bench.instrument.faults.add("silent on=:LOAD?");
  panel.control<CheckBox>("chkLoad").setValue(CheckBox::kTicked);
  EXPECT_EQ(panel.control<CheckBox>("chkLoad").value(), CheckBox::kGreyed);
}

}  // namespace
}  // namespace lumodevice
