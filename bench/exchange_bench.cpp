// What the component adds to an exchange: a query through the whole of it against a plain loop of
// writes and reads on the same kind of connection, both ends on one core. The wait unit is 0, for
// the waits are settings and not costs.

#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <pty.h>
#include <sched.h>
#include <string>
#include <termios.h>
#include <unistd.h>
#include <vector>

#include "bench/component.hpp"
#include "bench/one_core.hpp"
#include "bench/raw_socket.hpp"
#include "bench/responder.hpp"
#include "bench/table.hpp"
#include "recordings/recorder.hpp"
#include "recordings/wire_tap.hpp"

namespace {

using Clock = std::chrono::steady_clock;
using namespace lumodevice;

constexpr int kRounds = 60;
constexpr int kExchangesPerRound = 500;
constexpr std::string_view kQuery = ":FETC:VOLT?";

/// Microseconds for one exchange, over a round of them.
double timeRound(const std::function<void()>& exchange) {
  const auto begin = Clock::now();
  for (int i = 0; i < kExchangesPerRound; ++i) {
    exchange();
  }
  return std::chrono::duration<double, std::micro>(Clock::now() - begin).count() /
         kExchangesPerRound;
}

/// Both loops in turns, so that a slow moment of the machine hits both; then the medians.
void compare(const std::string& what, const std::function<void()>& component,
             const std::function<void()>& raw, double aim) {
  std::vector<double> componentTimes;
  std::vector<double> rawTimes;
  for (int round = 0; round < kRounds; ++round) {
    componentTimes.push_back(timeRound(component));
    rawTimes.push_back(timeRound(raw));
  }
  bench::printRatio(what, bench::median(componentTimes), bench::median(rawTimes), aim);
}

void compareOnSockets(bool visaCom) {
  const auto responder = bench::Responder::onSocket();
  toolkit::RealTimeLoop loop;
  bench::Component component(loop);
  component.control<toolkit::TextBox>("Text5").setText("0");
  component.control<toolkit::OptionButton>("optVisa2").setValue(visaCom);
  if (!component.connectTo(responder.port())) {
    std::puts("the component did not connect to the loopback socket");
    return;
  }
  const bench::RawSocket plain(responder.port());
  const std::string line = std::string(kQuery) + "\n";
  compare(
      visaCom ? "query over VISA COM, loopback socket"
              : "query over the VISA layer, loopback socket",
      [&] { component.zan.SendCmd(kQuery); }, [&] { plain.exchange(line); }, 1.15);
}

/// What an exchange in turn costs beside an interleaved one, on a connection of its own.
void compareInTurn(bool visaCom) {
  const auto responder = bench::Responder::onSocket();
  const auto other = bench::Responder::onSocket();
  toolkit::RealTimeLoop loop;
  bench::Component inTurn(loop, Exchanges::InTurn);
  bench::Component interleaved(loop, Exchanges::Interleaved);
  for (bench::Component* component : {&inTurn, &interleaved}) {
    component->control<toolkit::TextBox>("Text5").setText("0");
    component->control<toolkit::OptionButton>("optVisa2").setValue(visaCom);
  }
  if (!inTurn.connectTo(responder.port()) || !interleaved.connectTo(other.port())) {
    std::puts("a component did not connect to the loopback socket");
    return;
  }
  compare(
      visaCom ? "query in turn against interleaved, VISA COM"
              : "query in turn against interleaved, VISA layer",
      [&] { inTurn.zan.SendCmd(kQuery); }, [&] { interleaved.zan.SendCmd(kQuery); }, 1.02);
}

/// What a recording costs: the same query, each component on a connection of its own.
void compareRecorded() {
  const auto responder = bench::Responder::onSocket();
  const auto other = bench::Responder::onSocket();
  const std::string file = (std::filesystem::temp_directory_path() /
                            ("exchange_bench." + std::to_string(::getpid()) + ".rec"))
                               .string();
  toolkit::RealTimeLoop loop;
  platform::BuiltinVisa visa;
  posix::TermiosDevices serial;
  const platform::SystemWallClock wallClock;
  recordings::WireTap tap(visa, serial, loop);
  const recordings::Recorder recorder(tap, loop, wallClock, file, {}, "exchange_bench",
                                      [](const std::string& why) { std::puts(why.c_str()); });
  bench::Component recorded(loop, &tap.visa(), nullptr, Exchanges::InTurn);
  bench::Component plain(loop, Exchanges::InTurn);
  for (bench::Component* component : {&recorded, &plain}) {
    component->control<toolkit::TextBox>("Text5").setText("0");
  }
  if (recorded.connectTo(responder.port()) && plain.connectTo(other.port())) {
    compare(
        "query recorded against not recorded, VISA layer", [&] { recorded.zan.SendCmd(kQuery); },
        [&] { plain.zan.SendCmd(kQuery); }, 1.05);
  } else {
    std::puts("a component did not connect to the loopback socket");
  }
  std::filesystem::remove(file);
}

struct Terminal {
  int master = -1;
  std::string path;
};

Terminal openTerminal() {
  Terminal terminal;
  int slave = -1;
  char name[128];
  termios raw{};
  cfmakeraw(&raw);
  (void)openpty(&terminal.master, &slave, name, &raw, nullptr);
  terminal.path = name;
  return terminal;  // the slave stays open, so that the master never sees a hang-up
}

/// The component's own share of a serial exchange: what it writes and reads, without the 50 ms that
/// every serial query waits.
void compareOnTerminals() {
  const Terminal used = openTerminal();
  const Terminal plain = openTerminal();
  const auto usedEnd = bench::Responder::onTerminal(used.master);
  const auto plainEnd = bench::Responder::onTerminal(plain.master);
  posix::TermiosDevices devices({{1, used.path}});
  io::SerialPort port(devices);
  port.setSettings("38400");
  port.setPortOpen(true);
  const int descriptor = open(plain.path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK);
  const std::string line = std::string(kQuery) + "\n";
  compare(
      "line through the serial port control, pseudo-terminal",
      [&] {
        port.Output(line);
        std::string answer;
        while (!answer.ends_with('\n')) {
          if (port.InBufferCount() == 0) {
            sched_yield();
          } else {
            answer += port.Input();
          }
        }
      },
      [&] {
        char buffer[80];
        (void)!write(descriptor, line.data(), line.size());
        ssize_t count = 0;
        while (count <= 0 || buffer[count - 1] != '\n') {
          count = read(descriptor, buffer, sizeof buffer);
          if (count < 0) {
            sched_yield();
          }
        }
      },
      1.15);
  close(descriptor);
}

}  // namespace

int main() {
  bench::pinToOneCore();
  bench::printHead("us");
  compareOnSockets(false);
  compareOnSockets(true);
  compareInTurn(false);
  compareInTurn(true);
  compareRecorded();
  compareOnTerminals();
}
