#include <cmath>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "simulator/commands/command_tables.hpp"
#include "tests/simulator/load_bench.hpp"

using zansim::Half;
using zansim::Row;
using zansim::tests::LoadBench;

namespace {

std::vector<const Row*> numberRows() {
  std::vector<const Row*> rows;
  for (const auto table : zansim::commandTables()) {
    for (const Row& row : table) {
      if (row.setting.number != nullptr) {
        rows.push_back(&row);
      }
    }
  }
  return rows;
}

std::vector<const Row*> flagRows() {
  std::vector<const Row*> rows;
  for (const auto table : zansim::commandTables()) {
    for (const Row& row : table) {
      if (row.setting.flag != nullptr) {
        rows.push_back(&row);
      }
    }
  }
  return rows;
}

/// Calls the check with every kind of module on the selected channel.
template <typename Check>
void onEveryModule(const Check& check) {
  LoadBench bench("2021L,2021R,2030,2040,2041,2050");
  for (std::size_t channel = 1; channel <= bench.mainframe().channelCount(); ++channel) {
    const zansim::Module& module = bench.mainframe().module(channel);
    SCOPED_TRACE(module.text);
    bench.send(":CHAN " + std::to_string(channel));
    check(bench, module);
  }
}

bool isRefused(const Row& row, const zansim::Module& module) {
  return row.setting.valueB && module.half != Half::Whole;
}

std::string shortForm(std::string_view header) {
  std::string text;
  for (const char c : header) {
    if (c < 'a' || c > 'z') {
      text += c;
    }
  }
  return text;
}

}  // namespace

TEST(SettingCommands, everyNumberTakesItsLimitsAndAnswersThem) {
  onEveryModule([](LoadBench& bench, const zansim::Module& module) {
    for (const Row* const row : numberRows()) {
      if (isRefused(*row, module)) {
        continue;
      }
      SCOPED_TRACE(row->header);
      const std::string header(row->header);
      const std::string least = bench.ask(header + "? MIN");
      const std::string most = bench.ask(header + "? MAX");
      const std::string usual = bench.ask(header + "? DEF");
      EXPECT_LT(std::stod(least), std::stod(most));
      EXPECT_EQ(bench.ask(header + "?"), usual);
      for (const auto& [word, value] :
           {std::pair{"MIN", least}, {"maximum", most}, {"DEFault", usual}}) {
        bench.send(header + " " + word);
        EXPECT_EQ(bench.ask(header + "?"), value) << word;
      }
      // What it answers, it takes: both ends as they were written, and what lies between.
      const double middle = (std::stod(least) + std::stod(most)) / 2;
      for (const std::string& value : {least, most, std::to_string(middle)}) {
        bench.send(std::string(header).append(" ").append(value));
        EXPECT_NEAR(bench.read(header + "?"), std::stod(value), 1e-6);
      }
    }
  });
}

TEST(SettingCommands, aNumberBeyondItsLimitsOrOfAnotherTypeIsRefusedAndChangesNothing) {
  onEveryModule([](LoadBench& bench, const zansim::Module& module) {
    for (const Row* const row : numberRows()) {
      if (isRefused(*row, module)) {
        continue;
      }
      SCOPED_TRACE(row->header);
      const std::string header(row->header);
      const double least = bench.read(header + "? MIN");
      const double most = bench.read(header + "? MAX");
      const std::string before = bench.ask(header + "?");
      const std::pair<std::string, int> refused[] = {
          {" " + std::to_string(least - 0.0001), -222},
          {" " + std::to_string(most + 0.0001), -222},
          {" 1e400", -222},
          {" -1e9", -222},
          {" HIGHEST", -224},
          {" '1'", -104},
          {" #11a", -104},
          {" 1A", -131},
          {" &H10", -121},
          {"", -109},
          {" 1,2", -108},
          {"? MIDDLE", -224},
          {"? 1", -224},
          {"? MIN,MAX", -108},
          {":MORE 1", -113},
      };
      for (const auto& [rest, error] : refused) {
        EXPECT_EQ(bench.ask(header + rest), "") << rest;
        EXPECT_EQ(bench.error(), error) << rest;
      }
      EXPECT_EQ(bench.ask(header + "?"), before);
    }
  });
}

