// One program, two loads, one loop: both panels keep their read-outs up to date at the same time.
//
//   two_benches            two simulated instruments, in no time
//   two_benches LINK LINK  a serial device (/dev/ttyUSB0) or a VISA resource
//                          (USB0::..., TCPIP0::192.168.1.7::5025::SOCKET) for each

#include <chrono>
#include <iomanip>
#include <iostream>
#include <string>

#include "lumodevice/simulated_host.hpp"
#include "lumodevice/system_host.hpp"
#include "lumodevice/toolkit/hand.hpp"
#include "lumodevice/zan_ctrl.hpp"

namespace {

using namespace lumodevice;
using toolkit::ComboBox;
using toolkit::CommandButton;
using toolkit::OptionButton;
using toolkit::TextBox;

/// An instrument, and what an operator does with its panel.
class Bench {
 public:
  Bench(std::string name, const Host& host) : name_(std::move(name)), load_(host) {}

  /// An empty link is the search over VISA.
  bool connect(const std::string& link) {
    const toolkit::Surface& panel = load_.surface();
    if (link.starts_with('/')) {
      toolkit::hand::click(panel.get<OptionButton>("optConnRS232"));
      return load_.AutoConnect();
    }
    if (link.empty()) {
      return load_.AutoConnect();
    }
    toolkit::hand::type(panel.get<ComboBox>("cmbVISARes"), link);
    toolkit::hand::click(panel.get<CommandButton>("cmdConnVISA"));
    return load_.isConnected();
  }

  /// The commands come first: the auto query would overtake them in the panel's command box.
  void start(const std::string& amperes) {
    load_.SendCmd(":CHAN 1");
    load_.SendCmd(":CURR:STAT:L1 " + amperes);
    load_.SendCmd(":LOAD ON");
    load_.AutoQuery(true);
  }

  void stop() {
    load_.AutoQuery(false);
    load_.SendCmd(":LOAD OFF");
  }

  [[nodiscard]] std::string readOut() {
    const toolkit::Surface& panel = load_.surface();
    return name_ + " " + std::string(panel.get<ComboBox>("cmbChannel").text()) + "  " +
           std::string(panel.get<TextBox>("txtVoltage", 0).text()) + " V  " +
           std::string(panel.get<TextBox>("txtCurrent", 0).text()) + " A";
  }

  [[nodiscard]] const std::string& name() const { return name_; }

 private:
  std::string name_;
  ZANCtrl load_;
};

/// The simulated instruments differ in what hangs on their first channel.
Host hostFor(const std::string& name, const std::string& link, toolkit::EventLoop& loop) {
  const auto box = [name](std::string_view text) { std::cerr << name << ": " << text << '\n'; };
  if (link.empty()) {
    return simulatedHost({.loop = &loop,
                          .modules = "2040,2040",
                          .sources = {name == "left" ? "1=12.6,0.05,5" : "1=24,0.1,5"},
                          .serialNumber = name,
                          .informationBox = box});
  }
  if (link.starts_with('/')) {
    return systemHost({.loop = &loop, .ports = {{1, link}}, .informationBox = box});
  }
  return systemHost({.loop = &loop, .informationBox = box});
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 1 && argc != 3) {
    std::cerr << "usage: two_benches [LINK LINK]\n";
    return 2;
  }
  const bool real = argc == 3;
  const std::string leftLink = real ? argv[1] : "";
  const std::string rightLink = real ? argv[2] : "";

  // Declared before the benches, so that it outlives them.
  toolkit::RealTimeLoop realTime;
  toolkit::VirtualLoop virtualTime;
  toolkit::EventLoop& loop = real ? static_cast<toolkit::EventLoop&>(realTime) : virtualTime;
  Bench left("left", hostFor("left", leftLink, loop));
  Bench right("right", hostFor("right", rightLink, loop));
  for (auto [bench, link] : {std::pair(&left, leftLink), std::pair(&right, rightLink)}) {
    if (!bench->connect(link)) {
      std::cerr << "two_benches: no ZAN load on the " << bench->name() << " bench\n";
      return 1;
    }
  }
  left.start("10");
  right.start("5");
  for (int second = 0; second < 10; ++second) {
    loop.runFor(std::chrono::seconds(1));
    std::cout << std::left << std::setw(40) << left.readOut() << right.readOut() << std::endl;
  }
  left.stop();
  right.stop();
}
