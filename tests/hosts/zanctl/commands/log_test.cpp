#include <algorithm>
#include <chrono>
#include <csignal>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <iterator>
#include <sstream>
#include <thread>
#include <vector>

#include "hosts/zanctl/commands/until.hpp"
#include "hosts/zanctl/output/json_line.hpp"
#include "tests/hosts/zanctl/commands/month_bench.hpp"
#include "tests/hosts/zanctl/program_fixture.hpp"
#include "tests/support/child_program.hpp"

namespace zanctl {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::MatchesRegex;

class Log : public ProgramInFolderTest {
 protected:
  [[nodiscard]] std::vector<std::filesystem::path> files() const {
    std::vector<std::filesystem::path> all;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      all.push_back(entry.path());
    }
    std::ranges::sort(all);
    return all;
  }
  [[nodiscard]] std::vector<std::string> lines(std::size_t file = 0) const {
    std::istringstream stream(content(files().at(file).filename().string()));
    std::vector<std::string> all;
    for (std::string line; std::getline(stream, line);) {
      all.push_back(line);
    }
    return all;
  }
};

TEST_F(Log, isAFileOfRowsWithTimesAndEnergies) {
  const Ended ended = simulate(
      {"log", file("bench.csv"), "--channel", "3", "--every", "60000", "--stop-after", "1h"});
  EXPECT_EQ(ended.status, kDone) << ended.errors;
  EXPECT_EQ(ended.output, "");
  ASSERT_EQ(files().size(), 1U);
  EXPECT_THAT(files()[0].filename().string(), MatchesRegex("bench-[0-9]{8}-[0-9]{6}[.]csv"));
  const auto all = lines();
  EXPECT_EQ(all[0], "time,elapsed_s,channel,voltage_V,current_A,power_W,load,energy_Wh,event,note");
  EXPECT_THAT(all[1], MatchesRegex("[^,]+,0[.]000,,,,,,,begin,Ostbrook.*|[^,]+,0[.]000,,,,,,,begin,"
                                   "\"Ostbrook.*"));
  EXPECT_EQ(std::ranges::count_if(
                all, [](const std::string& line) { return line.find("CH3-2040") < line.size(); }),
            60);
  EXPECT_THAT(all[2],
              MatchesRegex("2[^,]+,[0-9.]+,CH3-2040,[0-9.]+,[0-9.]+,[0-9.]+,[01],0[.]0+,,"));
  EXPECT_THAT(all.back(), HasSubstr(",end,3600 s are over"));
}

TEST_F(Log, asJsonIsAnObjectALine) {
  const Ended ended =
      simulate({"log", file("bench.json"), "--json", "--channel", "1", "--stop-after", "3s"});
  EXPECT_EQ(ended.status, kDone) << ended.errors;
  const auto all = lines();
  ASSERT_EQ(all.size(), 5U);
  EXPECT_EQ(Json::parse(all[0])["event"], "begin");
  const Json row = Json::parse(all[2]);
  EXPECT_EQ(row["channel"], "CH1-2021L");
  EXPECT_NEAR(row["voltage_V"].get<double>(), 12.6, 0.1);
  EXPECT_NEAR(row["elapsed_s"].get<double>(), 1, 0.1);
  EXPECT_EQ(row["energy_Wh"], 0.0);
}

TEST_F(Log, goesOnInANewFileEachDay) {
  const Ended ended = simulate({"log", file("bench.csv"), "--channel", "1", "--every", "3600000",
                                "--rotate-daily", "--stop-after", "25h"});
  EXPECT_EQ(ended.status, kDone) << ended.errors;
  EXPECT_GE(files().size(), 2U);
  std::size_t rows = 0;
  for (std::size_t i = 0; i < files().size(); ++i) {
    const auto all = lines(i);
    EXPECT_THAT(all[0], HasSubstr("time,elapsed_s,"));
    rows += static_cast<std::size_t>(std::ranges::count_if(
        all, [](const std::string& line) { return line.find(",CH1-2021L,") < line.size(); }));
  }
  EXPECT_EQ(rows, 25U);
}

