#include "simulator/memory/memory.hpp"

#include <gtest/gtest.h>
#include <set>
#include <stdexcept>
#include <string>

#include "simulator/links/connection.hpp"
#include "simulator/wire/block.hpp"

using zansim::Connection;
using zansim::Instrument;
using zansim::Memory;
using zansim::MemoryFile;

namespace {

constexpr MemoryFile kFiles[] = {MemoryFile::Sequence, MemoryFile::System, MemoryFile::Preset};

/// Bytes that would part commands, parameters and messages anywhere but in a block.
std::string awkwardBytes(std::size_t size) {
  std::string bytes;
  while (bytes.size() < size) {
    bytes.append("#3;,:'\"\r\n?*").append(1, '\0').append(1, static_cast<char>(bytes.size()));
  }
  return bytes.substr(0, size);
}

std::string block(std::string_view bytes) {
  std::string text;
  zansim::appendBlock(text, bytes);
  return text;
}

class MemoryCommands : public testing::Test {
 protected:
  /// Sends bytes without an end and takes what they bring.
  std::string exchange(const std::string& bytes) {
    serial_.feed(bytes, false, {});
    std::string answer;
    char part[512];
    for (Connection::Taken taken; (taken = serial_.take(part, {})).count > 0;) {
      answer.append(part, taken.count);
    }
    return answer;
  }
  int error() { return static_cast<int>(instrument_.mainframe.status().take()); }
  Memory& memory() { return instrument_.mainframe.memory(); }

  Instrument instrument_;
  Connection serial_{instrument_, Connection::Kind::Stream};
};

}  // namespace

TEST(Memory, leavesTheFactoryWithEveryByteInEveryFile) {
  const Memory memory;
  for (const MemoryFile file : kFiles) {
    const std::string_view contents = memory.contents(file);
    EXPECT_EQ(std::set<char>(contents.begin(), contents.end()).size(), 256U);
    EXPECT_EQ(Memory().contents(file), contents);
  }
  EXPECT_EQ(memory.contents(MemoryFile::Sequence).size(), 640U);
  EXPECT_EQ(memory.contents(MemoryFile::System).size(), 5580U);
  EXPECT_EQ(memory.contents(MemoryFile::Preset).size(), 892U);
}

TEST(Memory, noTwoPiecesOfWhatLeavesTheFactoryAreAlike) {
  const Memory memory;
  std::set<std::string_view> pieces;
  for (const MemoryFile file : kFiles) {
    const std::string_view contents = memory.contents(file);
    for (std::size_t at = 0; at + 16 <= contents.size(); ++at) {
      EXPECT_TRUE(pieces.insert(contents.substr(at, 16)).second) << at;
    }
  }
}

TEST(Memory, aFileTakesTheSizesItCanHaveAndNoOthers) {
  Memory memory;
  for (const zansim::MemoryFileSize& file : zansim::memoryFiles()) {
    for (const std::size_t size : {file.least, file.most}) {
      memory.store(file.file, std::string(size, 'x'));
      EXPECT_EQ(memory.contents(file.file), std::string(size, 'x'));
    }
    const std::uint64_t changes = memory.changes();
    EXPECT_THROW(memory.store(file.file, std::string(file.most + 1, 'y')), std::invalid_argument);
    if (file.least > 0) {
      EXPECT_THROW(memory.store(file.file, std::string(file.least - 1, 'y')),
                   std::invalid_argument);
    }
    EXPECT_EQ(memory.contents(file.file), std::string(file.most, 'x'));
    EXPECT_EQ(memory.changes(), changes);
  }
}

