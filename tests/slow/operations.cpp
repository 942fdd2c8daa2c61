#include "tests/slow/operations.hpp"

#include <chrono>

#include "lumodevice/toolkit/hand.hpp"

namespace lumodevice::slow {

namespace {

using namespace std::chrono_literals;

void send(SlowBench& bench, std::string_view command) {
  bench.zan().SendCmd(command);
}

void flip(SlowBench& bench, std::string_view name) {
  auto& box = bench.control<toolkit::CheckBox>(name);
  box.setValue(box.value() == toolkit::CheckBox::kTicked ? toolkit::CheckBox::kClear
                                                         : toolkit::CheckBox::kTicked);
}

void changeTheLink(SlowBench& bench) {
  bench.click(bench.serialLink() ? "optVISA" : "optConnRS232");
  bench.chooseLink();
  bench.connect();
}

void chooseALoadThatIsOn(SlowBench& bench) {
  (void)bench.atLoad(":LOAD ON");
  bench.control<toolkit::ComboBox>("cmbChannel").click.raise();
}

void setAValue(SlowBench& bench) {
  bench.control<toolkit::TextBox>("txtInput", 0).setText("1.5");
  bench.control<toolkit::CommandButton>("cmdSet", 0).click.raise();
}

void query(SlowBench& bench) {
  bench.zan().AutoQuery(true);
  bench.loop.runFor(4s);
  bench.zan().AutoQuery(false);
}

void queryAndSend(SlowBench& bench) {
  bench.zan().AutoQuery(true);
  for (const char* command : {":FETC:CURR?", ":CHAN?", ":LOAD ON", "*IDN?"}) {
    bench.loop.runFor(330ms);
    send(bench, command);
  }
  bench.zan().AutoQuery(false);
}

void sendAGroup(SlowBench& bench) {
  for (const char* channel : {"CH3", "CH4"}) {
    bench.control<toolkit::ListBox>("List2").addItem(channel);
  }
  bench.press("cmdParaOK");
}

void pressAKey(SlowBench& bench) {
  const devButton chan{.btnTitle = "CHAN", .x1 = 0, .y1 = 0, .x2 = 10, .y2 = 10};
  bench.zan().setKeys({&chan, 1});
  bench.zan().PressKeyAt(1, 0, 5, 5);
}

constexpr Operation kOperations[] = {
    {"send a query", [](SlowBench& bench) { send(bench, ":FETC:VOLT?"); }},
    {"send a command", [](SlowBench& bench) { send(bench, ":LOAD ON"); }, true},
    {"connect again", [](SlowBench& bench) { bench.connect(); }},
    {"search again", [](SlowBench& bench) { bench.search(); }},
    {"AutoConnect", [](SlowBench& bench) { (void)bench.zan().AutoConnect(); }},
    {"change the link and back", changeTheLink},
    {"choose a channel",
     [](SlowBench& bench) {
       auto& channels = bench.control<toolkit::ComboBox>("cmbChannel");
       channels.setListIndex(channels.listCount() - 1);
     }},
    {"choose a channel whose load is on", chooseALoadThatIsOn},
    {"choose a mode",
     [](SlowBench& bench) { bench.control<toolkit::OptionButton>("optMode", 2).setValue(true); }},
    {"set a value", setAValue},
    {"switch the load", [](SlowBench& bench) { flip(bench, "chkLoad"); }},
    {"switch the latch", [](SlowBench& bench) { flip(bench, "chkVON"); }},
    {"auto query", query},
    {"auto query and commands", queryAndSend, true},
    {"get the sequence", [](SlowBench& bench) { (void)bench.zan().GetSeqFile(); }},
    {"get the settings", [](SlowBench& bench) { (void)bench.zan().GetSysFile(); }},
    {"send the settings", [](SlowBench& bench) { (void)bench.zan().SendSysFile(); }},
    {"get the preset", [](SlowBench& bench) { (void)bench.zan().GetPresetFile(""); }},
    {"send the preset", [](SlowBench& bench) { (void)bench.zan().SetPresetFile(); }},
    {"capture the screen", [](SlowBench& bench) { (void)bench.zan().GetBMPFile(); }},
    {"capture and show the screen", [](SlowBench& bench) { bench.press("cmdGetBMPFile"); }},
    {"capture a dump", [](SlowBench& bench) { bench.press("cmdGetCTRLScrn"); }},
    {"convert the dump", [](SlowBench& bench) { bench.press("cmdWork"); }},
    {"send a group", sendAGroup},
    {"press a key", pressAKey, true},
};

}  // namespace

std::span<const Operation> operations() {
  return kOperations;
}

}  // namespace lumodevice::slow
