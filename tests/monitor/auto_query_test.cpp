#include <chrono>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "lumodevice/toolkit/timer.hpp"
#include "tests/support/panel_bench.hpp"

namespace lumodevice::monitor {
namespace {

using namespace std::chrono_literals;
using support::kLinks;
using support::linkName;
using support::Over;
using support::PanelBench;

constexpr const char* kRotation = ":FETC:VOLT?\n:FETC:CURR?\n:FETC:POW?\n:LOAD?\n:SYST:ERR?\n";
constexpr auto kPeriod = 200ms;

/// A load whose answers have more than one character, so that all of them are shown.
class AutoQuery : public testing::Test {
 protected:
  AutoQuery() {
    bench.instrument.on(":FETC:VOLT?", "12.345\n");
    bench.instrument.on(":FETC:CURR?", " 1.5\n");
    bench.instrument.on(":FETC:POW?", "18.5 W\n");
    bench.instrument.on(":LOAD?", "00\n");
    bench.instrument.on(":SYST:ERR?", "0,\"No error\"\n");
  }

  /// Connects with the read-outs emptied, and ticks the auto query.
  void start(Over link = Over::VisaLibrary) {
    bench.connect(link);
    clearReadOuts();
    bench.click("chkAutoQuery");
    (void)bench.journal();
  }

  void clearReadOuts() {
    for (const char* name : {"txtVoltage", "txtCurrent", "txtPower"}) {
      bench.control<toolkit::TextBox>(name, 0).setText("");
    }
  }

  /// The three read-outs: "12.345| 1.5|18.5 W".
  [[nodiscard]] std::string readOuts() {
    return bench.text("txtVoltage(0)") + '|' + bench.text("txtCurrent(0)") + '|' +
           bench.text("txtPower(0)");
  }

  [[nodiscard]] toolkit::TextBox& field(std::string_view name) {
    return bench.control<toolkit::TextBox>(name);
  }

