#include <csignal>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <random>
#include <sys/resource.h>
#include <unistd.h>

#include "platform/visa_library.hpp"
#include "simulator/links/simulated_serial.hpp"
#include "tests/end_to_end/serial_bench.hpp"
#include "tests/end_to_end/simulated_bench.hpp"
#include "tests/end_to_end/socket_bench.hpp"

namespace lumodevice::end_to_end {
namespace {

using zansim::MemoryFile;

/// Files of random bytes, rich in those that mean something on a wire.
class RandomFiles {
 public:
  explicit RandomFiles(unsigned seed) : random_(seed) {}

  std::string file(std::size_t size) {
    constexpr std::string_view kMeaning = "#\r\n\0;,\"";
    std::string bytes(size, '\0');
    for (char& byte : bytes) {
      byte = random_() % 4 == 0 ? kMeaning[random_() % 7] : static_cast<char>(random_());
    }
    return bytes;
  }
  std::string sequence(std::size_t most) { return file(2 + random_() % (most - 1)); }

 private:
  std::mt19937 random_;
};

/// All kinds of files of an instrument to disk, and those that it takes back to it. `rest` lets a
/// slow line get out what is still on its way after the component's own waits.
void expectFilesToTravel(
    RealPanel& panel, zansim::Memory& memory, RandomFiles& random, std::size_t longestSequence,
    bool serial, const std::function<void()>& rest = [] {}) {
  ZANCtrl& zan = panel.zan();
  const std::string sequence = random.sequence(longestSequence);
  memory.store(MemoryFile::Sequence, sequence);
  EXPECT_TRUE(zan.GetSeqFile());
  EXPECT_EQ(panel.file("ZANSeq.a"), sequence);

  const std::string settings = random.file(5580);
  panel.putFile("ZANProgUpload.b", settings);
  EXPECT_TRUE(zan.SendSysFile());
  rest();
  EXPECT_TRUE(zan.GetSysFile());
  EXPECT_EQ(panel.file("ZANProg.b"), settings);
  EXPECT_EQ(memory.contents(MemoryFile::System), settings);

  const std::string preset = random.file(892);
  memory.store(MemoryFile::Preset, preset);
  EXPECT_TRUE(zan.GetPresetFile(""));
  EXPECT_EQ(panel.file("zanbank.dev"), serial ? "#3892" + preset + "\n" : preset);
  memory.store(MemoryFile::Preset, random.file(892));
  panel.putFile("test.dev", "");
  EXPECT_TRUE(zan.SetPresetFile());
  rest();
  EXPECT_EQ(panel.ask("*IDN?").substr(0, 8), "Ostbrook") << "the link is in step";
  EXPECT_EQ(memory.contents(MemoryFile::Preset), preset);
  EXPECT_EQ(panel.boxes(), "");
}

TEST(MemoryFilesOverVisaCom, travelThereAndBack) {
  SimulatedBench bench(Variant::VisaCom);
  ASSERT_TRUE(bench.panel.zan().AutoConnect());
  RandomFiles random(1);
  for (int round = 0; round < 150; ++round) {
    SCOPED_TRACE(round);
    expectFilesToTravel(bench.panel, bench.instrument.mainframe.memory(), random, 9999, false);
  }
}

/// A component whose COM3 leads to a simulated load over a line of that speed, in virtual time.
struct PacedSerial {
  explicit PacedSerial(std::int32_t baud, int rate) {
    ports.plug(3, instrument, baud);
    panel.click("optConnRS232");
    panel.type("Text1", "3");
    panel.select("Combo2", rate);
    panel.click("Command2");
  }

