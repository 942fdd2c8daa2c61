#include "tests/hosts/zanpanel/simulated_load.hpp"

#include <stdexcept>

#include "lumodevice/toolkit/hand.hpp"

namespace zanpanel {

namespace toolkit = lumodevice::toolkit;
using lumodevice::recordings::WireAct;
using lumodevice::recordings::WireEvent;
using namespace lumodevice::io;

ViStatus Unpluggable::viRead(ViSession instrument, std::span<char> buffer, std::uint32_t& count) {
  if (unplugged) {
    count = 0;
    return VI_ERROR_TMO;
  }
  return ForwardingVisa::viRead(instrument, buffer, count);
}

ViStatus Unpluggable::viWrite(ViSession instrument, std::string_view data, std::uint32_t& count) {
  if (unplugged) {
    count = static_cast<std::uint32_t>(data.size());
    return VI_SUCCESS;
  }
  return ForwardingVisa::viWrite(instrument, data, count);
}

SimulatedLoad::SimulatedLoad(const std::vector<std::string>& sources)
    : ready(lumodevice::simulatedHost({.virtualTime = true,
                                       .driveC = folder.path().string(),
                                       .sources = sources,
                                       .informationBox = [](std::string_view) {}})),
      cable(ready.visa),
      tap(cable, ready.serialDevices, ready.loop),
      visaCom(tap.visa()),
      load({.loop = ready.loop,
            .visa = tap.visa(),
            .visaCom = visaCom,
            .serialDevices = tap.serialDevices(),
            .drive = ready.drive,
            .wallClock = ready.wallClock,
            .informationBox = ready.informationBox,
            .exchanges = lumodevice::Exchanges::InTurn,
            .owned = ready.owned}),
      monitor(load, ready.loop) {
  tapping_ = tap.events.observe([this](const WireEvent& event) {
    if (event.act == WireAct::Sending) {
      sent += event.bytes;
      monitor.sent(event.bytes);
    } else if (event.act == WireAct::Received && !event.bytes.empty()) {
      monitor.received(event.bytes);
    }
  });
}

void SimulatedLoad::connect() {
  if (!load.AutoConnect()) {
    throw std::runtime_error("the simulated instrument was not found");
  }
}

void SimulatedLoad::choose(int index) {
  toolkit::hand::select(load.surface().get<toolkit::ComboBox>("cmbChannel"), index);
}

void SimulatedLoad::type(std::string_view box, int index, std::string_view text) {
  toolkit::hand::type(load.surface().get<toolkit::TextBox>(box, index), text);
}

void SimulatedLoad::click(std::string_view name, std::optional<int> index) {
  toolkit::hand::click(load.surface().get<toolkit::Control>(name, index));
}

void SimulatedLoad::run(std::chrono::milliseconds span) {
  constexpr std::chrono::milliseconds kLook{200};
  for (auto left = span; left.count() > 0; left -= kLook) {
    ready.loop.runFor(std::min(left, kLook));
    monitor.look();
  }
}

std::string SimulatedLoad::ask(std::string_view query) {
  load.SendCmd(query);
  return load.ResultStr();
}

}  // namespace zanpanel