TEST_F(Log, neverOverwritesAFile) {
  EXPECT_EQ(simulate({"log", file("a.csv"), "--channel", "1", "--stop-after", "1s"}).status, kDone);
  EXPECT_EQ(simulate({"log", file("a.csv"), "--channel", "1", "--stop-after", "1s"}).status, kDone);
  EXPECT_EQ(files().size(), 2U);
}

TEST_F(Log, changesNothingOnTheInstrument) {
  const Ended ended =
      simulate({"--trace", "-", "log", file("a.csv"), "--channel", "3", "--stop-after", "2s"});
  std::istringstream stream(ended.errors);
  for (std::string line; std::getline(stream, line);) {
    if (line.find(" send ") != std::string::npos) {
      EXPECT_TRUE(line.find('?') != std::string::npos || line.find("\":CHAN ") != std::string::npos)
          << line;
    }
  }
}

TEST_F(Log, refusesWhatCannotBe) {
  EXPECT_EQ(simulate({"log", file("a.csv"), "--until", "soon"}).status, kWrongCommandLine);
  EXPECT_EQ(simulate({"--observe", "log", file("a.csv"), "--dead-man", "10s"}).status,
            kWrongCommandLine);
  EXPECT_EQ(simulate({"log", file("a.csv"), "--dead-man", "never"}).status, kWrongCommandLine);
}

TEST_F(Log, ofAnInstrumentThatIsNotThereFails) {
  const Ended ended =
      run({"--port", "COM1=/none", "--virtual-time", "--visa-library", ZANSIM_VISA_LIBRARY,
           "--resource", "USB0::9::9::none::INSTR", "log", file("a.csv")});
  EXPECT_NE(ended.status, kDone);
  EXPECT_TRUE(files().empty());
}

/// The program as a process that gets signals.
TEST_F(Log, endsOnSigtermInOrderAndTurnsOnSighup) {
  lumodevice::support::ChildProgram program(
      ZANCTL_PROGRAM, {"--simulate", "--drive-c", file("c"), "log", file("s.csv"), "--channel", "1",
                       "--every", "50"});
  EXPECT_THAT(program.errorLine(), HasSubstr("logging to "));
  std::this_thread::sleep_for(300ms);
  ::kill(program.process(), SIGHUP);
  EXPECT_THAT(program.errorLine(), HasSubstr("logging to "));
  EXPECT_EQ(program.end(SIGTERM), 0);
  EXPECT_THAT(program.errorRest(), HasSubstr("the log ends: terminated"));
  std::vector<std::string> logs;
  for (const auto& path : files()) {
    if (path.extension() == ".csv") {
      logs.push_back(content(path.filename().string()));
    }
  }
  ASSERT_EQ(logs.size(), 2U);
  EXPECT_EQ(logs[0].back(), '\n');
  EXPECT_THAT(logs[1], testing::EndsWith(",end,terminated\n"));
}

/// Whatever is read, is read from channel 3, whose load is on.
class DeadMansSwitch : public Log {
 protected:
  MonthBench bench;
  LogOptions options;

  DeadMansSwitch() {
    bench.links->tell(":CHAN 3;:CURR:STAT:L1 1;:LOAD ON\n");
    options.file = file("dead.csv");
    options.channel = 3;
    options.deadMan = 20;
    options.limits.seconds = 300;
  }
  [[nodiscard]] bool isOn() {
    return bench.links->instrument().mainframe.channel(3, bench.links->now()).isOn();
  }
  void after(Span time, std::function<void()> act) {
    bench.onPass = [this, time, act = std::move(act), done = false]() mutable {
      if (!done && bench.links->now() >= time) {
        done = true;
        act();
      }
    };
  }
};

TEST_F(DeadMansSwitch, leavesALoadAloneThatIsRead) {
  EXPECT_EQ(logReadings(*bench.station, options), kDone);
  EXPECT_TRUE(isOn());
}

TEST_F(DeadMansSwitch, switchesOffWhatCannotBeRead) {
  after(60s, [&] { bench.links->instrument().faults.add("garble on=:FETC:VOLT?"); });
  EXPECT_EQ(logReadings(*bench.station, options), kDone) << bench.errors.text();
  EXPECT_FALSE(isOn());
  EXPECT_THAT(bench.errors.text(), HasSubstr("dead man's switch: no readings for 2"));
  EXPECT_THAT(content(files()[0].filename().string()), HasSubstr(",load off,by the dead man's"));
  EXPECT_TRUE(bench.station->component().observing());
}

