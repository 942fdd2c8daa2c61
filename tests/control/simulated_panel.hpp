#pragma once

#include <memory>
#include <string>
#include <vector>

#include "lumodevice/io/visa_com_over_visa.hpp"
#include "lumodevice/toolkit/controls.hpp"
#include "lumodevice/toolkit/hand.hpp"
#include "lumodevice/zan_ctrl.hpp"
#include "platform/loop_clock.hpp"
#include "simulator/simulated_bench.hpp"
#include "tests/support/bench.hpp"
#include "tests/support/panel_bench.hpp"

namespace lumodevice::support {

/// A component in virtual time, with a simulated load on each link whose inside can be looked at.
struct SimulatedPanel {
  struct Setup {
    Over link = Over::VisaLibrary;
    bool observing = false;
    Exchanges exchanges = Exchanges::InTurn;
  };

  explicit SimulatedPanel(const Setup& setup)
      : link(setup.link),
        load(Host{.loop = loop,
                  .visa = bench.visa,
                  .visaCom = visaCom,
                  .serialDevices = bench.serialDevices,
                  .drive = drive,
                  .wallClock = wallClock,
                  .informationBox = [this](std::string_view text) { boxes.emplace_back(text); },
                  .exchanges = setup.exchanges,
                  .observing = setup.observing}) {
    heldBacks =
        load.observeHeldBack([this](const std::string& command) { heldBack.push_back(command); });
    losses = load.observeLinkLost(
        [this](const Failure& why) { told.push_back("lost: " + why.sentence); });
    returns = load.observeLinkRegained([this] { told.emplace_back("regained"); });
  }

  bool connect() {
    if (link == Over::VisaCom) {
      toolkit::hand::click(control<toolkit::OptionButton>("optVisa2"));
    } else if (link == Over::Serial) {
      toolkit::hand::click(control<toolkit::OptionButton>("optConnRS232"));
    }
    return load.AutoConnect();
  }

  template <typename ControlType>
  ControlType& control(std::string_view name, std::optional<int> index = {}) {
    return load.surface().get<ControlType>(name, index);
  }
  std::string ask(std::string_view query) {
    load.SendCmd(query);
    return load.ResultStr();
  }
  zansim::Channel& channel(std::size_t number) {
    return bench.instrument.mainframe.channel(number, clock.now());
  }

  Over link;
  toolkit::VirtualLoop loop;
  lumodevice::platform::LoopClock clock{loop};
  zansim::SimulatedBench bench{clock};
  io::VisaComOverVisa visaCom{bench.visa};
  Script script;
  MemoryDrive drive{script};
  FixedClock wallClock;
  std::vector<std::string> boxes;
  std::vector<std::string> heldBack;
  std::vector<std::string> told;
  ZANCtrl load;
  toolkit::Subscription heldBacks;
  toolkit::Subscription losses;
  toolkit::Subscription returns;
};

}  // namespace lumodevice::support
