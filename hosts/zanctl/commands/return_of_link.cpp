#include "hosts/zanctl/commands/return_of_link.hpp"

#include <algorithm>
#include <chrono>
#include <string>

#include "hosts/zanctl/output/escape.hpp"

namespace zanctl {

namespace {

constexpr std::chrono::seconds kFirstPause{1};
constexpr std::chrono::seconds kLongestPause{60};

/// Whoever finds the instrument again leaves it as it is.
bool reconnect(lumodevice::ZANCtrl& component) {
  const bool before = component.observing();
  component.observing(true);
  const bool back = component.reconnect();
  component.observing(before);
  return back;
}

}  // namespace

bool awaitReturn(Station& station, const std::function<bool()>& givesUp) {
  lumodevice::ZANCtrl& component = station.component();
  station.errors().line("zanctl: " + escaped(station.lossText()) + "; trying again");
  const auto lost = station.loop().now();
  for (auto pause = kFirstPause; !givesUp(); pause = std::min(2 * pause, kLongestPause)) {
    station.loop().runFor(pause);
    if (reconnect(component)) {
      const auto gap =
          std::chrono::duration_cast<std::chrono::seconds>(station.loop().now() - lost);
      station.errors().line("zanctl: the instrument is back after " + std::to_string(gap.count()) +
                            " s");
      return true;
    }
  }
  return false;
}

}  // namespace zanctl