TEST_F(DeadMansSwitch, saysLoudlyWhatItCouldNotSwitchOff) {
  after(60s, [&] { bench.links->instrument().faults.add("silent"); });
  EXPECT_EQ(logReadings(*bench.station, options), kLoadMayBeOn);
  // The command went out all the same.
  EXPECT_FALSE(isOn());
  EXPECT_THAT(bench.errors.text(), HasSubstr("THE LOAD MAY STILL BE ON"));
  EXPECT_THAT(content(files()[0].filename().string()), HasSubstr(",LOAD MAY STILL BE ON,"));
}

TEST_F(DeadMansSwitch, waitsForALineAndSwitchesOffAtOnceThen) {
  std::size_t passes = 0;
  bench.onPass = [&] {
    const Span now = bench.links->now();
    passes += 1;
    bench.links->pullOut(now >= 60s && now < 150s);
  };
  EXPECT_EQ(logReadings(*bench.station, options), kDone) << bench.errors.text();
  EXPECT_FALSE(isOn());
  EXPECT_THAT(bench.errors.text(), HasSubstr("there is no line to switch it off over"));
  EXPECT_THAT(bench.errors.text(), HasSubstr("the load is switched off"));
}

TEST_F(DeadMansSwitch, mustBeAskedFor) {
  options.deadMan.reset();
  after(60s, [&] { bench.links->instrument().faults.add("silent after=1"); });
  (void)logReadings(*bench.station, options);
  EXPECT_TRUE(isOn());
}

/// What stands behind "NAME=" in the example of a service's file.
std::vector<std::string> exampleOptions(const std::string& name) {
  std::ifstream file(ZANCTL_SERVICE "/bench.conf");
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with(name + '=')) {
      std::istringstream words(line.substr(name.size() + 1));
      return {std::istream_iterator<std::string>(words), {}};
    }
  }
  return {};
}

TEST_F(Log, takesTheOptionsOfTheExampleOfAService) {
  const auto options = exampleOptions("ZANLOG_OPTIONS");
  ASSERT_FALSE(options.empty());
  std::vector<std::string> words = {"log", file("service.csv"), "--stop-after", "30s"};
  words.insert(words.end(), options.begin(), options.end());
  const Ended ended = simulate(words);
  EXPECT_EQ(ended.status, kDone) << ended.errors;
  auto bench = exampleOptions("ZANCTL_OPTIONS");
  ASSERT_FALSE(bench.empty());
  bench.insert(bench.end(), {"log", file("service.csv")});
  EXPECT_EQ(run(bench).status, kFailed);  // there is no such device
}

TEST(Until, isADateATimeOrBoth) {
  const lumodevice::io::LocalTime now{
      .year = 2031, .month = 12, .day = 31, .hour = 12, .minute = 30};
  const auto text = [&](std::string_view given) {
    const auto time = untilIn(given, now);
    return time ? std::to_string(time->year) + ' ' + std::to_string(time->month) + ' ' +
                      std::to_string(time->day) + ' ' + std::to_string(time->hour) + ' ' +
                      std::to_string(time->minute) + ' ' + std::to_string(time->second)
                : "none";
  };
  EXPECT_EQ(text("2032-01-02"), "2032 1 2 0 0 0");
  EXPECT_EQ(text("2032-01-02T06:07"), "2032 1 2 6 7 0");
  EXPECT_EQ(text("2032-01-02T06:07:08"), "2032 1 2 6 7 8");
  EXPECT_EQ(text("13:00"), "2031 12 31 13 0 0");
  EXPECT_EQ(text("12:30"), "2032 1 1 12 30 0");
  for (const char* wrong : {"", "soon", "25:00", "12:60", "2032-13-01", "2032-01-02T06", "1:00"}) {
    EXPECT_EQ(text(wrong), "none") << wrong;
  }
}

}  // namespace
}  // namespace zanctl
