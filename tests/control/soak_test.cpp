#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <gtest/gtest.h>
#include <malloc.h>
#include <map>
#include <random>
#include <string>
#include <string_view>

#include "lumodevice/io/visa_com_over_visa.hpp"
#include "lumodevice/toolkit/surface.hpp"
#include "simulator/commands/command.hpp"
#include "simulator/links/simulated_serial.hpp"
#include "simulator/links/simulated_visa.hpp"
#include "tests/support/bench.hpp"
#include "tests/support/panel_bench.hpp"
#include "tests/support/scaled_loop.hpp"

#ifdef __SANITIZE_ADDRESS__
/// Of the sanitizer's run-time; not every compiler has its header.
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#endif

namespace lumodevice {
namespace {

using namespace std::chrono_literals;
using support::Over;

/// Bytes that the program has allocated and not freed.
std::size_t allocated() {
#ifdef __SANITIZE_ADDRESS__
  return __sanitizer_get_current_allocated_bytes();
#else
  return mallinfo2().uordblks;
#endif
}

/// What texts and lists may come to hold in reserve; a byte for each query would be eighty times as
/// much.
constexpr std::size_t kBuffers = 16384;

struct Box {
  const char* name;
  const char* query;
};

/// What the panel reads back of a channel whatever its mode.
constexpr Box kAlways[] = {{"txtInput(10)", ":CONF:VOLT:ON?"},
                           {"txtInput(24)", ":CONF:PROT:CURR:LEV?"},
                           {"txtInput(25)", ":CONF:PROT:VOLT:LEV?"},
                           {"txtInput(26)", ":CONF:PROT:UVP:LEV?"}};

struct Mode {
  const char* word;
  const char* option;
  Box level;
  const char* levels[3];
};
constexpr Mode kModes[] = {
    {"CCH", "optMode(0)", {"txtInput(0)", ":CURR:STAT:L1?"}, {"1", "2.5", "0.25"}},
    {"CCL", "optMode(1)", {"txtInput(0)", ":CURR:STAT:L1?"}, {"0.5", "0.125", "1"}},
    {"CV", "optMode(2)", {"txtInput(11)", ":VOLT:L1?"}, {"10", "11.5", "6"}},
    {"CRH", "optMode(3)", {"txtInput(14)", ":RES:L1?"}, {"50", "100", "75"}},
};

constexpr const char* kFaults[] = {
    "silent",   "silent every=3",       "late=400", "pieces=2 gap=30", "garble every=2",
    "long=200", "unterminated every=4", "vanish=5"};

constexpr Box kReadOuts[] = {{"txtVoltage(0)", ":FETC:VOLT?"},
                             {"txtCurrent(0)", ":FETC:CURR?"},
                             {"txtPower(0)", ":FETC:POW?"}};
/// What the operator sends beside the auto query.
constexpr const char* kQueries[] = {":FETC:VOLT?", ":FETC:CURR?", ":FETC:POW?", "*IDN?", ":CHAN?"};

/// In turn, each reading differs from all others.
zansim::Mainframe mainframe(Exchanges exchanges) {
  zansim::Configuration configuration;
  configuration.numberedReadings = exchanges == Exchanges::InTurn;
  return zansim::Mainframe(configuration);
}

/// A component for weeks on a simulated load, with an operator who follows from the seed. In turn
/// he clicks, sends and reconnects while the auto query runs, and every value is compared with what
/// the load said to its query; interleaved he lets the auto query come to rest before.
class Soak : private toolkit::View {
 public:
  Soak(std::uint32_t seed, Exchanges exchanges)
      : random_(seed),
        inTurn_(exchanges == Exchanges::InTurn),
        instrument_{mainframe(exchanges), {}, {}},
        panel_({.loop = loop_,
                .visa = visa_,
                .visaCom = visaCom_,
                .serialDevices = serial_,
                .drive = drive_,
                .wallClock = wallClock_,
                .informationBox =
                    [this](std::string_view text) {
                      EXPECT_FALSE(healthy_) << text << " over a link without faults";
                    },
                .exchanges = exchanges}) {
    resources_.addUsual(instrument_);
    serial_.plug(3, instrument_);
    instrument_.onMessage = [this](std::string_view message, std::string_view answer) {
      ++messages_;
      if (inTurn_) {
        said_.insert_or_assign(std::string(message), answer);
      }
    };
    for (std::size_t channel = 1; channel <= instrument_.mainframe.channelCount(); ++channel) {
      instrument_.mainframe.channel(channel, 0ns).connect({.volts = 12, .ohms = 0.5});
    }
    panel_.zan().surface().attach(*this);
  }
  ~Soak() override { panel_.zan().surface().detach(*this); }
  Soak(const Soak&) = delete;
  Soak& operator=(const Soak&) = delete;

