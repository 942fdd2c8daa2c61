#include <algorithm>
#include <chrono>
#include <cstdint>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "lumodevice/toolkit/hand.hpp"
#include "lumodevice/toolkit/timer.hpp"
#include "tests/support/panel_bench.hpp"

namespace lumodevice::panel {
namespace {

using support::kLinks;
using support::Over;
using support::PanelBench;

using namespace std::chrono_literals;
using toolkit::Kind;

/// Long enough for a search of all serial ports at every rate with the selection of a channel
/// behind it, twice.
constexpr auto kLongestAct = 20min;

/// An operator who uses whatever is there, and a load that answers whatever comes to its mind; both
/// follow from the seed.
class Fuzz {
 public:
  Fuzz(std::uint32_t seed, Over link) : random_(seed) {
    if (seed % 2 == 0) {
      bench_.instrument.on("*IDN?", "LUMO,ZAN-6400,A0001,1.20.3\n");  // may have groups
    }
    bench_.connect(link);
    bench_.instrument.otherwise = [this](std::string_view sent) {
      const bool asksForList = sent.starts_with("*RDT?") || sent.starts_with(":CHAN? LIST");
      if (!asksForList || below(4) == 0) {
        return reply();
      }
      return sent.starts_with("*RDT?") ? modules() : slots();
    };
    for (const char* query :
         {":Mode?", ":CONF:VOLT:RANGE?", ":CONF:VOLT:LAT?", ":LOAD?", ":CONF:PROT:CURR:STAT?",
          ":CONF:PROT:VOLT:STAT?", ":CONF:PROT:UVP:LEV?", ":SPEC:PASS?", ":CHAN?", "*RDT?"}) {
      bench_.instrument.on(query, std::vector<support::Reply>());
    }
    // All links are there for the operator to go to and fro between them.
    bench_.visa.resources = {{"GPIB0::7::INSTR", "GPIB0", &bench_.instrument}};
    bench_.visaCom.instruments = {{"GPIB0::7::INSTR", &bench_.instrument}};
    bench_.serial.ports[3].instrument = &bench_.instrument;
    for (const auto& control : bench_.zan().surface().controls()) {
      if (control->kind() != Kind::Label && control->kind() != Kind::Frame) {
        controls_.push_back(control.get());
      }
    }
    passes_ = bench_.loop.observePasses([this] {
      if (mayNest_ && below(20) == 0) {
        mayNest_ = false;
        nested_ = singleAct() + " within ";
      }
    });
  }

  /// One act, and perhaps another one within its waits; what they were.
  std::string act() {
    mayNest_ = true;
    const std::string acted = singleAct();
    (void)bench_.journal();
    return std::exchange(nested_, {}) + acted;
  }

  [[nodiscard]] toolkit::EventLoop::Duration now() { return bench_.loop.now(); }
  [[nodiscard]] bool connected() { return bench_.zan().isConnected(); }
  /// A half of a module or a group is selected.
  [[nodiscard]] bool atPartOrGroup() {
    const std::string channel = bench_.text("cmbChannel");
    return channel.starts_with("CH") && (channel.ends_with('L') || channel.ends_with('R') ||
                                         channel.ends_with("G1") || channel.ends_with("G2"));
  }

 private:
  std::string singleAct() {
    if (!connected() && below(8) == 0) {
      bench_.zan().AutoConnect();
      return "AutoConnect";
    }
    toolkit::Control& control = *controls_[below(controls_.size())];
    switch (control.kind()) {
      case Kind::CommandButton:
      case Kind::CheckBox:
      case Kind::OptionButton:
      case Kind::PictureBox:
        (void)toolkit::hand::click(control);
        break;
      case Kind::TextBox:
        useText(control);
        break;
      case Kind::ComboBox:
      case Kind::ListBox:
        useList(control);
        break;
      default:
        bench_.run(std::chrono::milliseconds(below(2000)));
        break;
    }
    return control.fullName();
  }

  std::size_t below(std::size_t count) {
    return std::uniform_int_distribution<std::size_t>(0, count - 1)(random_);
  }

  std::string text() {
    static const std::vector<std::string> kTexts = {
        "",        " ",     "0",     "1",        "5.5",
        "-3",      " 2 ",   "abc",   "1e400",    "&H10",
        "١٢",      "250",   "65536", "NaN",      "CH1L",
        "CH2G1",   "CH3G2", "*IDN?", "*RDT?",    ":LOAD?",
        ":LOAD 1", "COM3",  "3",     "\xFF\xFE", std::string(1, '\0')};
    return kTexts[below(kTexts.size())];
  }

