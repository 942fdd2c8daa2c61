#include <algorithm>
#include <csignal>
#include <gtest/gtest.h>
#include <sstream>
#include <sys/resource.h>

#include "hosts/zanpanel/recording/recorder.hpp"
#include "tests/hosts/zanpanel/simulated_load.hpp"

namespace zanpanel {
namespace {

using namespace std::chrono_literals;

constexpr lumodevice::io::LocalTime kTime{.year = 2031,
                                          .month = 3,
                                          .day = 7,
                                          .hour = 11,
                                          .minute = 59,
                                          .second = 55,
                                          .millisecond = 250,
                                          .utcOffset = -90};

TEST(CsvRecording, isWrittenThroughAtEveryRow) {
  const lumodevice::posix::TemporaryFolder folder;
  CsvRecording recording(folder.path() / "a.csv", {{"Instrument", "ZAN"}});
  recording.row(kTime, "CH3-2040", {.volts = 11.5949, .amperes = 20, .load = true}, 0.0123, 0.142);
  EXPECT_EQ(folder.read("a.csv"),
            "# LumoDevice recording\n"
            "# Instrument: ZAN\n"
            "time,channel,voltage_V,current_A,power_W,load,charge_Ah,energy_Wh,event,note\n"
            "2031-03-07T11:59:55.250-01:30,CH3-2040,11.5949,20,,1,0.012300,0.142000,,\n");
}

TEST(CsvRecording, quotesWhatANoteHolds) {
  const lumodevice::posix::TemporaryFolder folder;
  CsvRecording recording(folder.path() / "a.csv", {});
  recording.event(kTime, "CH1", "mark", "cell \"2\", warm\nand dry");
  EXPECT_TRUE(folder.read("a.csv").ends_with(",CH1,,,,,,,mark,\"cell \"\"2\"\", warm and dry\"\n"));
}

TEST(CsvRecording, neverTakesTheFileOfAnother) {
  const lumodevice::posix::TemporaryFolder folder;
  folder.write("a.csv", "kept");
  EXPECT_THROW(CsvRecording(folder.path() / "a.csv", {}), RecordingFault);
  EXPECT_EQ(folder.read("a.csv"), "kept");
}

TEST(CsvRecording, saysAtOnceThatTheDiskIsFull) {
  EXPECT_THROW(CsvRecording("/dev/full", {}), RecordingFault);
  EXPECT_THROW(CsvRecording("/nowhere/at/all.csv", {}), RecordingFault);
}

/// Files cannot grow beyond that while there is one: what a full disk is to a program.
class SmallDisk {
 public:
  explicit SmallDisk(rlim_t bytes) {
    (void)::getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit small{.rlim_cur = bytes, .rlim_max = before_.rlim_max};
    (void)::setrlimit(RLIMIT_FSIZE, &small);
    handler_ = std::signal(SIGXFSZ, SIG_IGN);
  }
  ~SmallDisk() {
    (void)::setrlimit(RLIMIT_FSIZE, &before_);
    (void)std::signal(SIGXFSZ, handler_);
  }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;

