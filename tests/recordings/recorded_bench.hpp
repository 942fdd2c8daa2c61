#pragma once

#include <string>
#include <vector>

#include "lumodevice/recorded_host.hpp"
#include "lumodevice/simulated_host.hpp"
#include "lumodevice/toolkit/controls.hpp"
#include "lumodevice/toolkit/hand.hpp"
#include "lumodevice/zan_ctrl.hpp"
#include "tests/platform/temporary_folder.hpp"

namespace lumodevice::recordings {

/// What a host of a test does with a bench, recorded and played back.
struct RecordedBench {
  posix::TemporaryFolder folder;
  std::string file = (folder.path() / "bench.rec").string();
  std::vector<std::string> mistakes;

  [[nodiscard]] Host simulated(std::vector<std::string> latencies = {}) const {
    return recorded(simulatedHost({.virtualTime = true,
                                   .driveC = folder.path().string(),
                                   .latencies = std::move(latencies),
                                   .informationBox = [](std::string_view) {}}),
                    file);
  }
  [[nodiscard]] Host replayed() {
    return replayedHost(file,
                        {.virtualTime = true,
                         .driveC = folder.path().string(),
                         .mistaken = [this](const std::string& text) { mistakes.push_back(text); },
                         .informationBox = [](std::string_view) {}});
  }

  enum class Over { Visa, VisaCom, Serial };
  /// Connects and asks, and tells each answer with its time; the screen comes over the links that
  /// carry one.
  static std::vector<std::string> work(const Host& host, Over over) {
    std::vector<std::string> told;
    ZANCtrl load(host);
    if (over != Over::Visa) {
      toolkit::hand::click(load.surface().get<toolkit::OptionButton>(
          over == Over::Serial ? "optConnRS232" : "optVisa2"));
    }
    const auto tell = [&](const std::string& what) {
      told.push_back(std::to_string(host.loop.now().count()) + ' ' + what);
    };
    tell(load.AutoConnect() ? "connected" : "not connected");
    for (const char* command :
         {"*IDN?", ":CHAN 3", ":FETC:VOLT?", ":LOAD ON", ":FETC:CURR?", "*RST", ":NONE?"}) {
      load.SendCmd(command);
      tell(load.ResultStr());
    }
    if (over != Over::Visa) {
      tell(load.GetBMPFile() ? "picture" : "no picture");
    }
    load.AutoQuery(true);
    host.loop.runFor(std::chrono::seconds(5));
    tell(std::string(load.surface().get<toolkit::TextBox>("txtReturn").text()));
    return told;
  }
};

}  // namespace lumodevice::recordings