  void useText(toolkit::Control& control) {
    static constexpr toolkit::Key kKeys[] = {toolkit::Key::Enter, toolkit::Key::Up,
                                             toolkit::Key::Down};
    if (below(3) == 0) {
      (void)toolkit::hand::press(control, kKeys[below(3)]);
      return;
    }
    std::string typed = text();
    // Waits of a minute each are no error, but the operator would not live to see the end.
    const bool waitField = control.name() == "Text5" || control.name() == "Text6" ||
                           control.name() == "txtVISATimeout";
    if (waitField && typed == "65536") {
      typed = "100";
    }
    (void)toolkit::hand::type(control, typed);
  }

  void useList(toolkit::Control& control) {
    auto& list = dynamic_cast<toolkit::ListControl&>(control);
    auto* box = dynamic_cast<toolkit::ListBox*>(&control);
    if (box != nullptr && list.listCount() > 0 && below(4) != 0) {
      static constexpr const char* kLists[] = {"List1", "List2", "List3"};
      const std::size_t item = below(static_cast<std::size_t>(list.listCount()));
      (void)toolkit::hand::drag(*box, list.list(static_cast<int>(item)),
                                bench_.control<toolkit::ListBox>(kLists[below(3)]));
    } else if (control.kind() == Kind::ComboBox && below(4) == 0) {
      (void)toolkit::hand::type(control, text());
    } else if (list.listCount() > 0) {
      (void)toolkit::hand::select(
          control, static_cast<int>(below(static_cast<std::size_t>(list.listCount()))));
    } else {
      (void)toolkit::hand::click(control);
    }
  }

  support::Reply reply() {
    static const std::vector<std::string> kAnswers = {
        "CCH",   "CCL",  "CV", "CRH", "CRL",    "CCDH",     "CCDL",
        "CRDH",  "CRDL", "cv", "CV ", "0",      "1",        "2",
        "3",     "7",    "-1", "0.5", "12.345", "16",       "80",
        "125",   "500",  "60", "NaN", "1e400",  "-1e400",   "70000",
        "1e300", "",     " ",  "\r",  "\n",     "\xFF\x80", std::string("a\0b", 3),
        "1,2,3", "0,0"};
    switch (below(12)) {
      case 0:
        return support::silence();
      case 1:
        return support::answer(kAnswers[below(kAnswers.size())]);  // no terminator
      case 2:
        return support::answer(std::string(below(3000), '8') + "\r\n");
      case 3:
        return support::answer("12.3\n", std::chrono::milliseconds(below(400)));
      default:
        return support::answer(kAnswers[below(kAnswers.size())] + "\n");
    }
  }

  /// Whole modules, halves of two-channel ones and groups.
  support::Reply modules() {
    static const std::vector<std::string> kModules = {
        "ZAN2040,0,ZAN6310,0",      "2021L,2021R",
        "2021L,2021R,2040,0",       "ZAN2040G1,ZAN2040G1",
        "2041G1,2041G2,0,L",        "2040G2,2021R,G1,R",
        "2040,2041,2040,2041,2040", "0,0,0,0"};
    return support::answer(kModules[below(kModules.size())] + "\n");
  }

  /// Channels with and without groups.
  support::Reply slots() {
    static const std::vector<std::string> kSlots = {"1,2,3,4,5", "1,0,3,0,5", "1,0,0,4,5",
                                                    "1,2,3,0,0", "0,0,3",     "1,0,3,0,5,0,7,0"};
    return support::answer(kSlots[below(kSlots.size())] + "\n");
  }

  std::mt19937 random_;
  PanelBench bench_;
  std::vector<toolkit::Control*> controls_;
  bool mayNest_ = false;
  std::string nested_;
  toolkit::Subscription passes_;
};

class OperatorFuzz : public testing::TestWithParam<Over> {};

INSTANTIATE_TEST_SUITE_P(Links, OperatorFuzz, testing::ValuesIn(kLinks));

TEST_P(OperatorFuzz, endsEveryActInBoundedTimeAndWithoutAnError) {
  int partsAndGroups = 0;
  for (std::uint32_t seed = 1; seed <= 30; ++seed) {
    Fuzz fuzz(seed, GetParam());
    std::string last;
    int connected = 0;
    for (int i = 0; i < 600; ++i) {
      const auto before = fuzz.now();
      ASSERT_NO_THROW(last = fuzz.act()) << "seed " << seed << " act " << i << " after " << last;
      ASSERT_LE(fuzz.now() - before, kLongestAct)
          << "seed " << seed << " act " << i << " on " << last;
      connected += fuzz.connected() ? 1 : 0;
      partsAndGroups += fuzz.connected() && fuzz.atPartOrGroup() ? 1 : 0;
    }
    EXPECT_GT(connected, 100) << "seed " << seed << ": an operator without a link tests little";
  }
  EXPECT_GT(partsAndGroups, 1000);
}

}  // namespace
}  // namespace lumodevice::panel
