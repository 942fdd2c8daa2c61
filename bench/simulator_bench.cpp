// What a query costs the simulated instrument, from the text of the message to the text of the
// answer, against the 5 us at which a test of many thousand exchanges still ends within a blink.
// The simulator's clock goes on by 200 ms between two messages, as with a host that watches
// readings.

#include <algorithm>
#include <chrono>
#include <string>
#include <string_view>
#include <vector>

#include "bench/one_core.hpp"
#include "bench/table.hpp"
#include "simulator/commands/command.hpp"
#include "simulator/mainframe.hpp"

namespace {

using Clock = std::chrono::steady_clock;

constexpr double kLimit = 5000;
constexpr double kAim = 1;
constexpr int kRounds = 50;
constexpr int kMessagesPerRound = 400;
constexpr zansim::Duration kBetween = std::chrono::milliseconds(200);

class Instrument {
 public:
  void send(std::string_view message) {
    answer_.clear();
    now_ += kBetween;
    zansim::execute(mainframe_, message, now_, answer_);
  }

  /// Nanoseconds for one of `messages`, sent in turn: the median of the rounds.
  double cost(const std::vector<std::string_view>& messages) {
    std::vector<double> rounds;
    for (int round = 0; round < kRounds; ++round) {
      const auto begin = Clock::now();
      for (int i = 0; i < kMessagesPerRound; ++i) {
        send(messages[static_cast<std::size_t>(i) % messages.size()]);
      }
      const std::chrono::duration<double, std::nano> whole = Clock::now() - begin;
      rounds.push_back(whole.count() / kMessagesPerRound);
    }
    return bench::median(std::move(rounds));
  }

 private:
  zansim::Mainframe mainframe_;
  zansim::Duration now_{0};
  std::string answer_;
};

/// All that a host asks to show a channel in constant current.
constexpr std::string_view kReadBack[] = {
    ":Mode?",           ":CURR:STAT:L1?",        ":CURR:STAT:L2?",        ":CURR:STAT:RISE?",
    ":CURR:STAT:FALL?", ":CONF:VOLT:RANGE?",     ":CONF:VOLT:LAT?",       ":CONF:VOLT:ON?",
    ":LOAD?",           ":CONF:PROT:CURR:STAT?", ":CONF:PROT:VOLT:STAT?", ":CONF:PROT:UVP:LEV?",
    ":SPEC:PASS?",      ":CONF:PROT:CURR:LEV?",  ":CONF:PROT:VOLT:LEV?",  ":CONF:PROT:UVP:LEV?",
    ":SPEC:VOLT:H?",    ":SPEC:VOLT:L?",         ":FETC:VOLT?",           ":FETC:CURR?",
    ":FETC:POW?",
};

void print(const std::string& what, double nanoseconds) {
  bench::printRatio(what, nanoseconds, kLimit, kAim);
}

}  // namespace

int main() {
  bench::pinToOneCore();
  bench::printHead("ns");
  Instrument instrument;
  instrument.send(":CHAN 4");
  print("simulator: identity", instrument.cost({"*IDN?"}));
  print("simulator: voltage, load off", instrument.cost({":FETC:VOLT?"}));
  instrument.send(":CURR:STAT:L1 2;:CURR:DYN:L1 3;L2 1;:LOAD ON");
  print("simulator: voltage, constant current", instrument.cost({":FETC:VOLT?"}));
  print("simulator: setting a level", instrument.cost({":CURR:STAT:L1 2.5", ":CURR:STAT:L1 1.5"}));
  print("simulator: the read-back of a channel, each query",
        instrument.cost({std::begin(kReadBack), std::end(kReadBack)}));
  instrument.send(":MODE CCDH");
  print("simulator: power, dynamic current", instrument.cost({":FETC:POW?"}));
  print("simulator: a header that there is not", instrument.cost({":CONF:PROT:NONE:SUCH?"}));
}