  PanelBench bench;
};

TEST_F(AutoQuery, asksInRotationOverEveryLink) {
  for (const Over link : kLinks) {
    SCOPED_TRACE(linkName(link));
    PanelBench fresh;
    fresh.connect(link);
    fresh.click("chkAutoQuery");
    (void)fresh.journal();
    // An exchange over VISA COM takes a whole period, so a span may end later than it was asked to.
    const auto begin = fresh.loop.now();
    fresh.loop.runFor(begin + kPeriod * 5 + kPeriod / 2 - fresh.loop.now());
    EXPECT_EQ(fresh.sent(), kRotation);
    fresh.loop.runFor(begin + kPeriod * 11 + kPeriod / 2 - fresh.loop.now());
    EXPECT_EQ(fresh.sent(), std::string(kRotation) + ":FETC:VOLT?\n");
  }
}

TEST_F(AutoQuery, asksOncePerPeriodFromOnePeriodAfterItsStart) {
  start();
  bench.run(kPeriod - 1ms);
  EXPECT_EQ(bench.sent(), "");
  bench.run(1ms);
  EXPECT_EQ(bench.sent(), ":FETC:VOLT?\n");
  bench.run(kPeriod - 1ms);
  EXPECT_EQ(bench.sent(), "");
  bench.run(1ms);
  EXPECT_EQ(bench.sent(), ":FETC:CURR?\n");
}

TEST_F(AutoQuery, sendsWithoutTheStagedWaitsOfTheCommandBox) {
  start();
  bench.stopReceivePoll();
  bench.instrument.on(":FETC:VOLT?", support::silence());
  bench.run(kPeriod);
  EXPECT_EQ(bench.journal({"viWrite", "sleep", "box"}), "viWrite 4 :FETC:VOLT?\\n\n");
  EXPECT_EQ(bench.text("TXT"), ":FETC:POW?") << "as the selection of the channel left it";
  EXPECT_EQ(bench.text("Text2"), ":FETC:VOLT?");
}

TEST_F(AutoQuery, goesOnWithoutAJumpWhereItsCounterWraps) {
  start();
  bench.stopReceivePoll();
  std::string expected;
  for (int i = 0; i < 7000 / 5; ++i) {
    expected += kRotation;
  }
  bench.run(kPeriod * 7000);
  EXPECT_EQ(bench.sent(), expected);
  bench.run(kPeriod * 7);
  EXPECT_EQ(bench.sent(), std::string(kRotation) + ":FETC:VOLT?\n:FETC:CURR?\n");
}

TEST_F(AutoQuery, continuesWhereItStopped) {
  start();
  bench.run(kPeriod * 2);
  bench.click("chkAutoQuery");
  (void)bench.journal();
  bench.run(kPeriod * 10);
  EXPECT_EQ(bench.sent(), "");
  bench.click("chkAutoQuery");
  bench.run(kPeriod * 2);
  EXPECT_EQ(bench.sent(), ":FETC:POW?\n:LOAD?\n");
}

TEST_F(AutoQuery, isSwitchedByTheHostToo) {
  bench.connect();
  bench.zan().AutoQuery(true);
  EXPECT_EQ(bench.read("chkAutoQuery", "Value"), "1");
  EXPECT_EQ(bench.read("Timer1", "Enabled"), "True");
  bench.zan().AutoQuery(false);
  EXPECT_EQ(bench.read("chkAutoQuery", "Value"), "0");
  EXPECT_EQ(bench.read("Timer1", "Enabled"), "False");
}

TEST_F(AutoQuery, isOffWhenItsBoxIsGreyed) {
  start();
  bench.box("chkAutoQuery").setValue(2);
  bench.run(kPeriod * 3);
  EXPECT_EQ(bench.sent(), "");
}

TEST_F(AutoQuery, withoutALinkLeavesThePanelUnloaded) {
  for (const bool on : {true, false}) {
    PanelBench fresh;
    fresh.connect();
    fresh.box("chkAutoQuery").setValue(on ? 0 : 1);
    auto& flag = fresh.control<toolkit::CommandButton>("cmdSendCmd");
    flag.setEnabled(false);
    fresh.box("chkAutoQuery").setValue(on ? 1 : 0);
    flag.setEnabled(true);
    EXPECT_FALSE(fresh.switchesSend()) << "on " << on;
  }
}

TEST_F(AutoQuery, neverConnectedSendsNothing) {
  bench.click("chkAutoQuery");
  bench.run(kPeriod * 5);
  EXPECT_EQ(bench.sent(), "");
  EXPECT_EQ(bench.text("Text2"), ":SYST:ERR?") << "the rotation runs all the same";
}

TEST_F(AutoQuery, startsTheReceivePollThatShowsItsReadings) {
  start();
  EXPECT_EQ(bench.read("Timer2", "Enabled"), "True") << "the bench had stopped it";
  bench.run(kPeriod * 4 - 1ms);
  EXPECT_EQ(readOuts(), "12.345| 1.5|18.5 W");
}

TEST_F(AutoQuery, showsEachAnswerInTheReadOutOfItsQueryOverEveryLink) {
  for (const Over link : kLinks) {
    SCOPED_TRACE(linkName(link));
    PanelBench fresh;
    fresh.connect(link);
    int asked = 0;
    fresh.instrument.otherwise = [&asked](std::string_view) {
      return support::answer("9." + std::to_string(++asked) + "\n");
    };
    fresh.click("chkAutoQuery");
    // Half a period behind the tick the poll has come round on every link.
    fresh.run(kPeriod * 3 + (link == Over::VisaCom ? 300ms : 100ms));
    EXPECT_EQ(fresh.text("txtVoltage(0)"), "9.1");
    EXPECT_EQ(fresh.text("txtCurrent(0)"), "9.2");
    EXPECT_EQ(fresh.text("txtPower(0)"), "9.3");
  }
}

TEST_F(AutoQuery, keepsTheLastReadingsWhenItStops) {
  start();
  bench.run(kPeriod * 5);
  bench.click("chkAutoQuery");
  bench.instrument.on(":FETC:VOLT?", "99.99\n");
  EXPECT_EQ(bench.ask(":FETC:VOLT?"), "99.99");
  bench.run(1s);
  EXPECT_EQ(readOuts(), "12.345| 1.5|18.5 W");
}

TEST_F(AutoQuery, doesNotShowAnswersOfOneCharacter) {
  start();
  bench.run(kPeriod * 5);
  for (const char* query : {":FETC:VOLT?", ":FETC:CURR?", ":FETC:POW?", ":LOAD?"}) {
    bench.instrument.on(query, "1\n");
  }
  bench.run(kPeriod * 5);
  EXPECT_EQ(readOuts(), "12.345| 1.5|18.5 W");
  EXPECT_EQ(bench.box("chkLoad").value(), 0);
}

TEST_F(AutoQuery, showsTheLoadStateAndEchoesTheChange) {
  start();
  bench.instrument.on(":LOAD?", "1.0\n");
  bench.run(kPeriod * 5);
  EXPECT_EQ(bench.box("chkLoad").value(), 1);
  EXPECT_EQ(bench.read("chkLoad", "Caption"), "CHAN LOAD ON");
  EXPECT_EQ(bench.sent(), ":FETC:VOLT?\n:FETC:CURR?\n:FETC:POW?\n:LOAD?\n:LOAD 1\n:SYST:ERR?\n");
  bench.instrument.on(":LOAD?", "0 \n");
  bench.run(kPeriod * 5);
  EXPECT_EQ(bench.box("chkLoad").value(), 0);
}

TEST_F(AutoQuery, showsTheAnswerByTheTextThatStandsInTheConsole) {
  start();
  bench.control<toolkit::Timer>("Timer1").setEnabled(false);
  const auto show = [&](const char* command, const char* answer) {
    clearReadOuts();
    field("Text2").setText(command);
    field("txtReturn").setText(answer);
    bench.run(35ms);
    return readOuts();
  };
  EXPECT_EQ(show(":FETC:VOLT?", "ab"), "ab||");
  EXPECT_EQ(show("  :FETC:CURR?  ", "7.77"), "|7.77|");
  EXPECT_EQ(show(":FETC:POW?", "8 "), "||8 ");
  EXPECT_EQ(show(":FETC:POW?", "8"), "||") << "one character";
  EXPECT_EQ(show(":FETC:POW?", ""), "||");
  for (const char* other :
       {":fetc:volt?", ":FETC:VOLT", ":FETC:VOLT? 1", ":SYST:ERR?", "STATUS?", "*IDN?", ""}) {
    EXPECT_EQ(show(other, "12.3"), "||") << other;
    EXPECT_EQ(bench.box("chkLoad").value(), 0);
  }
  EXPECT_EQ(show(" :LOAD? ", "1.0"), "||");
  EXPECT_EQ(bench.box("chkLoad").value(), 1);
}

TEST_F(AutoQuery, showsNothingWhileAnAnswerIsPending) {
  start(Over::Serial);
  field("txtReturn").setText("");
  bench.instrument.on(":FETC:VOLT?", support::answer("12.345\n", 150ms));
  bench.run(kPeriod + 70ms);
  field("txtReturn").setText("left over");
  bench.run(79ms);
  EXPECT_EQ(readOuts(), "||");
  bench.run(40ms);
  EXPECT_EQ(readOuts(), "12.345||");
}

TEST_F(AutoQuery, leavesTheLoadSwitchAsItIsForANumberThatDoesNotFit) {
  start();
  bench.stopReceivePoll();
  for (const char* answer : {"77\n", "-1\n", "70000\n", "1e400\n", "-1e400\n", "&HFFFFFFFFF\n"}) {
    bench.instrument.on(":LOAD?", answer);
    for (const int before : {0, 1}) {
      bench.box("chkLoad").setValue(before);
      bench.control<toolkit::Timer>("Timer2").setEnabled(true);
      bench.run(kPeriod * 5);
      EXPECT_EQ(bench.box("chkLoad").value(), before) << answer;
      EXPECT_EQ(readOuts(), "12.345| 1.5|18.5 W") << "the rotation goes on";
    }
  }
}

TEST_F(AutoQuery, showsAnswersThatAreNoReadingsAsTheyCame) {
  start();
  for (const std::string& answer :
       {std::string("NaN"), std::string("1e400"), std::string("\x80\xFF"), std::string("a\0b", 3),
        std::string(79, '8')}) {
    bench.instrument.on(":FETC:VOLT?", answer + "\n");
    bench.run(kPeriod * 5);
    EXPECT_EQ(bench.text("txtVoltage(0)"), answer);
  }
}

TEST_F(AutoQuery, showsSixtyKilobytesAsTheyCameOverEveryLink) {
  for (const Over link : kLinks) {
    SCOPED_TRACE(linkName(link));
    PanelBench fresh;
    fresh.connect(link);
    fresh.click("chkAutoQuery");
    const std::string answer(60'000, '7');
    for (const char* query : {":FETC:VOLT?", ":FETC:CURR?", ":FETC:POW?", ":LOAD?"}) {
      fresh.instrument.on(query, answer + "\n");
    }
    fresh.run(kPeriod * 10);
    // The buffer of the library link holds 80 characters, of which the last is dropped.
    const std::string shown = link == Over::VisaLibrary ? answer.substr(0, 79) : answer;
    EXPECT_EQ(fresh.text("txtVoltage(0)"), shown);
    EXPECT_EQ(fresh.text("txtCurrent(0)"), shown);
    EXPECT_EQ(fresh.text("txtPower(0)"), shown);
    EXPECT_EQ(fresh.box("chkLoad").value(), 0) << "the number does not fit";
  }
}

TEST_F(AutoQuery, keepsTheReadOutOfAMissingOrEmptyAnswerOverEveryLink) {
  for (const Over link : kLinks) {
    for (const auto& nothing : {support::silence(), support::answer("\n"), support::answer("")}) {
      SCOPED_TRACE(linkName(link));
      PanelBench fresh;
      fresh.connect(link);
      fresh.click("chkAutoQuery");
      fresh.run(kPeriod * 10);
      ASSERT_EQ(fresh.text("txtCurrent(0)"), "0.5");
      fresh.instrument.on(":FETC:CURR?", nothing);
      fresh.instrument.on(":LOAD?", nothing);
      fresh.instrument.on(":FETC:VOLT?", "1.25\n");
      fresh.instrument.on(":FETC:POW?", "2.5\n");
      fresh.box("chkLoad").setValue(1);
      // A read that finds nothing lasts as long as the time-out of the link.
      fresh.run(30s);
      EXPECT_EQ(fresh.text("txtVoltage(0)"), "1.25");
      EXPECT_EQ(fresh.text("txtCurrent(0)"), "0.5");
      EXPECT_EQ(fresh.text("txtPower(0)"), "2.5");
      EXPECT_EQ(fresh.box("chkLoad").value(), 1);
      EXPECT_TRUE(fresh.zan().isConnected());
    }
  }
}

TEST_F(AutoQuery, ofALinkThatFailsGoesOn) {
  start(Over::Serial);
  bench.script.fail("COM3 write", io::kSerialDeviceBusy);
  bench.run(kPeriod * 5);
  EXPECT_EQ(bench.sent(), kRotation) << "each was tried";
  bench.script.heal("COM3 write");
  bench.run(kPeriod * 5);
  EXPECT_EQ(readOuts(), "12.345| 1.5|18.5 W");
}

// Nothing is locked: the last writer of the console has it.
TEST_F(AutoQuery, takesTheConsoleFromAnExchangeThatItsTickFallsInto) {
  start();
  bench.stopReceivePoll();
  bench.loop.idle(kPeriod);
  bench.set(0, "1.5");
  EXPECT_EQ(bench.sent(), ":FETC:VOLT?\n:FETC:VOLT?\n");
}

/// A host that wants every answer, in turn.
class Readings : public testing::Test {
 protected:
  void start(Over link) {
    bench.emplace(PanelBench::Setup{.exchanges = Exchanges::InTurn});
    bench->instrument.on(":FETC:VOLT?", "12.345\n");
    bench->instrument.on(":LOAD?", "1\n");
    bench->instrument.on(":SYST:ERR?", "-113,\"Undefined header\"\n");
    told.clear();
    watching = bench->zan().observeReadings([this](const Reading& reading) {
      told += std::string(reading.query).append(" ").append(reading.answer).append("\n");
    });
    bench->connect(link);
    bench->click("chkAutoQuery");
  }

  std::optional<PanelBench> bench;
  std::string told;
  toolkit::Subscription watching;
};

TEST_F(Readings, areToldOfEachAnswerAlsoOfOneThatChangesNothing) {
  for (const Over link : kLinks) {
    start(link);
    bench->run(2000ms);
    const std::string rotation =
        ":FETC:VOLT? 12.345\n:FETC:CURR? 0.5\n:FETC:POW? 0.5\n:LOAD? 1\n"
        ":SYST:ERR? -113,\"Undefined header\"\n";
    EXPECT_EQ(told, rotation + rotation) << linkName(link);
  }
}

TEST_F(Readings, areNotToldOfWhatAnotherChannelWasChosenUnder) {
  start(Over::Serial);
  bench->instrument.on(":FETC:VOLT?", support::answer("12.345\n", 50ms));
  const auto amidst = bench->loop.now() + kPeriod + 20ms;
  const auto passes = bench->loop.observePasses([this, amidst, done = false]() mutable {
    if (bench->loop.now() >= amidst && !std::exchange(done, true)) {
      bench->select("cmbChannel", 0);
    }
  });
  bench->run(210ms);
  EXPECT_EQ(bench->text("cmbChannel"), "CH1-ZAN2040");
  EXPECT_EQ(told, "");
}

TEST_F(Readings, endWithTheirSubscription) {
  start(Over::VisaLibrary);
  watching.end();
  bench->run(1000ms);
  EXPECT_EQ(told, "");
}

}  // namespace
}  // namespace lumodevice::monitor
