#include "lumodevice/link/command_table.hpp"

#include <array>
#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <string_view>

#include "lumodevice/panel/command_prefixes.hpp"
#include "tests/support/panel_bench.hpp"

namespace lumodevice::panel {
namespace {

using support::PanelBench;

constexpr auto kEntries = std::to_array<std::string_view>({
    ":CHAN ",                 // 0
    ":MODE CCH",              // 1
    ":MODE CCL",              // 2
    ":MODE CV",               // 3
    ":MODE CRH",              // 4
    ":MODE CRL",              // 5
    ":MODE CCDH",             // 6
    ":MODE CCDL",             // 7
    ":MODE CRDH",             // 8
    ":MODE CRDL",             // 9
    ":CURR:STAT:L1 ",         // 10
    ":CURR:STAT:L2 ",         // 11
    ":CURR:STAT:RISE ",       // 12
    ":CURR:STAT:FALL ",       // 13
    ":CURR:DYN:L1 ",          // 14
    ":CURR:DYN:L2 ",          // 15
    ":CURR:DYN:RISE ",        // 16
    ":CURR:DYN:FALL ",        // 17
    ":CURR:DYN:T1 ",          // 18
    ":CURR:DYN:T2 ",          // 19
    ":VOLT:L1 ",              // 20
    ":VOLT:L2 ",              // 21
    ":VOLT:CURR ",            // 22
    ":VOLT:MODE ",            // 23
    ":RES:L1 ",               // 24
    ":RES:L2 ",               // 25
    ":RES:RISE ",             // 26
    ":RES:FALL ",             // 27
    ":RES:DYN:LOW:L1 ",       // 28
    ":RES:DYN:LOW:L2 ",       // 29
    ":RES:DYN:LOW:RISE  ",    // 30
    ":RES:DYN:LOW:FALL  ",    // 31
    ":RES:DYN:LOW:T1  ",      // 32
    ":RES:DYN:LOW:T2  ",      // 33
    ":CONF:PROT:CURR:LEV ",   // 34
    ":CONF:PROT:VOLT:LEV ",   // 35
    ":CONF:PROT:UVP:LEV ",    // 36
    ":SPEC:VOLT:H ",          // 37
    ":SPEC:VOLT:L ",          // 38
    ":CONF:PROT:CURR:STAT ",  // 39
    ":CONF:PROT:VOLT:STAT ",  // 40
    ":SPEC:CURR:H ",          // 41
    ":SPEC:CURR:L ",          // 42
    ":SPEC:PASS ",            // 43
    ":CONF:PROT:UVP:CLEAR ",  // 44
    ":CHAN?",                 // 45
    ":MODE?",                 // 46
    ":FETC:VOLT?",            // 47
    ":FETC:CURR?",            // 48
    ":FETC:POW?",             // 49
    ":LOAD ",                 // 50
    ":SYST:ERR?",             // 51
    ":SPEC:CURR:H ",          // 52
    ":SPEC:PASS ",            // 53
    ":CONF:VOLT:RANGE ",      // 54
    ":CONF:VOLT:LAT ",        // 55
    ":CONF:VOLT:ON ",         // 56
    ":CURR:DYN:RISE?",        // 57
    ":CURR:DYN:FALL?",        // 58
    ":CURR:DYN:T1?",          // 59
    ":CURR:DYN:T2?",          // 60
});

link::CommandTable builtTable() {
  link::CommandTable table;
  BuildCmdTable(table);
  return table;
}

TEST(CommandTable, holdsEveryPrefixAtItsPositionWithItsBlanks) {
  const link::CommandTable table = builtTable();
  ASSERT_EQ(kEntries.size(), 61U);
  EXPECT_EQ(table.cmdLast(), 60);
  EXPECT_EQ(table.cmdCursor(), 60);
  for (std::size_t i = 0; i < kEntries.size(); ++i) {
    EXPECT_EQ(table.entry(static_cast<std::int32_t>(i)), kEntries[i]) << "position " << i;
  }
}

TEST(CommandTable, isBuiltAnewWhateverItHeld) {
  link::CommandTable table = builtTable();
  table.AddCmd(":EXTRA");
  BuildCmdTable(table);
  EXPECT_EQ(table.cmdLast(), 60);
  EXPECT_EQ(table.entry(61), "");
}

TEST(CommandTable, ofAComponentIsWalkedFromItsStart) {
  PanelBench bench;
  for (const std::string_view entry : kEntries) {
    EXPECT_EQ(bench.zan().nextCmd(), entry);
  }
  EXPECT_EQ(bench.zan().nextCmd(), kEntries.front());
}

TEST(CommandTable, isShownByTheArrowKeysOfTheConsole) {
  PanelBench bench;
  bench.press("Text2", toolkit::Key::Down);
  EXPECT_EQ(bench.text("Text2"), ":CHAN ");
  bench.press("Text2", toolkit::Key::Up);
  EXPECT_EQ(bench.text("Text2"), ":CURR:DYN:T2?");
  bench.press("Text2", toolkit::Key::Up);
  EXPECT_EQ(bench.text("Text2"), ":CURR:DYN:T1?");
}

TEST(CommandTable, isEmptyBeforeAnythingIsAdded) {
  link::CommandTable table;
  EXPECT_EQ(table.cmdLast(), -1);
  EXPECT_EQ(table.nextCmd(), "");
  EXPECT_EQ(table.prevCmd(), "");
}

TEST(CommandTable, isNotChangedByAnEmptyText) {
  link::CommandTable table = builtTable();
  table.nextCmd();
  table.AddCmd("");
  EXPECT_EQ(table.cmdLast(), 60);
  EXPECT_EQ(table.cmdCursor(), 0);
}

TEST(CommandTable, putsTheCursorOnWhatWasAdded) {
  link::CommandTable table = builtTable();
  table.nextCmd();
  table.AddCmd(":NEW ");
  EXPECT_EQ(table.cmdLast(), 61);
  EXPECT_EQ(table.cmdCursor(), 61);
  EXPECT_EQ(table.entry(61), ":NEW ");
}

TEST(CommandTable, takesAHundredAndOneEntriesAndIgnoresTheNext) {
  link::CommandTable table;
  for (int i = 0; i < 101; ++i) {
    table.AddCmd("ENTRY " + std::to_string(i));
  }
  EXPECT_EQ(table.cmdLast(), 100);
  table.nextCmd();
  table.AddCmd("ONE TOO MANY");
  EXPECT_EQ(table.cmdLast(), 100);
  EXPECT_EQ(table.cmdCursor(), 0);
  EXPECT_EQ(table.entry(100), "ENTRY 100");
}

TEST(CommandTable, hasARangeFaultForAPositionOutsideIt) {
  const link::CommandTable table = builtTable();
  EXPECT_EQ(table.entry(100), "");
  EXPECT_THROW((void)table.entry(101), std::out_of_range);
  EXPECT_THROW((void)table.entry(-1), std::out_of_range);
}

TEST(Tags, nameThePrefixOfEachControl) {
  struct Row {
    const char* control;
    const char* tag;
    std::size_t position;
  };
  constexpr auto kRows = std::to_array<Row>({
      {"cmbChannel", "1", 0},      {"optMode(0)", "2", 1},      {"optMode(1)", "3", 2},
      {"optMode(2)", "4", 3},      {"optMode(3)", "5", 4},      {"optMode(4)", "6", 5},
      {"optMode(5)", "7", 6},      {"optMode(6)", "8", 7},      {"optMode(7)", "9", 8},
      {"optMode(8)", "10", 9},     {"cmbCVFreq", "24", 23},     {"chkOCP", "40", 39},
      {"chkOVP", "41", 40},        {"chkGoNogo", "44", 43},     {"chkUVP", "45", 44},
      {"chkLoad", "51", 50},       {"cmbVolRange", "55", 54},   {"chkVON", "56", 55},
      {"txtVoltage(0)", "48", 47}, {"txtCurrent(0)", "49", 48}, {"txtPower(0)", "50", 49},
  });
  PanelBench bench;
  for (const Row& row : kRows) {
    EXPECT_EQ(bench.read(row.control, "Tag"), row.tag) << row.control;
    EXPECT_EQ(std::to_string(row.position + 1), row.tag) << row.control;
  }
}

TEST(Tags, reachAsFarAsTheTable) {
  PanelBench bench;
  bench.connect();
  bench.input(0).setTag("101");
  bench.set(0, "7");
  EXPECT_EQ(bench.sent(), "7\n") << "the last position is free, so the value goes out alone";
  for (const char* tag : {"102", "1000", "0", "", "-5"}) {
    bench.input(0).setTag(tag);
    EXPECT_THROW(bench.set(0, "7"), std::out_of_range) << tag;
    EXPECT_EQ(bench.sent(), "") << tag;
  }
}

TEST(Tags, areTakenToTheNearestPosition) {
  PanelBench bench;
  bench.connect();
  bench.input(0).setTag("101.4");
  bench.set(0, "7");
  EXPECT_EQ(bench.sent(), "7\n");
  bench.input(0).setTag("101.6");
  EXPECT_THROW(bench.set(0, "7"), std::out_of_range);
}

}  // namespace
}  // namespace lumodevice::panel
