#include "tests/slow/slow_bench.hpp"

#include <stdexcept>
#include <utility>

#include "lumodevice/toolkit/hand.hpp"
#include "simulator/commands/command.hpp"

namespace lumodevice::slow {

namespace {

using support::Over;

zansim::Configuration numberedReadings() {
  zansim::Configuration configuration;
  configuration.numberedReadings = true;
  return configuration;
}

}  // namespace

/// A preset is kept as it comes: with its header over the serial port.
std::vector<FormerFile> formerFiles(Over link) {
  const std::string preset(892, 'p');
  return {{"c:\\temp\\zanseq.a", "former sequence"},
          {"c:\\temp\\zanprog.b", "former settings"},
          {"c:\\temp\\zanbank.dev", link == Over::Serial ? "#3892" + preset + "\n" : preset},
          {"c:\\temp\\zan.bmp", "former picture"},
          {"c:\\temp\\zan200k.bmp", "former conversion"},
          {"c:\\temp\\dispoutd.dat", std::string(122880, '\0')},
          {"c:\\temp\\zanprogupload.b", std::string(5580, 'u')},
          {"c:\\temp\\test.dev", ""}};
}

SlowBench::SlowBench(Over link, Exchanges exchanges)
    : link_(link), instrument_{zansim::Mainframe(numberedReadings()), {}, {}} {
  resources_.addUsual(instrument_);
  serial_.plug(kPort, instrument_);
  instrument_.onMessage = [this](std::string_view message, std::string_view answer) {
    if (!answer.empty()) {
      said_[std::string(message)][std::string(answer)] = ++answers_;
    }
  };
  drive.createFolder("c:\\temp");
  for (const FormerFile& file : formerFiles(link)) {
    drive.content(file.path).assign(file.content.begin(), file.content.end());
  }
  component_ = std::make_unique<ZANCtrl>(Host{.loop = loop,
                                              .visa = visa_,
                                              .visaCom = visaCom_,
                                              .serialDevices = serial_,
                                              .drive = drive,
                                              .wallClock = wallClock_,
                                              .informationBox = [](std::string_view) {},
                                              .exchanges = exchanges});
  chooseLink();
  connect();
  if (!zan().isConnected()) {
    throw std::logic_error("the bench did not connect");
  }
}

void SlowBench::press(std::string_view button) {
  dynamic_cast<toolkit::CommandButton&>(find(button)).click.raise();
}

void SlowBench::chooseLink() {
  click(serialLink() ? "optConnRS232" : "optVISA");
  if (!serialLink()) {
    click(link_ == Over::VisaCom ? "optVisa2" : "optVisa1");
  }
}

void SlowBench::connect() {
  if (serialLink()) {
    control<toolkit::TextBox>("Text1").setText(std::to_string(kPort));
    control<toolkit::ComboBox>("Combo2").setListIndex(0);
    press("Command2");
  } else {
    control<toolkit::ComboBox>("cmbVISARes").setText("?*INSTR");
    press("cmdConnVISA");
  }
}

std::string SlowBench::atLoad(std::string_view message) {
  std::string answer;
  zansim::execute(instrument_.mainframe, message, loop.now(), answer);
  return answer;
}

bool SlowBench::getsItsOwnAnswer(std::string_view query) {
  const int before = answers_;
  return belongsTo(ask(query), query, before);
}

bool SlowBench::belongsTo(const std::string& shown, std::string_view query, int before) const {
  const auto answers = said_.find(query);
  if (answers == said_.end()) {
    return false;
  }
  const auto answer = answers->second.find(shown);
  return answer != answers->second.end() && answer->second > before;
}

}  // namespace lumodevice::slow
