#include <gtest/gtest.h>
#include <stdexcept>

#include "lumodevice/link/command_table.hpp"
#include "lumodevice/panel/command_prefixes.hpp"
#include "tests/support/bench.hpp"

namespace lumodevice {
namespace {

using link::CommandTable;
using support::Bench;
using support::lines;
using support::silence;
using toolkit::Key;

TEST(Console, enterSendsWhatStandsInTheField) {
  Bench bench;
  bench.connectVisa();
  bench.type("Text2", ":CHAN?");
  bench.press("Text2", Key::Enter);
  EXPECT_EQ(bench.journal(), lines({"pass", "viWrite 4 :CHAN?\\n", "viRead 4 80", "pass"}));
  EXPECT_EQ(bench.text("txtReturn"), "2");
}

TEST(Console, enterWaitsOneUnitOnTheSerialLink) {
  Bench bench;
  bench.connectSerial();
  bench.type("Text2", ":LOAD 1");
  bench.press("Text2", Key::Enter);
  EXPECT_EQ(bench.journal(), lines({"pass", "COM3 write :LOAD 1\\n", "pass", "sleep 200"}));
}

TEST(Console, anUnansweredQuerySentByHandShowsNoBox) {
  Bench bench;
  bench.connectVisa();
  bench.instrument.on(":Q?", silence());
  bench.type("Text2", ":Q?");
  bench.press("Text2", Key::Enter);
  bench.click("cmdSendCmd");
  EXPECT_EQ(bench.journal({"box"}), "");
}

TEST(Console, enterInAnEmptyFieldOrWithoutALinkDoesNothing) {
  Bench bench;
  bench.press("Text2", Key::Enter);
  EXPECT_EQ(bench.journal(), "");
  bench.connectVisa();
  bench.type("Text2", "");
  bench.press("Text2", Key::Enter);
  EXPECT_EQ(bench.journal(), "");
}

TEST(Console, theButtonTakesNoPressWithoutALink) {
  Bench bench;
  EXPECT_FALSE(toolkit::hand::click(bench.control<toolkit::CommandButton>("cmdSendCmd")));
  EXPECT_EQ(bench.journal(), "");
}

TEST(Console, theFirstUpShowsTheLastButOneEntryAndTheFirstDownWrapsToTheFirst) {
  Bench up;
  up.press("Text2", Key::Up);
  EXPECT_EQ(up.text("Text2"), ":CURR:DYN:T1?");
  Bench down;
  down.press("Text2", Key::Down);
  EXPECT_EQ(down.text("Text2"), ":CHAN ");
}

TEST(Console, walkingTheHistorySendsNothing) {
  Bench bench;
  bench.connectVisa();
  bench.press("Text2", Key::Up);
  bench.press("Text2", Key::Down);
  EXPECT_EQ(bench.journal(), "");
}

TEST(Console, downAndTheHostWalkTheSameHistory) {
  Bench bench;
  EXPECT_EQ(bench.zan().nextCmd(), ":CHAN ");
  bench.press("Text2", Key::Down);
  EXPECT_EQ(bench.text("Text2"), ":MODE CCH");
  EXPECT_EQ(bench.zan().nextCmd(), ":MODE CCL");
}

TEST(Console, theIdentityButtonIsOneExchange) {
  Bench bench;
  bench.connectVisa();
  for (int press = 0; press < 2; ++press) {
    bench.click("Command1");
    EXPECT_EQ(bench.journal(),
              lines({"pass", "viWrite 4 *IDN?\\n", "viRead 4 80", "pass", "sleep 200"}));
    EXPECT_EQ(bench.text("txtReturn"), support::kIdentity);
  }
}

TEST(Console, theIdentityButtonAsksForALinkFirst) {
  Bench bench;
  bench.click("Command1");
  EXPECT_EQ(bench.journal(), lines({"box Pleace Connect to Deivce first!"}));
}

TEST(CommandTable, anEmptyOneHasNothingToShow) {
  CommandTable table;
  EXPECT_EQ(table.nextCmd(), "");
  EXPECT_EQ(table.prevCmd(), "");
  EXPECT_EQ(table.cmdLast(), -1);
}

TEST(CommandTable, addingMovesTheCursorToTheNewEntry) {
  CommandTable table;
  table.AddCmd("A");
  table.AddCmd("B");
  EXPECT_EQ(table.cmdCursor(), 1);
  table.nextCmd();
  table.AddCmd("C");
  EXPECT_EQ(table.cmdCursor(), 2);
  EXPECT_EQ(table.entry(2), "C");
}

TEST(CommandTable, bothWaysWrapAround) {
  CommandTable table;
  for (const char* text : {"A", "B", "C"}) {
    table.AddCmd(text);
  }
  for (const char* text : {"A", "B", "C", "A"}) {
    EXPECT_EQ(table.nextCmd(), text);
  }
  for (const char* text : {"C", "B", "A", "C"}) {
    EXPECT_EQ(table.prevCmd(), text);
  }
}

TEST(CommandTable, aSingleEntryIsItsOwnNeighbour) {
  CommandTable table;
  table.AddCmd("A");
  EXPECT_EQ(table.nextCmd(), "A");
  EXPECT_EQ(table.prevCmd(), "A");
}

TEST(CommandTable, anEmptyTextIsNotAdded) {
  CommandTable table;
  table.AddCmd("");
  EXPECT_EQ(table.cmdLast(), -1);
}

TEST(CommandTable, holdsAHundredAndOneEntries) {
  CommandTable table;
  for (int i = 0; i < 200; ++i) {
    table.AddCmd(std::to_string(i));
  }
  EXPECT_EQ(table.cmdLast(), 100);
  EXPECT_EQ(table.entry(100), "100");
  EXPECT_EQ(table.nextCmd(), "0");
  EXPECT_THROW((void)table.entry(101), std::out_of_range);
  EXPECT_THROW((void)table.entry(-1), std::out_of_range);
}

TEST(CommandTable, clearingEmptiesIt) {
  CommandTable table;
  table.AddCmd("A");
  table.clear();
  EXPECT_EQ(table.nextCmd(), "");
  EXPECT_EQ(table.entry(0), "");
}

TEST(CommandTable, thePanelFillsSixtyOneEntriesAndLeavesTheCursorAtTheLast) {
  CommandTable table;
  panel::BuildCmdTable(table);
  EXPECT_EQ(table.cmdLast(), 60);
  EXPECT_EQ(table.cmdCursor(), 60);
  EXPECT_EQ(table.entry(0), ":CHAN ");
  EXPECT_EQ(table.entry(60), ":CURR:DYN:T2?");
}

}  // namespace
}  // namespace lumodevice
