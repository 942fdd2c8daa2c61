// What the channel panel costs: the selection of a channel against the same lines sent and received
// by a plain loop, and the processor time of components that only watch.
//
// Usage: panel_bench [SECONDS]   (of watching; 60 when not given)

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <string>
#include <vector>

#include "bench/component.hpp"
#include "bench/one_core.hpp"
#include "bench/raw_socket.hpp"
#include "bench/responder.hpp"
#include "bench/table.hpp"
#include "lumodevice/io/forwarding_visa.hpp"

namespace {

using namespace lumodevice;
using Clock = std::chrono::steady_clock;

constexpr int kRounds = 400;

/// Keeps the lines that are written.
class RecordingVisa : public io::ForwardingVisa {
 public:
  explicit RecordingVisa(io::Visa& visa) : visa_(visa) {}
  std::vector<std::string> lines;

  io::ViStatus viWrite(io::ViSession instrument, std::string_view data,
                       std::uint32_t& count) override {
    lines.emplace_back(data);
    return ForwardingVisa::viWrite(instrument, data, count);
  }

 protected:
  io::Visa& target() override { return visa_; }

 private:
  io::Visa& visa_;
};

void requireConnected(bool connected) {
  if (!connected) {
    std::fputs("panel_bench: the component did not connect to the loopback socket\n", stderr);
    std::exit(1);
  }
}

void select(bench::Component& component) {
  component.control<toolkit::ComboBox>("cmbChannel").click.raise();
}

/// The lines that the selection of a channel sends.
std::vector<std::string> linesOfASelection(std::uint16_t port) {
  toolkit::RealTimeLoop loop;
  platform::BuiltinVisa visa;
  RecordingVisa recording(visa);
  bench::Component component(loop, &recording);
  component.control<toolkit::TextBox>("Text5").setText("0");
  requireConnected(component.connectTo(port));
  recording.lines.clear();
  select(component);
  return recording.lines;
}

double microseconds(auto act) {
  const auto begin = Clock::now();
  act();
  return std::chrono::duration<double, std::micro>(Clock::now() - begin).count();
}

void compareSelection() {
  const auto responder = bench::Responder::onSocket();
  const auto lines = linesOfASelection(responder.port());
  toolkit::RealTimeLoop loop;
  bench::Component component(loop);
  component.control<toolkit::TextBox>("Text5").setText("0");
  requireConnected(component.connectTo(responder.port()));
  const bench::RawSocket plain(responder.port());
  std::vector<double> componentTimes;
  std::vector<double> rawTimes;
  for (int round = 0; round < kRounds; ++round) {
    componentTimes.push_back(microseconds([&] { select(component); }));
    rawTimes.push_back(microseconds([&] {
      for (const std::string& line : lines) {
        plain.exchange(line);
      }
    }));
  }
  bench::printHead("us");
  bench::printRatio("selection of a channel, " + std::to_string(lines.size()) + " lines",
                    bench::median(componentTimes), bench::median(rawTimes), 1.5);
}

double processorSeconds() {
  timespec used{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
  return static_cast<double>(used.tv_sec) + static_cast<double>(used.tv_nsec) * 1e-9;
}

/// Share of a core, in percent, that components with the auto query on take at the default
/// intervals.
double watch(int count, int seconds) {
  const auto responder = bench::Responder::onSocket();
  toolkit::RealTimeLoop loop;
  std::vector<std::unique_ptr<bench::Component>> components;
  for (int i = 0; i < count; ++i) {
    components.push_back(std::make_unique<bench::Component>(loop));
    bench::Component& component = *components.back();
    component.control<toolkit::TextBox>("Text5").setText("0");
    requireConnected(component.connectTo(responder.port()));
    component.zan.AutoQuery(true);
  }
  const double before = processorSeconds();
  loop.runFor(std::chrono::seconds(seconds));
  return (processorSeconds() - before) / seconds * 100;
}

}  // namespace

int main(int count, char** words) {
  const int seconds = count > 1 ? std::atoi(words[1]) : 60;
  bench::pinToOneCore();
  compareSelection();
  std::printf("Auto query every 200 ms, over %d s of real time:\n", seconds);
  std::printf("  one component takes %.3f %% of a core (aim: under 0.2 %%)\n", watch(1, seconds));
  std::printf("  100 components in one process take %.2f %%\n", watch(100, seconds));
}
