#include "tests/end_to_end/socket_bench.hpp"

#include <chrono>

namespace lumodevice::end_to_end {

namespace {

constexpr std::chrono::milliseconds kBreath{5};

}  // namespace

LoadOnSocket::LoadOnSocket()
    : port_(server_->listenTcp(0)),
      resource_("TCPIP0::127.0.0.1::" + std::to_string(port_) + "::SOCKET") {
  start();
}

void LoadOnSocket::with(const std::function<void(zansim::Instrument&)>& act) {
  halt();
  act(instrument_);
  start();
}

void LoadOnSocket::fault(const std::string& text) {
  with([&](zansim::Instrument& instrument) { instrument.faults.add(text); });
}

void LoadOnSocket::healthy() {
  with([](zansim::Instrument& instrument) { instrument.faults.clear(); });
}

void LoadOnSocket::vanish() {
  with([this](zansim::Instrument& instrument) {
    instrument.faults.add("vanish=0");
    while (server_->clients() > 0) {
      server_->step(kBreath);
    }
  });
}

void LoadOnSocket::comeBack() {
  with([this](zansim::Instrument& instrument) {
    instrument.faults.clear();
    server_.emplace(instrument, clock_);
    (void)server_->listenTcp(port_);
  });
}

void LoadOnSocket::start() {
  stop_ = false;
  thread_ = std::thread([this] {
    while (!stop_) {
      server_->step(kBreath);
    }
  });
}

void LoadOnSocket::halt() {
  stop_ = true;
  thread_.join();
}

SocketBench::SocketBench(Variant variant) {
  if (variant == Variant::VisaCom) {
    panel.click("optVisa2");
  }
}

void SocketBench::connect(const std::string& resource) {
  panel.type("cmbVISARes", resource);
  panel.click("cmdConnVISA");
}

}  // namespace lumodevice::end_to_end
