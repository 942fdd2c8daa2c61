#include "tests/support/panel_bench.hpp"

#include <array>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <utility>
#include <vector>

namespace lumodevice {

void PrintTo(Exchanges exchanges, std::ostream* output) {
  *output << (exchanges == Exchanges::InTurn ? "in turn" : "interleaved");
}

}  // namespace lumodevice

namespace lumodevice::support {

namespace {

constexpr std::string_view kReads[] = {"pass",       "sleep ",   "viRead ",
                                       "ReadString", "Timeout ", "COM3 read "};

bool isRead(std::string_view line) {
  for (const std::string_view beginning : kReads) {
    if (line.starts_with(beginning)) {
      return true;
    }
  }
  return false;
}

/// A line of the journal without what the link adds to a command.
std::string withoutLink(std::string line) {
  if (line.starts_with("viWrite ")) {
    line.erase(0, line.find(' ', line.find(' ') + 1) + 1);
  } else if (line.starts_with("WriteString ")) {
    line.erase(0, line.find(' ') + 1);
    line.erase(line.size() - std::string_view(" END").size());
  } else if (line.starts_with("COM3 write ")) {
    line.erase(0, std::string_view("COM3 write ").size());
  } else {
    return line;
  }
  const bool isList = line.starts_with(":CHAN? LIST\\") || line.starts_with("*RDT?\\");
  if (!line.ends_with(isList ? "\\r" : "\\n")) {
    throw std::logic_error("a command without its terminator: " + line);
  }
  return line.erase(line.size() - 2);
}

}  // namespace

std::string_view linkName(Over link) {
  constexpr std::array kNames = {"VISA library", "VISA COM", "serial"};
  return kNames.at(static_cast<std::size_t>(link));
}

PanelBench::PanelBench(const Setup& setup) : Bench(setup) {
  const std::pair<const char*, const char*> answers[] = {{":Mode?", "CCH\n"},
                                                         {":CONF:VOLT:RANGE?", "16\n"},
                                                         {":CONF:VOLT:LAT?", "0\n"},
                                                         {":LOAD?", "0\n"},
                                                         {":CONF:PROT:CURR:STAT?", "0\n"},
                                                         {":CONF:PROT:VOLT:STAT?", "0\n"},
                                                         {":CONF:PROT:UVP:LEV?", "0\n"},
                                                         {":SPEC:PASS?", "0\n"}};
  for (const auto& [query, answer] : answers) {
    instrument.on(query, answer);
  }
  instrument.otherwise = [](std::string_view sent) {
    return sent.find('?') == std::string_view::npos ? silence() : answer("0.5\n");
  };
}

void PanelBench::connect(Over link) {
  switch (link) {
    case Over::VisaLibrary:
      return connectVisa();
    case Over::VisaCom:
      return connectVisaCom();
    case Over::Serial:
      return connectSerial();
  }
}

void PanelBench::connectWithoutChannel(Over link) {
  instrument.on(":CHAN?", silence());
  connect(link);
}

std::string PanelBench::sent() {
  std::istringstream journalLines(journal());
  std::vector<std::string> kept;
  for (std::string line; std::getline(journalLines, line);) {
    if (!isRead(line)) {
      kept.push_back(withoutLink(line));
    }
  }
  return lines(kept);
}

void PanelBench::chooseMode(int index) {
  mode(index).setValue(true);
  (void)journal();
}

void PanelBench::set(int index, std::string_view text) {
  input(index).setText(text);
  control<toolkit::CommandButton>("cmdSet", index).click.raise();
}

toolkit::TextBox& PanelBench::input(int index) {
  return control<toolkit::TextBox>("txtInput", index);
}

toolkit::CheckBox& PanelBench::box(std::string_view name) {
  return control<toolkit::CheckBox>(name);
}

toolkit::ComboBox& PanelBench::combo(std::string_view name) {
  return control<toolkit::ComboBox>(name);
}

toolkit::OptionButton& PanelBench::mode(int index) {
  return control<toolkit::OptionButton>("optMode", index);
}

void PanelBench::selectChannel(std::string_view channel) {
  toolkit::ComboBox& channels = combo("cmbChannel");
  channels.addItem(channel);
  channels.setListIndex(channels.listCount() - 1);
}

void PanelBench::actAfter(std::string_view command, std::function<void()> act) {
  acting_ = loop.observePasses(
      [this, command = std::string(command), act = std::move(act), done = false]() mutable {
        if (!done && text("Text2") == command) {
          done = true;  // a pass within the act may be told of before this one is over
          acting_.end();
          act();
        }
      });
}

bool PanelBench::switchesSend() {
  (void)journal();
  toolkit::CheckBox& von = box("chkVON");
  von.setValue(von.value() == toolkit::CheckBox::kClear ? toolkit::CheckBox::kTicked
                                                        : toolkit::CheckBox::kClear);
  return !sent().empty();
}

void PrintTo(Over link, std::ostream* output) {
  *output << linkName(link);
}

}  // namespace lumodevice::support
