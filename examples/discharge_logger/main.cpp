// Discharges a battery with a constant current down to a voltage and logs it as CSV on standard
// output.
//
//   discharge_logger                       a simulated battery of 2 Ah, in no time
//   discharge_logger CHANNEL AMPERES VOLTS the first ZAN load that the machine's VISA library finds

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <string>

#include "lumodevice/simulated_host.hpp"
#include "lumodevice/system_host.hpp"
#include "lumodevice/zan_ctrl.hpp"

namespace {

constexpr std::chrono::seconds kEvery(10);

double ask(lumodevice::ZANCtrl& load, const std::string& query) {
  load.SendCmd(query);
  return std::strtod(load.ResultStr().c_str(), nullptr);  // 0 for an answer that did not come
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 1 && argc != 4) {
    std::cerr << "usage: discharge_logger [CHANNEL AMPERES VOLTS]\n";
    return 2;
  }
  const bool real = argc == 4;
  const std::string channel = real ? argv[1] : "3";
  const std::string amperes = real ? argv[2] : "20";
  const double lowest = std::strtod(real ? argv[3] : "10.5", nullptr);

  const lumodevice::Host host =
      real ? lumodevice::systemHost()
           : lumodevice::simulatedHost({.virtualTime = true, .sources = {"3=12.6,0.05,2"}});
  lumodevice::ZANCtrl load(host);
  if (!load.AutoConnect()) {
    std::cerr << "discharge_logger: no ZAN load found\n";
    return 1;
  }
  for (const std::string& command : {":CHAN " + channel, std::string(":MODE CCH"),
                                     ":CURR:STAT:L1 " + amperes, std::string(":LOAD ON")}) {
    load.SendCmd(command);
  }

  std::cout << "seconds,volts,amperes,watts,ampere_hours\n";
  const auto begin = host.loop.now();
  auto before = begin;
  double charge = 0;
  double volts = 0;
  do {
    const auto now = host.loop.now();
    const double current = ask(load, ":FETC:CURR?");
    volts = ask(load, ":FETC:VOLT?");
    charge += current * std::chrono::duration<double, std::ratio<3600>>(now - before).count();
    std::cout << std::chrono::duration<double>(now - begin).count() << ',' << volts << ','
              << current << ',' << volts * current << ',' << charge << std::endl;
    before = now;
    host.loop.runFor(now + kEvery - host.loop.now());
  } while (volts > lowest);
  load.SendCmd(":LOAD OFF");
}