TEST(SettingCommands, everyFlagTakesItsWordsAndDigitsAndAnswersTheDigit) {
  onEveryModule([](LoadBench& bench, const zansim::Module& /*module*/) {
    for (const Row* const row : flagRows()) {
      SCOPED_TRACE(row->header);
      const std::string header(row->header);
      EXPECT_EQ(bench.ask(header + "?"), "0");
      for (const char* const set : {"1", "0", "MAX", "MIN"}) {
        bench.send(header + " " + set);
        EXPECT_EQ(bench.ask(header + "?"), set[0] == '1' || set[1] == 'A' ? "1" : "0");
      }
      bench.send(header + " " + std::string(row->setting.words[1]));
      EXPECT_EQ(bench.ask(header + "?"), "1");
      const std::pair<const char*, int> refused[] = {
          {" 2", -222}, {" -1", -222}, {"", -109}, {" PERHAPS", -224}, {" \"1\"", -104}};
      for (const auto& [rest, error] : refused) {
        EXPECT_EQ(bench.ask(header + rest), "") << rest;
        EXPECT_EQ(bench.error(), error) << rest;
      }
      EXPECT_EQ(bench.ask(header + "?"), "1");
      bench.send(header + " " + std::string(row->setting.words[0]));
      EXPECT_EQ(bench.ask(header + "?"), "0");
    }
  });
}

TEST(SettingCommands, theHalvesOfATwoChannelModuleTakeNoValueBButAnswerForIt) {
  onEveryModule([](LoadBench& bench, const zansim::Module& module) {
    for (const char* const header : {":CURR:STAT:L2", ":VOLT:L2", ":RES:L2"}) {
      for (const char* const rest : {" MIN", " DEF", "?", "? MAX"}) {
        const std::string answer = bench.ask(std::string(header) + rest);
        const bool asks = rest[0] == '?';
        EXPECT_EQ(!answer.empty(), asks) << header << rest;
        EXPECT_EQ(bench.error(), asks || module.half == Half::Whole ? 0 : -221) << header << rest;
      }
    }
  });
}

TEST(SettingCommands, everyAnswerIsShortAndPlain) {
  onEveryModule([](LoadBench& bench, const zansim::Module& module) {
    for (const auto table : zansim::commandTables()) {
      for (const Row& row : table) {
        if (row.query == nullptr || isRefused(row, module)) {
          continue;
        }
        const std::string answer =
            bench.ask(std::string(row.header.substr(0, row.header.find('['))) + "?");
        EXPECT_FALSE(answer.empty()) << row.header;
        EXPECT_TRUE(answer.size() < 79U || answer.front() == '#') << row.header;
        if (row.setting.number != nullptr) {
          EXPECT_EQ(answer.find_first_not_of("0123456789."), std::string::npos) << answer;
          EXPECT_NE(answer.back(), '.');
        }
      }
    }
    EXPECT_EQ(bench.error(), 0);
  });
}

TEST(SettingCommands, shortFormsBlanksAndCaseDoNotMatter) {
  LoadBench bench;
  for (const Row* const row : numberRows()) {
    const std::string header = shortForm(row->header);
    bench.send(" " + header + "  \t" + bench.ask(header + "? MAX") + "  ");
    EXPECT_EQ(bench.ask(std::string(row->header) + "?"), bench.ask(header + "? MAX"));
  }
  bench.send(":res:dyn:low:rise  0.25");
  EXPECT_EQ(bench.ask(":RES:DYN:LOW:RISE?"), "0.25");
  EXPECT_EQ(bench.ask(":Mode?"), "CCH");
}

TEST(SettingCommands, numbersAreAnsweredInPlainDecimals) {
  LoadBench bench;
  const std::pair<const char*, const char*> values[] = {
      {"1.5", "1.5"}, {"0", "0"},  {"12.345", "12.345"}, {"5.000", "5"},
      {"2E1", "20"},  {"-0", "0"}, {"1e-5", "0.00001"},  {"0.1234567", "0.123457"}};
  for (const auto& [set, answer] : values) {
    bench.send(":CURR:STAT:L1 " + std::string(set));
    EXPECT_EQ(bench.ask(":CURR:STAT:L1?"), answer);
  }
}

TEST(SettingCommands, everyModeIsTakenAndAnswered) {
  LoadBench bench;
  for (const char* const mode :
       {"CCH", "CCL", "CV", "CRH", "CRL", "CCDH", "CCDL", "CRDH", "CRDL"}) {
    bench.send(":MODE " + std::string(mode));
    EXPECT_EQ(bench.ask(":Mode?"), mode);
  }
  bench.send(":mode ccl");
  for (const auto& [rest, error] :
       {std::pair{" CCX", -224}, {" 1", -104}, {" 'CV'", -104}, {"", -109}}) {
    EXPECT_EQ(bench.ask(":MODE" + std::string(rest)), "");
    EXPECT_EQ(bench.error(), error) << rest;
  }
  EXPECT_EQ(bench.ask(":MODE?"), "CCL");
}