TEST_F(MemoryCommands, eachFileIsAnsweredAsABlock) {
  EXPECT_EQ(exchange(":MEM:FILE:SEQ?\n"), block(memory().contents(MemoryFile::Sequence)) + "\n");
  EXPECT_EQ(exchange(":SYST:SET?\n"), block(memory().contents(MemoryFile::System)) + "\n");
  EXPECT_EQ(exchange(":MEM:FILE:PRES?\n"), block(memory().contents(MemoryFile::Preset)) + "\n");
  EXPECT_EQ(exchange(":SYST:SET?\n").substr(0, 6), "#45580");
  EXPECT_EQ(exchange(":MEMory:FILE:PRESet?\n").substr(0, 5), "#3892");
}

TEST_F(MemoryCommands, aSequenceOfAnySizeIsAnswered) {
  for (const std::size_t size : {0U, 1U, 9U, 10U, 9999U}) {
    const std::string bytes = awkwardBytes(size);
    memory().store(MemoryFile::Sequence, bytes);
    EXPECT_EQ(exchange(":MEM:FILE:SEQ?\n"), block(bytes) + "\n");
  }
}

TEST_F(MemoryCommands, systemSettingsComeBackByteForByte) {
  const std::string bytes = awkwardBytes(5580);
  EXPECT_EQ(exchange(":SYST:SET #45580"), "");
  EXPECT_EQ(exchange(bytes), "");
  EXPECT_EQ(exchange("\n"), "");
  EXPECT_EQ(memory().contents(MemoryFile::System), bytes);
  EXPECT_EQ(exchange(":SYST:SET?\n"), "#45580" + bytes + "\n");
  EXPECT_EQ(error(), 0);
}

TEST_F(MemoryCommands, presetsComeWithOrWithoutABlankAndWithoutATerminator) {
  for (const char* const command : {":MEM:FILE:PRES #3892", ":MEM:FILE:PRES#3892"}) {
    const std::string bytes = awkwardBytes(891) + command[14];
    EXPECT_EQ(exchange(command + bytes + ":MEM:FILE:PRES?\n"), "#3892" + bytes + "\n");
    EXPECT_EQ(error(), 0);
  }
}

TEST_F(MemoryCommands, onAMessageBasedLinkTooEveryByteComesThrough) {
  Connection usb(instrument_, Connection::Kind::MessageBased);
  const std::string bytes = awkwardBytes(892);
  usb.feed(":MEM:FILE:PRES#3892" + bytes + "\n", true, {});
  EXPECT_EQ(memory().contents(MemoryFile::Preset), bytes);
  EXPECT_EQ(error(), 0);
}

TEST_F(MemoryCommands, aBlockOfAnotherSizeIsRefusedAndTheMemoryStays) {
  struct Case {
    std::string message;
    int error;
  };
  for (const Case& c :
       {Case{":SYST:SET " + block(awkwardBytes(5579)), -161},
        Case{":SYST:SET " + block(awkwardBytes(5581)), -223}, Case{":SYST:SET #10\n", -161},
        Case{":MEM:FILE:PRES " + block(awkwardBytes(891)), -161},
        Case{":MEM:FILE:PRES" + block(awkwardBytes(893)), -223},
        Case{":MEM:FILE:PRES #0abc\n", -161}, Case{":MEM:FILE:PRES 892\n", -104},
        Case{":MEM:FILE:PRES \"x\"\n", -104}, Case{":MEM:FILE:PRES\n", -109},
        Case{":SYST:SET\n", -109}, Case{":MEM:FILE:SEQ " + block("program"), -113}}) {
    EXPECT_EQ(exchange(c.message), "");
    EXPECT_EQ(error(), c.error) << c.message.substr(0, 24);
    EXPECT_EQ(error(), 0) << c.message.substr(0, 24);
    EXPECT_EQ(memory().changes(), 0U) << c.message.substr(0, 24);
  }
}

TEST_F(MemoryCommands, aResetLeavesTheMemory) {
  const std::string bytes = awkwardBytes(892);
  exchange(":MEM:FILE:PRES #3892" + bytes + "*RST\n*CLS\n");
  EXPECT_EQ(memory().contents(MemoryFile::Preset), bytes);
}