  void run(std::chrono::hours span) {
    const auto end = loop_.now() + span;
    while (loop_.now() < end && !testing::Test::HasFailure()) {
      act();
      loop_.runFor(std::chrono::minutes(20 + below(60)));
      expectReadOutsTrue();
    }
  }

  /// The panel in one and the same state, with nothing on its way.
  void rest() {
    quiet();
    heal();
    connect(Over::VisaLibrary);
    selectChannel(1);
    script_.take();
  }

  [[nodiscard]] std::size_t openVisaObjects() const { return visa_.openObjects(); }
  [[nodiscard]] auto now() const { return loop_.now(); }
  [[nodiscard]] int readBacks() const { return readBacks_; }
  [[nodiscard]] int readOuts() const { return readOuts_; }
  /// To what was asked beside the auto query, in turn.
  [[nodiscard]] int answers() const { return answers_; }
  /// That the instrument got.
  [[nodiscard]] int messages() const { return messages_; }

  void connect(Over link) {
    panel_.click("optConnRS232");
    if (link == Over::Serial) {
      panel_.type("Text1", "3");
      panel_.select("Combo2", 0);
      panel_.click("Command2");
    } else {
      panel_.click("optVISA");
      panel_.click(link == Over::VisaCom ? "optVisa2" : "optVisa1");
      panel_.click("cmdAutoConnVISA");
    }
    ASSERT_TRUE(panel_.zan().isConnected());
  }

  /// Timer and wait unit of the auto query and of the receive poll, milliseconds.
  void setPeriods(const char* query, const char* poll) {
    panel_.type("Text5", query);
    panel_.press("Text5", toolkit::Key::Enter);
    panel_.type("Text6", poll);
    panel_.press("Text6", toolkit::Key::Enter);
  }

 private:
  class Panel : public support::PanelHand {
   public:
    explicit Panel(const Host& host) : component_(host) {}
    [[nodiscard]] ZANCtrl& zan() override { return component_; }

   private:
    ZANCtrl component_;
  };

  void act() {
    switch (below(inTurn_ ? 12 : 8)) {
      case 0:
        heal();
        connect(support::kLinks[below(3)]);
        break;
      case 1:
        breakLink();
        break;
      case 2:
      case 3:
        chooseMode();
        break;
      case 4:
        panel_.click("chkLoad");
        break;
      case 5:
        panel_.zan().SendCmd(":CONF:PROT:UVP:LEV 0.5");
        break;
      case 8:
      case 9:
      case 10:
      case 11:
        ask();
        break;
      default:
        heal();
        selectChannel(1 + static_cast<int>(below(5)));
        break;
    }
    panel_.zan().AutoQuery(true);
  }

  /// While the auto query goes on, which stops where a channel is selected.
  void ask() {
    panel_.zan().AutoQuery(true);
    for (int i = 0; i < 20; ++i) {
      loop_.runFor(std::chrono::milliseconds(below(5000)));
      const std::string query = kQueries[below(std::size(kQueries))];
      const std::string answer = panel_.ask(query);
      if (trusted_) {
        EXPECT_EQ(answer, said_[query]) << query;
        ++answers_;
      }
    }
  }

  void changed(const toolkit::Control& control, toolkit::Property property, int /*item*/) override {
    for (const auto& [name, query] : kReadOuts) {
      if (inTurn_ && trusted_ && property == toolkit::Property::Text &&
          control.fullName() == name) {
        const std::string shown = panel_.text(name);
        EXPECT_TRUE(shown.empty() || shown == said_[query]) << query << " -> " << shown;
        ++readOuts_;
      }
    }
  }
  void confirmed(const toolkit::Control& /*control*/, toolkit::Property /*property*/) override {}

  void breakLink() {
    instrument_.faults.add(kFaults[below(std::size(kFaults))]);
    healthy_ = false;
    trusted_ = false;
  }

  /// Ends the faults of the link, and reads what they left on it.
  void heal() {
    quietBeside();
    if (!healthy_) {
      instrument_.faults.clear();
      healthy_ = true;
      connect(support::kLinks[below(3)]);
      quietBeside();
      (void)panel_.ask("*IDN?");
      trusted_ = true;
    }
  }

