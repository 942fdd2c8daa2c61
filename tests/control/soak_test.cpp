#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <gtest/gtest.h>
#include <malloc.h>
#include <random>
#include <string>
#include <string_view>

#include "lumodevice/io/visa_com_over_visa.hpp"
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

/// A component for weeks on a simulated load, with an operator who follows from the seed.
class Soak {
 public:
  explicit Soak(std::uint32_t seed) : random_(seed) {
    resources_.addUsual(instrument_);
    serial_.plug(3, instrument_);
    instrument_.onMessage = [this](std::string_view, std::string_view) { ++messages_; };
    for (std::size_t channel = 1; channel <= instrument_.mainframe.channelCount(); ++channel) {
      instrument_.mainframe.channel(channel, 0ns).connect({.volts = 12, .ohms = 0.5});
    }
  }

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
    heal();
    connect(Over::VisaLibrary);
    selectChannel(1);
    script_.take();
  }

  [[nodiscard]] std::size_t openVisaObjects() const { return visa_.openObjects(); }
  [[nodiscard]] auto now() const { return loop_.now(); }
  [[nodiscard]] int readBacks() const { return readBacks_; }
  [[nodiscard]] int readOuts() const { return readOuts_; }
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
    switch (below(8)) {
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
      default:
        heal();
        selectChannel(1 + static_cast<int>(below(5)));
        break;
    }
    panel_.zan().AutoQuery(true);
  }

  void breakLink() {
    instrument_.faults.add(kFaults[below(std::size(kFaults))]);
    healthy_ = false;
  }

  /// Ends the faults of the link, and reads what they left on it.
  void heal() {
    quiet();
    if (!healthy_) {
      instrument_.faults.clear();
      healthy_ = true;
      connect(support::kLinks[below(3)]);
      quiet();
      (void)panel_.ask("*IDN?");
    }
  }

  /// No query is on its way any more.
  void quiet() {
    panel_.zan().AutoQuery(false);
    loop_.runFor(1min);
  }

  void chooseMode() {
    quiet();
    const Mode& mode = kModes[below(std::size(kModes))];
    panel_.click(mode.option);
    panel_.type(mode.level.name, mode.levels[below(3)]);
    panel_.click(std::string(mode.level.name).replace(0, 8, "cmdSet"));
  }

  void selectChannel(int channel) {
    quiet();
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
    if (!healthy_) {
      return;
    }
    ++readOuts_;
    for (const auto& [name, query] :
         {Box{"txtVoltage(0)", ":FETC:VOLT?"}, Box{"txtCurrent(0)", ":FETC:CURR?"},
          Box{"txtPower(0)", ":FETC:POW?"}}) {
      EXPECT_NEAR(std::strtod(panel_.text(name).c_str(), nullptr),
                  std::strtod(atLoad(query).c_str(), nullptr), 0.01)
          << query;
    }
  }

  std::size_t below(std::size_t count) { return random_() % count; }

  std::mt19937 random_;
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
  bool healthy_ = true;
  Panel panel_{{.loop = loop_,
                .visa = visa_,
                .visaCom = visaCom_,
                .serialDevices = serial_,
                .drive = drive_,
                .wallClock = wallClock_,
                .informationBox = [this](std::string_view text) {
                  EXPECT_FALSE(healthy_) << text << " over a link without faults";
                }}};
};

TEST(Soak, thirtyDaysOfAutoQueryStayTrueAndTakeNoMemory) {
  Soak soak(20310307);
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

}  // namespace
}  // namespace lumodevice