TEST(SettingCommands, theVoltageRangeAnswersItsFullScale) {
  onEveryModule([](LoadBench& bench, const zansim::Module& module) {
    const std::string low = module.lowVolts == 125 ? "125" : "16";
    const std::string high = module.lowVolts == 125 ? "500" : "80";
    const std::pair<const char*, std::string> cases[] = {
        {"LOW", low},  {"HIGH", high}, {"MIN", low},
        {"MAX", high}, {"1", low},     {"75.5", module.lowVolts == 125 ? low : high}};
    EXPECT_EQ(bench.ask(":CONF:VOLT:RANGE?"), high);
    for (const auto& [set, answer] : cases) {
      bench.send(":CONF:VOLT:RANGE " + std::string(set));
      EXPECT_EQ(bench.ask(":CONF:VOLT:RANGE?"), answer) << set;
    }
    EXPECT_EQ(bench.ask(":CONF:VOLT:RANGE? MIN;RANGE? MAX"), low + ";" + high);
    bench.ask(":CONF:VOLT:RANGE 501");
    EXPECT_EQ(bench.error(), -222);
    bench.ask(":CONF:VOLT:RANGE MIDDLE");
    EXPECT_EQ(bench.error(), -224);
  });
}

TEST(SettingCommands, aLowerRangeBringsLevelsDownToItsEnd) {
  LoadBench bench("2030");
  bench.send(":CURR:STAT:L1 20;:CURR:DYN:L2 3;:VOLT:L1 40;:CONF:VOLT:ON 30");
  bench.send(":MODE CCL");
  EXPECT_EQ(bench.ask(":CURR:STAT:L1?;:CURR:STAT:L1? MAX;:CURR:DYN:L2?"), "6;6;3");
  bench.send(":MODE CV");
  EXPECT_EQ(bench.ask(":CURR:STAT:L1? MAX"), "6");
  bench.send(":CONF:VOLT:RANGE LOW");
  EXPECT_EQ(bench.ask(":VOLT:L1?;:CONF:VOLT:ON?"), "16;16");
  bench.send(":MODE CRL;:RES:L1 MIN");
  EXPECT_EQ(bench.ask(":RES:L1?;L1? MAX"), "0.025;100");
  bench.send(":MODE CRH");
  EXPECT_EQ(bench.ask(":RES:L1?;L1? MAX"), "1.25;5000");
}

TEST(SettingCommands, eachChannelHasItsOwn) {
  LoadBench bench("2030,2040");
  bench.send(":CHAN 1;:CURR:STAT:L1 1;:MODE CV;:CHAN 2;:CURR:STAT:L1 2");
  EXPECT_EQ(bench.ask(":MODE?;:CURR:STAT:L1?;:CHAN 1;:MODE?;:CURR:STAT:L1?"), "CCH;2;CV;1");
}

TEST(SettingCommands, resetBringsBackTheValuesAfterPowerOn) {
  LoadBench bench("2030");
  LoadBench fresh("2030");
  for (const Row* const row : numberRows()) {
    bench.send(std::string(row->header) + (fresh.ask(std::string(row->header) + "?") ==
                                                   fresh.ask(std::string(row->header) + "? MAX")
                                               ? " MIN"
                                               : " MAX"));
  }
  bench.send(":MODE CRDL;:CONF:VOLT:RANGE LOW;:SPEC:PASS ON;:LOAD ON");
  bench.send("*RST");
  for (const Row* const row : numberRows()) {
    EXPECT_EQ(bench.ask(std::string(row->header) + "?"), fresh.ask(std::string(row->header) + "?"));
  }
  EXPECT_EQ(bench.ask(":MODE?;:CONF:VOLT:RANGE?;:SPEC:PASS?;:LOAD?"), "CCH;80;0;0");
}

TEST(SettingCommands, withoutModulesEveryChannelCommandIsRefused) {
  zansim::Configuration configuration;
  configuration.setSlots("0");
  zansim::Mainframe mainframe(configuration);
  for (const char* const message :
       {":MODE?", ":MODE CV", ":LOAD 1", ":LOAD?", ":CURR:STAT:L1 1", ":CURR:STAT:L1?",
        ":SPEC:PASS 1", ":SPEC:PASS?", ":FETC:VOLT?", ":FETC:CURR?", ":FETC:POW?", ":SPEC:RES?",
        ":CONF:VOLT:RANGE LOW", ":CONF:VOLT:RANGE?", ":CONF:PROT:CLE", ":CONF:PROT:UVP:CLE",
        ":CONF:PROT:TRIP?"}) {
    std::string answer;
    zansim::execute(mainframe, message, {}, answer);
    EXPECT_EQ(answer, "") << message;
    EXPECT_EQ(mainframe.status().take(), zansim::Error::HardwareMissing) << message;
  }
}

TEST(SettingCommands, aFullErrorQueueEndsInAnOverflow) {
  LoadBench bench;
  for (int i = 0; i < 30; ++i) {
    bench.ask(":CURR:STAT:L1 1000");
  }
  std::string last;
  for (std::string entry = bench.ask(":SYST:ERR?"); entry != "0,\"No error\"";
       entry = bench.ask(":SYST:ERR?")) {
    last = entry;
  }
  EXPECT_EQ(last, "-350,\"Queue overflow\"");
}