 private:
  rlimit before_{};
  void (*handler_)(int) = SIG_DFL;
};

TEST(CsvRecording, keepsTheRowsSoFarWholeWhenTheDiskIsFull) {
  const lumodevice::posix::TemporaryFolder folder;
  CsvRecording recording(folder.path() / "a.csv", {});
  const auto fill = [&] {
    const SmallDisk disk(1000);
    for (int i = 0; i < 100; ++i) {
      recording.row(kTime, "CH3-2040", {.volts = 11.5949}, 0, 0);
    }
  };
  EXPECT_THROW(fill(), RecordingFault);
  const std::string text = folder.read("a.csv");
  EXPECT_GT(recording.rows(), 5U);
  EXPECT_EQ(static_cast<std::uint64_t>(std::ranges::count(text, '\n')), recording.rows() + 2);
  EXPECT_TRUE(text.ends_with(",,\n"));
  EXPECT_THROW(recording.event(kTime, "CH3-2040", "mark", ""), RecordingFault);
}

TEST(RowBuilder, leavesEmptyWhatDidNotCome) {
  RowBuilder rows;
  EXPECT_FALSE(rows.take(":FETC:VOLT?", "12"));
  EXPECT_FALSE(rows.take(":FETC:POW?", "garbled"));
  const auto row = rows.take(":LOAD?", "1");
  ASSERT_TRUE(row);
  EXPECT_EQ(row->volts, 12.0);
  EXPECT_FALSE(row->amperes);
  EXPECT_FALSE(row->watts);
  EXPECT_EQ(row->load, true);
}

TEST(RowBuilder, beginsANewRowWithTheNextTurn) {
  RowBuilder rows;
  (void)rows.take(":FETC:VOLT?", "12");
  const auto row = rows.take(":FETC:VOLT?", "13");
  ASSERT_TRUE(row);
  EXPECT_EQ(row->volts, 12.0);
  EXPECT_TRUE(rows.begun());
}

class Recorded : public testing::Test {
 protected:
  Recorded() {
    bench.connect();
    bench.choose(2);
    recorder.start(file);
  }
  [[nodiscard]] std::vector<std::string> lines() const {
    std::istringstream text(bench.folder.read("a.csv"));
    std::vector<std::string> all;
    for (std::string line; std::getline(text, line);) {
      all.push_back(line);
    }
    return all;
  }
  [[nodiscard]] std::string event(std::string_view what) const {
    for (const std::string& line : lines()) {
      if (line.find(std::string(",,,,,,,").append(what).append(",")) != std::string::npos) {
        return line;
      }
    }
    return {};
  }

  SimulatedLoad bench;
  std::filesystem::path file = bench.folder.path() / "a.csv";
  Recorder recorder{bench.load, bench.monitor, bench.ready.wallClock};
};

TEST_F(Recorded, tellsInItsHeadWhatWasMeasuredAndHow) {
  const auto head = bench.folder.read("a.csv");
  EXPECT_NE(head.find("# Instrument: Ostbrook Instruments,"), std::string::npos) << head;
  EXPECT_NE(head.find("# Channel: CH3-2040\n"), std::string::npos);
  EXPECT_NE(head.find("# Mode: CC-High\n"), std::string::npos);
  EXPECT_NE(head.find("# A Value(A): "), std::string::npos) << head;
  EXPECT_NE(head.find("# OCP: off\n"), std::string::npos) << head;
}

TEST_F(Recorded, hasARowForEachTurnAlsoWhileTheLoadIsOff) {
  bench.run(10s);
  EXPECT_GE(recorder.rows(), 9U);
  EXPECT_LE(recorder.rows(), 10U);
  EXPECT_EQ(lines().back().substr(lines().back().find(',')).substr(0, 12), ",CH3-2040,12");
}

TEST_F(Recorded, hasTheMarksWithTheirNotes) {
  bench.run(3s);
  recorder.note("second cell");
  EXPECT_TRUE(event("mark").ends_with("mark,second cell"));
}

TEST_F(Recorded, goesOnAfterALostLink) {
  bench.run(5s);
  bench.cable.unplugged = true;
  bench.run(20s);
  EXPECT_NE(event("link lost"), "");
  const auto before = recorder.rows();
  bench.cable.unplugged = false;
  bench.run(10s);
  EXPECT_NE(event("link back"), "");
  EXPECT_GT(recorder.rows(), before + 4);
}

TEST_F(Recorded, stops) {
  bench.run(5s);
  recorder.stop();
  const auto rows = lines().size();
  bench.run(5s);
  EXPECT_EQ(lines().size(), rows);
  EXPECT_FALSE(recorder.recording());
}

}  // namespace
}  // namespace zanpanel
