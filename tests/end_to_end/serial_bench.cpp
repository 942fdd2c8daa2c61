#include "tests/end_to_end/serial_bench.hpp"

#include <chrono>
#include <stdexcept>
#include <utility>

#include "tests/support/script.hpp"

namespace lumodevice::end_to_end {

namespace {

constexpr int kMostPresses = 20;

}  // namespace

LoadOnTerminal::LoadOnTerminal(toolkit::EventLoop& loop, std::string link)
    : clock_(loop), link_(std::move(link)) {
  instrument.onMessage = [this](std::string_view message, std::string_view) {
    heard.emplace_back(message);
  };
}

void LoadOnTerminal::plug(std::int32_t baud) {
  server_.reset();
  server_ = std::make_unique<zansim::Server>(instrument, clock_);
  server_->openTerminal(link_, baud);
}

void LoadOnTerminal::serve(toolkit::EventLoop::Duration span) {
  if (server_ == nullptr) {
    return;
  }
  const auto end = std::chrono::steady_clock::now() + span;
  do {
    server_->step(std::chrono::milliseconds(1));
  } while (std::chrono::steady_clock::now() < end);
}

std::unique_ptr<io::SerialLine> NotedTerminals::open(int port, const io::SerialSettings& settings) {
  auto line = devices_.open(port, settings);
  opened.push_back("COM" + std::to_string(port) + ' ' + std::to_string(settings.baud));
  return line;
}

SerialBench::SerialBench(std::initializer_list<int> ports) {
  std::map<int, std::string> links;
  for (const int port : ports) {
    const std::string link = (folder_.path() / ("COM" + std::to_string(port))).string();
    links[port] = link;
    loads_[port] = std::make_unique<LoadOnTerminal>(loop, link);
    load(port).plug();
  }
  loop.meanwhile = [this](support::ScaledLoop::Duration span) {
    for (const auto& [port, load] : loads_) {
      load->serve(span / static_cast<int>(loads_.size()));
    }
  };
  devices_.emplace(std::move(links));
  panel_.emplace(loop, visa_, *devices_);
  panel().click("optConnRS232");
}

void SerialBench::connectByHand(int port) {
  panel().type("Text1", std::to_string(port));
  panel().select("Combo2", 0);
  for (int press = 0; press < kMostPresses && !panel().zan().isConnected(); ++press) {
    panel().click("Command2");
  }
  if (!panel().zan().isConnected()) {
    throw std::runtime_error("no connection by hand");
  }
}

std::string SerialBench::opened() {
  return support::lines(std::exchange(devices_->opened, {}));
}

}  // namespace lumodevice::end_to_end
