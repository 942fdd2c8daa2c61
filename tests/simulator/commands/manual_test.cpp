#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <set>
#include <sstream>
#include <string>

#include "simulator/commands/command_tables.hpp"
#include "simulator/configuration.hpp"

using zansim::Row;
using zansim::Setting;
using zansim::Usual;

namespace {

std::string manual() {
  std::ifstream file(ZANSIM_MANUAL);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string usualText(const Usual& usual) {
  std::ostringstream text;
  switch (usual.kind) {
    case Usual::Kind::Least:
      text << "MIN";
      break;
    case Usual::Kind::Most:
      text << "MAX";
      break;
    case Usual::Kind::Given:
      text << usual.given;
      break;
  }
  return text.str();
}

/// The line of the manual's table of settings.
std::string lineOf(const Row& row) {
  const Setting& setting = row.setting;
  std::string line = "| `" + std::string(row.header) + "` | ";
  if (setting.flag != nullptr) {
    return line.append("| ")
        .append(setting.words[0])
        .append(" or 0, ")
        .append(setting.words[1])
        .append(" or 1 | 0 |\n");
  }
  return line.append(setting.unit)
      .append(" | ")
      .append(setting.limits->text)
      .append(setting.valueB ? "; not on halves" : "")
      .append(" | ")
      .append(usualText(setting.usual))
      .append(" |\n");
}

std::string rangeText(const zansim::Range& range) {
  std::ostringstream text;
  text << range.least << " to " << range.most;
  return text.str();
}

}  // namespace

TEST(Manual, listsEveryCommand) {
  const std::string text = manual();
  for (const auto table : zansim::commandTables()) {
    for (const Row& row : table) {
      const std::string header(row.header);
      EXPECT_TRUE(text.find("`" + header + "`") != std::string::npos ||
                  text.find("`" + header + "?") != std::string::npos ||
                  text.find("`" + header + " ") != std::string::npos)
          << header;
    }
  }
}

TEST(Manual, listsEverySettingWithItsUnitLimitsAndValueAfterPowerOn) {
  const std::string text = manual();
  for (const auto table : zansim::commandTables()) {
    for (const Row& row : table) {
      if (row.setting.number != nullptr || row.setting.flag != nullptr) {
        EXPECT_TRUE(text.find(lineOf(row)) != std::string::npos) << lineOf(row);
      }
    }
  }
}

TEST(Manual, listsTheResistancesAndSlewRatesOfEveryModule) {
  for (const zansim::Module& module : zansim::moduleCatalogue()) {
    const std::string line = "| " + std::string(module.text) + " | " + rangeText(module.lowOhms) +
                             " | " + rangeText(module.highOhms) + " | " + rangeText(module.slew) +
                             " |\n";
    EXPECT_TRUE(manual().find(line) != std::string::npos) << line;
  }
}

TEST(CommandTable, noHeaderStandsInItTwice) {
  std::set<std::string_view> headers;
  for (const auto table : zansim::commandTables()) {
    for (const Row& row : table) {
      EXPECT_TRUE(headers.insert(row.header).second) << row.header;
    }
  }
}
