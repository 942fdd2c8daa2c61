#include "tests/control/acts.hpp"

#include <chrono>
#include <set>
#include <utility>

#include "lumodevice/toolkit/hand.hpp"
#include "lumodevice/toolkit/timer.hpp"

namespace lumodevice::support {

namespace {

using toolkit::Control;
using toolkit::Kind;

constexpr const char* kResource = "GPIB0::7::INSTR";
constexpr int kPort = 3;

/// By their names: they decide over the link, the channel or the mode.
const std::set<std::string, std::less<>> kMoving = {
    "cmdAutoConnVISA", "cmdConnVISA", "cmdAuto",      "Command2",     "optVISA",
    "optConnRS232",    "optVisa1",    "optVisa2",     "chkAutoQuery", "optMode(2)",
    "optMode(7)",      "cmdSendCmd",  "cmdGetSeqFile"};

/// A hand on the control of that name.
Act byHand(const Control& control, std::string_view what, std::function<void(Control&)> act) {
  return {std::string(what) + ' ' + control.fullName(),
          [name = control.name(), index = control.index(), act = std::move(act)](
              PanelBench& bench) { act(*bench.zan().surface().find(name, index)); },
          kMoving.contains(control.fullName())};
}

/// From code where the control is disabled for hands: its handler must stand that too.
void click(Control& control) {
  if (!toolkit::hand::click(control) && control.kind() == Kind::CommandButton) {
    dynamic_cast<toolkit::CommandButton&>(control).click.raise();
  }
}

void selectLast(Control& control) {
  const int count = dynamic_cast<toolkit::ListControl&>(control).listCount();
  if (count > 0) {
    (void)toolkit::hand::select(control, count - 1);
  }
}

void addControl(std::vector<Act>& acts, const Control& control) {
  switch (control.kind()) {
    case Kind::CommandButton:
    case Kind::CheckBox:
    case Kind::OptionButton:
    case Kind::PictureBox:
    case Kind::Label:
      acts.push_back(byHand(control, "click", click));
      break;
    case Kind::ComboBox:
    case Kind::ListBox:
      acts.push_back(byHand(control, "select the last of", selectLast));
      break;
    case Kind::Timer:
      acts.push_back(byHand(control, "tick", [](Control& timer) {
        dynamic_cast<toolkit::Timer&>(timer).tick.raise();
      }));
      break;
    default:
      break;
  }
}

/// From code, so that fields which are disabled for hands change too.
void typeInto(PanelBench& bench, std::string_view name, std::string_view text) {
  if (name == "txtInput(26)") {
    bench.input(26).setText(text);
  } else if (name.starts_with("cmb")) {
    bench.combo(name).setText(text);
  } else {
    bench.control<toolkit::TextBox>(name).setText(text);
  }
}

void addFields(std::vector<Act>& acts) {
  const std::pair<const char*, const char*> texts[] = {{"TXT", ":CURR:STAT:L1 2"},
                                                       {"TXT", ":FETC:POW?"},
                                                       {"Text2", "*IDN?"},
                                                       {"Text2", ""},
                                                       {"Text5", "0"},
                                                       {"Text5", "x"},
                                                       {"txtSetCmd", ":LOAD 0"},
                                                       {"txtInput(26)", "0"},
                                                       {"cmbChannel", "CH1"},
                                                       {"cmbChannel", "CH2G1"},
                                                       {"cmbVISARes", "none"},
                                                       {"txtReturn", "1,2,ZAN"}};
  for (const auto& [name, text] : texts) {
    acts.push_back({std::string("type \"") + text + "\" into " + name,
                    [name = name, text = text](PanelBench& bench) { typeInto(bench, name, text); },
                    std::string_view(name) == "TXT"});
  }
  for (const char* field : {"Text2", "Text5", "Text6"}) {
    acts.push_back({std::string("press Enter in ") + field, [field](PanelBench& bench) {
                      bench.control<toolkit::TextBox>(field).keyDown.raise(toolkit::Key::Enter);
                    }});
  }
}

void addMembers(std::vector<Act>& acts) {
  const auto add = [&](const char* name, std::function<void(ZANCtrl&)> call, bool moves = false) {
    acts.push_back(
        {name, [call = std::move(call)](PanelBench& bench) { call(bench.zan()); }, moves});
  };
  add("bDevAvaliable put", [](ZANCtrl& zan) { zan.bDevAvaliable(!zan.bDevAvaliable()); });
  add("devZAN put", [](ZANCtrl& zan) { zan.devZAN(nullptr); });
  add("IDN put", [](ZANCtrl& zan) { zan.IDN("A,B,C,1.2.3"); });
  add(
      "AutoQuery put on", [](ZANCtrl& zan) { zan.AutoQuery(true); }, true);
  add("AutoQuery put off", [](ZANCtrl& zan) { zan.AutoQuery(false); });
  add("ErrMessage", [](ZANCtrl& zan) { (void)zan.ErrMessage(); });
  add(
      "SendCmd of a query", [](ZANCtrl& zan) { zan.SendCmd(":FETC:VOLT?"); }, true);
  add(
      "SendCmd of a query without an answer", [](ZANCtrl& zan) { zan.SendCmd(":SILENT?"); }, true);
  add("SendCmd of a command", [](ZANCtrl& zan) { zan.SendCmd(":LOAD 1"); });
  add("DisplayCmd", [](ZANCtrl& zan) { zan.DisplayCmd(false); });
  add("nextCmd", [](ZANCtrl& zan) { (void)zan.nextCmd(); });
  add("ShowControl", [](ZANCtrl& zan) { zan.ShowControl(); });
  add("ShowConnect", [](ZANCtrl& zan) { zan.ShowConnect(); });
  add(
      "AutoConnect", [](ZANCtrl& zan) { (void)zan.AutoConnect(); }, true);
  add(
      "NotConnect", [](ZANCtrl& zan) { zan.NotConnect(); }, true);
  add("GetSeqFile", [](ZANCtrl& zan) { (void)zan.GetSeqFile(); });
  add("GetSysFile", [](ZANCtrl& zan) { (void)zan.GetSysFile(); });
  add("SendSysFile", [](ZANCtrl& zan) { (void)zan.SendSysFile(); });
  add("GetBMPFile", [](ZANCtrl& zan) { (void)zan.GetBMPFile(); });
  add("GetPresetFile", [](ZANCtrl& zan) { (void)zan.GetPresetFile(""); });
  add("SetPresetFile", [](ZANCtrl& zan) { (void)zan.SetPresetFile(); });
  add("PressKeyAt", [](ZANCtrl& zan) {
    const devButton load{.btnTitle = "LOAD", .x1 = 0, .y1 = 0, .x2 = 10, .y2 = 10};
    zan.setKeys({&load, 1});
    zan.PressKeyAt(1, 0, 5, 5);
  });
  acts.push_back({"a group sent", [](PanelBench& bench) {
                    for (const char* channel : {"CH1", "CH2"}) {
                      bench.control<toolkit::ListBox>("List2").addItem(channel);
                    }
                    bench.control<toolkit::CommandButton>("cmdParaOK").click.raise();
                  }});
}

void addConnects(std::vector<Act>& acts) {
  acts.push_back({"connect over the serial port",
                  [](PanelBench& bench) {
                    bench.click("optConnRS232");
                    bench.type("Text1", std::to_string(kPort));
                    bench.control<toolkit::ComboBox>("Combo2").setListIndex(0);
                    bench.control<toolkit::CommandButton>("Command2").click.raise();
                  },
                  true, false});
  for (const char* variant : {"optVisa1", "optVisa2"}) {
    acts.push_back({std::string("connect over VISA with ") + variant,
                    [variant](PanelBench& bench) {
                      bench.click("optVISA");
                      bench.click(variant);
                      bench.control<toolkit::CommandButton>("cmdAutoConnVISA").click.raise();
                    },
                    true, false});
  }
  acts.push_back({"the instrument falls silent",
                  [](PanelBench& bench) {
                    bench.instrument.otherwise = [](std::string_view) { return silence(); };
                  },
                  true, false});
  acts.push_back({"time passes with the auto query on",
                  [](PanelBench& bench) {
                    bench.zan().AutoQuery(true);
                    bench.run(std::chrono::milliseconds(700));
                  },
                  true, false});
}

}  // namespace

std::vector<Act> allActs() {
  std::vector<Act> acts;
  PanelBench bench;
  for (const auto& control : bench.zan().surface().controls()) {
    addControl(acts, *control);
  }
  addFields(acts);
  addMembers(acts);
  addConnects(acts);
  return acts;
}

void plugEverywhere(PanelBench& bench) {
  bench.visa.resources = {{kResource, "GPIB0", &bench.instrument}};
  bench.visaCom.instruments = {{kResource, &bench.instrument}};
  bench.serial.ports[kPort].instrument = &bench.instrument;
  bench.instrument.on(":SILENT?", silence());
  const std::string block = "#15hello\n";
  for (const char* query : {":MEM:FILE:SEQ?", ":SYST:SET?", ":MEM:FILE:PRES?", ":DISP:COL?"}) {
    bench.instrument.on(query, block);
  }
  bench.drive.content("c:\\temp\\ZANProgUpload.b") = MemoryDrive::Bytes(10, 7);
  bench.drive.content("c:\\temp\\test.dev").clear();
}

}  // namespace lumodevice::support
