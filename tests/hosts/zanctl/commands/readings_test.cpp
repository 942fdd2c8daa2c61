#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

#include "hosts/zanctl/output/json_line.hpp"
#include "tests/hosts/zanctl/program_fixture.hpp"

namespace zanctl {
namespace {

using testing::HasSubstr;
using testing::MatchesRegex;

class Readings : public ProgramTest {
 protected:
  static std::vector<std::string> linesOf(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
      lines.push_back(line);
    }
    return lines;
  }
};

TEST_F(Readings, areATableOfEveryChannel) {
  const Ended ended = simulate({"readings"});
  EXPECT_EQ(ended.status, kDone) << ended.errors;
  const auto lines = linesOf(ended.output);
  ASSERT_EQ(lines.size(), 8U) << ended.output;
  EXPECT_THAT(lines[0],
              MatchesRegex("Channel +Voltage\\(V\\) +Current\\(A\\) +Power\\(W\\) +Load"));
  EXPECT_THAT(lines[1], MatchesRegex("CH1-2021L +[0-9.]+ +[0-9.]+ +[0-9.]+ +(on|off)"));
  EXPECT_THAT(lines[7], MatchesRegex("CH7-2030 +[0-9.]+ +[0-9.]+ +[0-9.]+ +(on|off)"));
}

TEST_F(Readings, ofOneChannelLeaveTheOthersAlone) {
  const Ended ended = simulate({"readings", "--channel", "3"});
  EXPECT_EQ(ended.status, kDone);
  EXPECT_EQ(linesOf(ended.output).size(), 2U) << ended.output;
  EXPECT_THAT(ended.output, HasSubstr("CH3-2040"));
}

TEST_F(Readings, ofAChannelThatIsNotThereAreRefused) {
  const Ended ended = simulate({"readings", "--channel", "9"});
  EXPECT_EQ(ended.status, kFailed);
  EXPECT_EQ(ended.output, "");
  EXPECT_EQ(ended.errors, "zanctl: the instrument has no channel 9 (see zanctl connect)\n");
}

TEST_F(Readings, asCsvStartWithAHeaderThatNamesTheUnits) {
  const Ended ended = simulate({"readings", "--csv", "--channel", "1", "--count", "3"});
  EXPECT_EQ(ended.status, kDone);
  const auto lines = linesOf(ended.output);
  ASSERT_EQ(lines.size(), 4U) << ended.output;
  EXPECT_EQ(lines[0], "time,channel,voltage_V,current_A,power_W,load");
  for (std::size_t i = 1; i < lines.size(); ++i) {
    EXPECT_THAT(lines[i], MatchesRegex("[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}"
                                       "[.][0-9]{3}[+-][0-9]{2}:[0-9]{2},CH1-2021L,"
                                       "[0-9.]+,[0-9.]+,[0-9.]+,[01]"));
  }
}

TEST_F(Readings, asJsonAreAnObjectAChannelAndRound) {
  const Ended ended = simulate({"readings", "--json", "--channel", "1", "--count", "2"});
  EXPECT_EQ(ended.status, kDone);
  const auto lines = linesOf(ended.output);
  ASSERT_EQ(lines.size(), 2U) << ended.output;
  const Json object = Json::parse(lines[1]);
  EXPECT_EQ(object["channel"], "CH1-2021L");
  EXPECT_NEAR(object["voltage_V"].get<double>(), 12.6, 0.1);
  EXPECT_EQ(object["current_A"], 0.0);
  EXPECT_EQ(object["load"], false);
  EXPECT_THAT(object["time"].get<std::string>(), HasSubstr("T"));
  EXPECT_EQ(simulate({"readings", "--json", "--csv"}).status, kWrongCommandLine);
}

TEST_F(Readings, areTakenWhenTheirRoundIsDue) {
  const Ended ended = simulate(
      {"readings", "--csv", "--channel", "1", "--count", "3", "--every", "60000", "--trace", "-"});
  // The first query of each round, in milliseconds of the virtual clock.
  std::vector<double> starts;
  for (const std::string& line : linesOf(ended.errors)) {
    if (line.find(" send \":FETC:VOLT?") != std::string::npos) {
      starts.push_back(std::stod(line));
    }
  }
  ASSERT_GE(starts.size(), 3U);
  const std::size_t last = starts.size() - 1;
  EXPECT_DOUBLE_EQ(starts[last] - starts[last - 1], 60000);
  EXPECT_DOUBLE_EQ(starts[last - 1] - starts[last - 2], 60000);
}

TEST_F(Readings, leaveThePanelsChannelSelected) {
  const Ended ended = simulate({"readings", "--trace", "-"});
  const auto last = ended.errors.rfind("send \":CHAN ");
  ASSERT_NE(last, std::string::npos);
  EXPECT_EQ(ended.errors.substr(last, 15), "send \":CHAN 1\\n");
}

/// The simulated instrument as a VISA library, with a fault from after the connect on.
class FaultyReadings : public Readings {
 protected:
  Ended readWithFault(const std::string& fault) {
    ::setenv("ZANSIM_FAULTS", (fault + " after=27").c_str(), 1);
    Ended ended = run({"--visa-library", ZANSIM_VISA_LIBRARY, "--virtual-time", "readings", "--csv",
                       "--channel", "1", "--count", "3"});
    ::unsetenv("ZANSIM_FAULTS");
    return ended;
  }
};

TEST_F(FaultyReadings, takeNothingButOneNumberForAReading) {
  for (const char* fault : {"garble", "garble every=2", "silent every=3", "long=40"}) {
    const Ended ended = readWithFault(fault);
    EXPECT_EQ(ended.status, kFailed) << fault;
    const auto lines = linesOf(ended.output);
    ASSERT_EQ(lines.size(), 4U) << fault << '\n' << ended.output << ended.errors;
    for (std::size_t i = 1; i < lines.size(); ++i) {
      EXPECT_THAT(lines[i], MatchesRegex("[^,]+,CH1-2021L,[0-9.]*,[0-9.]*,[0-9.]*,[01]?")) << fault;
    }
  }
}

TEST_F(Readings, workOnEveryLink) {
  for (const char* link : {"visa", "visacom", "serial"}) {
    const Ended ended = simulate({"readings", "--link", link});
    EXPECT_EQ(ended.status, kDone) << link << ended.errors;
    EXPECT_EQ(linesOf(ended.output).size(), 8U) << ended.output;
  }
}

}  // namespace
}  // namespace zanctl