  toolkit::VirtualLoop loop;
  support::LoopClock clock{loop};
  zansim::Instrument instrument;
  zansim::SimulatedSerialDevices ports{clock};
  zansim::VisaBench resources{clock};
  zansim::SimulatedVisa visa{resources};
  RealPanel panel{loop, visa, ports};
};

class MemoryFilesOverALine : public testing::TestWithParam<std::pair<std::int32_t, int>> {};

INSTANTIATE_TEST_SUITE_P(Baud, MemoryFilesOverALine,
                         testing::Values(std::pair{38400, 0}, std::pair{19200, 1},
                                         std::pair{9600, 2}, std::pair{4800, 3}, std::pair{0, 0}),
                         [](const auto& each) { return std::to_string(each.param.first); });

TEST_P(MemoryFilesOverALine, travelThereAndBack) {
  PacedSerial bench(GetParam().first, GetParam().second);
  ASSERT_TRUE(bench.panel.zan().isConnected());
  RandomFiles random(2);
  for (int round = 0; round < 40; ++round) {
    SCOPED_TRACE(round);
    expectFilesToTravel(bench.panel, bench.instrument.mainframe.memory(), random, 9999, true,
                        [&] { bench.loop.runFor(std::chrono::seconds(12)); });
  }
}

TEST_P(MemoryFilesOverALine, travelInPieces) {
  PacedSerial bench(GetParam().first, GetParam().second);
  ASSERT_TRUE(bench.panel.zan().isConnected());
  bench.instrument.faults.add("pieces=97 gap=3");
  RandomFiles random(3);
  for (int round = 0; round < 5; ++round) {
    SCOPED_TRACE(round);
    expectFilesToTravel(bench.panel, bench.instrument.mainframe.memory(), random, 4000, true,
                        [&] { bench.loop.runFor(std::chrono::seconds(12)); });
  }
}

TEST(MemoryFilesOverAPseudoTerminal, travelThereAndBack) {
  SerialBench bench{3};
  bench.connectByHand(3);
  RandomFiles random(4);
  for (int round = 0; round < 3; ++round) {
    SCOPED_TRACE(round);
    expectFilesToTravel(bench.panel(), bench.load(3).instrument.mainframe.memory(), random, 9999,
                        true);
  }
}

TEST(MemoryFilesOverAPseudoTerminal, travelInPieces) {
  SerialBench bench{3};
  bench.connectByHand(3);
  bench.load(3).instrument.faults.add("pieces=500 gap=5");
  RandomFiles random(5);
  expectFilesToTravel(bench.panel(), bench.load(3).instrument.mainframe.memory(), random, 4000,
                      true);
}

/// The instrument behind a library is out of reach: its own files are read, sent back and read
/// again.
TEST(MemoryFilesOverALoadedLibrary, travelThereAndBack) {
  const platform::VisaLibraryResult loaded = platform::loadVisaLibrary(ZANSIM_VISA_LIBRARY);
  toolkit::VirtualLoop loop;
  posix::TermiosDevices devices{{{1, "/nowhere"}}};
  RealPanel panel(loop, *loaded.library, devices);
  panel.click("optVisa2");
  ZANCtrl& zan = panel.zan();
  ASSERT_TRUE(zan.AutoConnect());
  RandomFiles random(6);
  panel.putFile("test.dev", "");
  for (int round = 0; round < 25; ++round) {
    SCOPED_TRACE(round);
    const std::string settings = random.file(5580);
    panel.putFile("ZANProgUpload.b", settings);
    EXPECT_TRUE(zan.SendSysFile());
    EXPECT_TRUE(zan.GetSysFile());
    EXPECT_EQ(panel.file("ZANProg.b"), settings);
    const std::string preset = random.file(892);
    panel.putFile("zanbank.dev", preset);
    EXPECT_TRUE(zan.SetPresetFile());
    panel.putFile("zanbank.dev", "");
    EXPECT_TRUE(zan.GetPresetFile(""));
    EXPECT_EQ(panel.file("zanbank.dev"), preset);
  }
  EXPECT_TRUE(zan.GetSeqFile());
  EXPECT_GT(panel.file("ZANSeq.a").value_or("").size(), 100U);
  EXPECT_EQ(panel.ask(":SYST:ERR?"), "0,\"No error\"");
}

TEST(MemoryFilesOverASocket, travelThereAndBack) {
  LoadOnSocket load;
  SocketBench bench(Variant::VisaCom);
  bench.connect(load.resource());
  RandomFiles random(7);
  std::string sequence;
  for (int round = 0; round < 10; ++round) {
    SCOPED_TRACE(round);
    sequence = random.sequence(9999);
    load.with([&](zansim::Instrument& instrument) {
      instrument.mainframe.memory().store(MemoryFile::Sequence, sequence);
    });
    EXPECT_TRUE(bench.panel.zan().GetSeqFile());
    EXPECT_EQ(bench.panel.file("ZANSeq.a"), sequence);
    const std::string settings = random.file(5580);
    bench.panel.putFile("ZANProgUpload.b", settings);
    EXPECT_TRUE(bench.panel.zan().SendSysFile());
    EXPECT_TRUE(bench.panel.zan().GetSysFile());
    EXPECT_EQ(bench.panel.file("ZANProg.b"), settings);
    const std::string preset = random.file(892);
    bench.panel.putFile("zanbank.dev", preset);
    bench.panel.putFile("test.dev", "");
    EXPECT_TRUE(bench.panel.zan().SetPresetFile());
    bench.panel.putFile("zanbank.dev", "");
    EXPECT_TRUE(bench.panel.zan().GetPresetFile(""));
    EXPECT_EQ(bench.panel.file("zanbank.dev"), preset);
  }
}

TEST(MemoryFilesOverVisaCom, ofAnInstrumentThatFallsSilentLeaveNothing) {
  SimulatedBench bench(Variant::VisaCom);
  ASSERT_TRUE(bench.panel.zan().AutoConnect());
  bench.instrument.faults.add("silent");
  EXPECT_TRUE(bench.panel.zan().GetSeqFile());
  EXPECT_EQ(bench.panel.file("ZANSeq.a"), std::nullopt);
  EXPECT_FALSE(bench.panel.zan().GetPresetFile(""));
  bench.instrument.faults.clear();
  EXPECT_TRUE(bench.panel.zan().GetPresetFile(""));
  EXPECT_EQ(bench.panel.file("zanbank.dev").value_or("").size(), 892U);
}

/// No file of this program grows beyond so many bytes, as on a disk that is full.
class FullDisk {
 public:
  explicit FullDisk(rlim_t most) {
    (void)::getrlimit(RLIMIT_FSIZE, &before_);
    handler_ = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{.rlim_cur = most, .rlim_max = before_.rlim_max};
    (void)::setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FullDisk() {
    (void)::setrlimit(RLIMIT_FSIZE, &before_);
    (void)std::signal(SIGXFSZ, handler_);
  }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;

 private:
  rlimit before_{};
  void (*handler_)(int) = nullptr;
};

TEST(MemoryFilesOnARealDisk, thatIsFullKeepWhatWasWritten) {
  SimulatedBench bench(Variant::VisaCom);
  ASSERT_TRUE(bench.panel.zan().AutoConnect());
  bench.panel.putFile("other", "kept");
  {
    const FullDisk disk(4096);
    EXPECT_TRUE(bench.panel.zan().GetSysFile());
    EXPECT_TRUE(bench.panel.zan().GetPresetFile("")) << "small enough";
    EXPECT_FALSE(bench.panel.zan().GetBMPFile());
  }
  EXPECT_EQ(bench.panel.file("ZANProg.b").value_or("").size(), 4096U);
  EXPECT_EQ(bench.panel.file("zanbank.dev").value_or("").size(), 892U);
  EXPECT_EQ(bench.panel.file("ZAN.bmp"), std::nullopt);
  EXPECT_EQ(bench.panel.file("other"), "kept");
  EXPECT_EQ(bench.panel.boxes(), "");
  EXPECT_TRUE(bench.panel.zan().GetBMPFile());
}

TEST(MemoryFilesOnARealDisk, replaceASequenceAndWriteOverAPreset) {
  SimulatedBench bench(Variant::VisaCom);
  ASSERT_TRUE(bench.panel.zan().AutoConnect());
  zansim::Memory& memory = bench.instrument.mainframe.memory();
  RandomFiles random(8);
  for (const std::size_t old : {0U, 1U, 891U, 892U, 893U, 9999U}) {
    SCOPED_TRACE(old);
    const std::string before = random.file(old);
    bench.panel.putFile("ZANSeq.a", before);
    bench.panel.putFile("zanbank.dev", before);
    memory.store(MemoryFile::Sequence, random.file(500));
    memory.store(MemoryFile::Preset, random.file(892));
    EXPECT_TRUE(bench.panel.zan().GetSeqFile());
    EXPECT_TRUE(bench.panel.zan().GetPresetFile("C:\\temp\\elsewhere.dev"));
    EXPECT_EQ(bench.panel.file("ZANSeq.a"), memory.contents(MemoryFile::Sequence));
    const std::string tail = old > 892 ? before.substr(892) : "";
    EXPECT_EQ(bench.panel.file("zanbank.dev"),
              std::string(memory.contents(MemoryFile::Preset)) + tail);
    EXPECT_EQ(bench.panel.file("elsewhere.dev"), std::nullopt);
  }
}

TEST(MemoryFilesOnARealDisk, whoseFilesCannotBeOpenedFail) {
  SimulatedBench bench(Variant::VisaCom);
  ASSERT_TRUE(bench.panel.zan().AutoConnect());
  const std::filesystem::path temp = bench.panel.driveC().path() / "temp";
  for (const char* name : {"ZANSeq.a", "ZANProgUpload.b", "zanbank.dev"}) {
    std::filesystem::create_directories(temp / name);
  }
  const std::string settings(bench.instrument.mainframe.memory().contents(MemoryFile::System));
  EXPECT_TRUE(bench.panel.zan().GetSeqFile());
  EXPECT_FALSE(bench.panel.zan().SendSysFile()) << "a folder is no file";
  EXPECT_FALSE(bench.panel.zan().GetPresetFile(""));
  bench.panel.putFile("test.dev", "");
  EXPECT_FALSE(bench.panel.zan().SetPresetFile());
  EXPECT_EQ(bench.instrument.mainframe.memory().contents(MemoryFile::System), settings);
  EXPECT_EQ(bench.panel.boxes(), "");
  EXPECT_TRUE(bench.panel.zan().GetSysFile());
  EXPECT_EQ(bench.panel.file("ZANProg.b"), settings) << "the link is in step";
}

TEST(MemoryFilesOnARealDisk, thatAreReadOnlyStayAsTheyAre) {
  if (::geteuid() == 0) {
    GTEST_SKIP() << "permissions do not bind root";
  }
  SimulatedBench bench(Variant::VisaCom);
  ASSERT_TRUE(bench.panel.zan().AutoConnect());
  bench.panel.putFile("zanbank.dev", "old");
  const std::filesystem::path temp = bench.panel.driveC().path() / "temp";
  std::filesystem::permissions(temp / "zanbank.dev", std::filesystem::perms::owner_read);
  EXPECT_FALSE(bench.panel.zan().GetPresetFile(""));
  EXPECT_EQ(bench.panel.file("zanbank.dev"), "old");
}

TEST(MemoryFilesOnARealDisk, whereTheFolderIsAFileEndBeforeTheyAsk) {
  SimulatedBench bench(Variant::VisaCom);
  ASSERT_TRUE(bench.panel.zan().AutoConnect());
  std::string asked;
  bench.instrument.onMessage = [&](std::string_view message, std::string_view) {
    asked.append(message).append(" ");
  };
  (void)bench.panel.driveC().write("temp", "a file");
  EXPECT_TRUE(bench.panel.zan().GetSeqFile());
  EXPECT_TRUE(bench.panel.zan().GetSysFile());
  EXPECT_FALSE(bench.panel.zan().SetPresetFile());
  EXPECT_FALSE(bench.panel.zan().GetBMPFile());
  EXPECT_EQ(asked, "");
  EXPECT_FALSE(bench.panel.zan().GetPresetFile(""));
  EXPECT_EQ(asked, ":MEM:FILE:PRES? ");
}

}  // namespace
}  // namespace lumodevice::end_to_end
