#include <gtest/gtest.h>

#include "tests/support/bench.hpp"

namespace lumodevice {
namespace {

using support::Bench;
using support::MemoryDrive;

MemoryDrive::Bytes bytes(std::string_view text) {
  return {text.begin(), text.end()};
}

TEST(MemoryFiles, TheSequenceFileArrivesOverTheSerialPortWithoutItsHeader) {
  Bench bench;
  bench.connectSerial();
  bench.instrument.on(":MEM:FILE:SEQ?", "#213hello\n#\r\nworld\n");
  EXPECT_TRUE(bench.zan().GetSeqFile());
  EXPECT_EQ(bench.drive.content("C:\\temp\\ZANSeq.a"), bytes("hello\n#\r\nworl"));
}

TEST(MemoryFiles, TheSequenceFileArrivesOverVisaCom) {
  Bench bench;
  bench.connectVisaCom();
  bench.instrument.on(":MEM:FILE:SEQ?", "hello");
  EXPECT_TRUE(bench.zan().GetSeqFile());
  EXPECT_EQ(bench.drive.content("c:\\temp\\zanseq.a"), bytes("hello"));
}

}  // namespace
}  // namespace lumodevice
