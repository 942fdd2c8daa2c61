#include "recordings/entry.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lumodevice::recordings {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;

TEST(RecordedLine, hasTimeDurationSideActLinkStatusAndBytes) {
  EXPECT_EQ(lineOf({.act = WireAct::Sent,
                    .link = 2,
                    .bytes = "*IDN?\r",
                    .value = 6,
                    .begin = 1500us + 1ns,
                    .end = 1750us},
                   500us),
            "1.000001 +0.249999 v send 2 ok 6 \"*IDN?\\r\"\n");
  EXPECT_EQ(lineOf({.act = WireAct::Received,
                    .link = 1,
                    .value = 80,
                    .status = io::VI_ERROR_TMO,
                    .begin = 2s,
                    .end = 4s},
                   0s),
            "2000.000000 +2000.000000 v recv 1 0xBFFF0015 80 \"\"\n");
  EXPECT_EQ(
      lineOf({.act = WireAct::Open,
              .name = "COM4",
              .bytes = "9600,n,8,1",
              .status = 8002,
              .fault = "COM4 does not exist",
              .serial = true},
             0s),
      "0.000000 +0.000000 s open 0 8002 0 0 \"COM4\" \"9600,n,8,1\" \"COM4 does not exist\"\n");
}

TEST(RecordedLine, ofWhatIsAboutToBeSentIsNone) {
  EXPECT_EQ(lineOf({.act = WireAct::Sending, .bytes = "*RST\n"}, 0s), "");
}

TEST(RecordedLine, isReadAsItWasWritten) {
  std::string all;
  for (int byte = 0; byte < 256; ++byte) {
    all += static_cast<char>(byte);
  }
  for (const WireAct act : {WireAct::Manager, WireAct::Find, WireAct::FindNext, WireAct::Open,
                            WireAct::Close, WireAct::Attribute, WireAct::Setting, WireAct::Sent,
                            WireAct::Received, WireAct::Dropped, WireAct::Port}) {
    const std::string line = lineOf({.act = act,
                                     .link = 7,
                                     .name = "USB0::\"0x1\"::INSTR",
                                     .bytes = all,
                                     .number = 0xBFFF00E9,
                                     .value = 4000000000,
                                     .status = io::VI_ERROR_CONN_LOST,
                                     .begin = 100h,
                                     .end = 100h + 1ns},
                                    0s);
    const auto entry = entryIn(std::string_view(line).substr(0, line.size() - 1));
    ASSERT_TRUE(entry) << line;
    const std::string again = lineOf({.act = entry->act,
                                      .link = entry->link,
                                      .name = entry->name,
                                      .bytes = entry->bytes,
                                      .number = entry->number,
                                      .value = entry->value,
                                      .status = entry->status,
                                      .fault = entry->fault,
                                      .serial = entry->serial,
                                      .begin = entry->begin,
                                      .end = entry->end},
                                     0s);
    EXPECT_EQ(again, line);
  }
}

TEST(RecordedLine, thatIsARemarkOrANoteSaysNothing) {
  EXPECT_FALSE(entryIn("# anything"));
  EXPECT_FALSE(entryIn(""));
  const std::string note = noteLine("Pleace \"Connect\"\n", 1ms);
  EXPECT_EQ(note, "1.000000 note \"Pleace \\\"Connect\\\"\\n\"\n");
  EXPECT_FALSE(entryIn(std::string_view(note).substr(0, note.size() - 1)));
}

TEST(RecordedLine, thatIsNoneIsRefused) {
  for (const char* line :
       {"x", "1.0 +0.000000 v manager ok", "1.000000", "1.000000 +0.000000 w manager ok",
        "1.000000 +0.000000 v dance ok", "1.000000 +0.000000 v manager maybe",
        "1.000000 +0.000000 v manager ok more", "1.000000 +0.000000 v drop 1 ok \"a",
        "1.000000 +0.000000 v drop 1 ok \"\\q\"", "1.000000 +0.000000 v drop 1 ok \"\\x1\"",
        "1.000000 +0.000000 v drop 99999999999 ok \"\"", "99999999999999999.000000 +0.000000 v",
        "1.000000 0.000000 v manager ok"}) {
    EXPECT_THROW((void)entryIn(line), EntryFault) << line;
  }
}

}  // namespace
}  // namespace lumodevice::recordings