  /// No query is on its way any more.
  void quiet() {
    panel_.zan().AutoQuery(false);
    loop_.runFor(1min);
  }

  /// Where the auto query would take what somebody else asks for.
  void quietBeside() {
    if (!inTurn_) {
      quiet();
    }
  }

  void chooseMode() {
    quietBeside();
    const Mode& mode = kModes[below(std::size(kModes))];
    panel_.click(mode.option);
    panel_.type(mode.level.name, mode.levels[below(3)]);
    panel_.click(std::string(mode.level.name).replace(0, 8, "cmdSet"));
  }

  void selectChannel(int channel) {
    quietBeside();
    panel_.select("cmbChannel", channel - 1);
    expectReadBackTrue();
  }

  /// At the load's own front panel.
  std::string atLoad(std::string_view message) {
    std::string answer;
    zansim::execute(instrument_.mainframe, message, loop_.now(), answer);
    return answer;
  }

  void expectReadBackTrue() {
    ++readBacks_;
    for (const auto& [name, query] : kAlways) {
      EXPECT_EQ(panel_.text(name), atLoad(query)) << query;
    }
    EXPECT_EQ(panel_.read("chkLoad", "Value"), atLoad(":LOAD?"));
    for (const Mode& mode : kModes) {
      if (panel_.read(mode.option, "Value") == "True") {
        EXPECT_EQ(atLoad(":MODE?"), mode.word);
        EXPECT_EQ(panel_.text(mode.level.name), atLoad(mode.level.query)) << mode.word;
      }
    }
  }

  /// The auto query has run for minutes over a link without faults.
  void expectReadOutsTrue() {
    if (!healthy_ || inTurn_) {  // in turn each one is looked at as it comes
      return;
    }
    ++readOuts_;
    for (const auto& [name, query] : kReadOuts) {
      EXPECT_NEAR(std::strtod(panel_.text(name).c_str(), nullptr),
                  std::strtod(atLoad(query).c_str(), nullptr), 0.01)
          << query;
    }
  }

  std::size_t below(std::size_t count) { return random_() % count; }

  std::mt19937 random_;
  bool inTurn_;
  toolkit::VirtualLoop loop_;
  support::LoopClock clock_{loop_};
  zansim::Instrument instrument_;
  zansim::VisaBench resources_{clock_};
  zansim::SimulatedVisa visa_{resources_};
  zansim::SimulatedSerialDevices serial_{clock_};
  io::VisaComOverVisa visaCom_{visa_};
  support::Script script_;
  support::MemoryDrive drive_{script_};
  support::FixedClock wallClock_;
  int messages_ = 0;
  int readBacks_ = 0;
  int readOuts_ = 0;
  int answers_ = 0;
  bool healthy_ = true;
  /// What faults have left on the line is gone as well.
  bool trusted_ = true;
  /// What the load said last to each message; in turn.
  std::map<std::string, std::string, std::less<>> said_;
  Panel panel_;
};

TEST(Soak, thirtyDaysOfAutoQueryStayTrueAndTakeNoMemory) {
  Soak soak(20310307, Exchanges::Interleaved);
  soak.connect(Over::VisaLibrary);
  soak.run(3h);  // at the intervals of a new component
  soak.setPeriods("2000", "1000");
  soak.run(69h);
  soak.rest();
  const std::size_t afterThreeDays = allocated();
  soak.run(27 * 24h);
  soak.rest();
  EXPECT_GE(soak.now(), 30 * 24h);
  EXPECT_LE(allocated(), afterThreeDays + kBuffers);
  EXPECT_LE(soak.openVisaObjects(), 5U);  // those of the link, and the last VISA COM session
  EXPECT_GT(soak.messages(), 1'000'000);
  EXPECT_GT(soak.readBacks(), 150);
  EXPECT_GT(soak.readOuts(), 300);
}

TEST(Soak, fiveDaysInTurnEveryValueBelongsToItsQueryWhateverRunsBeside) {
  Soak soak(20310307, Exchanges::InTurn);
  soak.connect(Over::VisaLibrary);
  soak.run(3h);
  soak.setPeriods("2000", "1000");
  soak.run(5 * 24h);
  EXPECT_GT(soak.readOuts(), 20'000);
  EXPECT_GT(soak.answers(), 300);
  EXPECT_GT(soak.readBacks(), 20);
}

}  // namespace
}  // namespace lumodevice
