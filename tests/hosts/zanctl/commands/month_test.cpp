#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <sstream>
#include <vector>

#include "tests/hosts/zanctl/commands/month_bench.hpp"
#include "tests/platform/small_disk.hpp"
#include "tests/platform/temporary_folder.hpp"

namespace zanctl {
namespace {

using namespace std::chrono_literals;
using lumodevice::posix::SmallDisk;
using lumodevice::posix::TemporaryFolder;

/// Half a day in the ordinary run; LUMODEVICE_MONTH_DAYS=30 for the whole month.
Span timeToRun() {
  const char* const asked = std::getenv("LUMODEVICE_MONTH_DAYS");
  return asked == nullptr ? 12h : std::chrono::hours(24) * std::atoi(asked);
}

constexpr auto kEvery = 30s;

/// A line of the log in its fields.
using Fields = std::vector<std::string>;

std::vector<Fields> linesOf(const std::filesystem::path& file) {
  std::vector<Fields> lines;
  std::ifstream stream(file);
  for (std::string line; std::getline(stream, line);) {
    lines.emplace_back(1);
    bool quoted = false;
    for (const char letter : line) {
      quoted = quoted != (letter == '"');
      if (letter == ',' && !quoted) {
        lines.back().emplace_back();
      } else {
        lines.back().back() += letter;
      }
    }
  }
  return lines;
}

/// The rows of all files in the order in which they were written.
std::vector<Fields> rowsIn(const std::filesystem::path& folder, std::size_t& files) {
  std::map<double, std::vector<Fields>> ordered;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    auto lines = linesOf(entry.path());
    EXPECT_GE(lines.size(), 2U) << entry.path();
    EXPECT_EQ(lines.at(0).at(0), "time") << entry.path();
    lines.erase(lines.begin());
    const double begin = std::stod(lines.at(0).at(1));
    EXPECT_TRUE(ordered.emplace(begin, std::move(lines)).second) << entry.path();
  }
  files = ordered.size();
  std::vector<Fields> rows;
  for (auto& [begin, lines] : ordered) {
    rows.insert(rows.end(), lines.begin(), lines.end());
  }
  return rows;
}

/// What happens in the course of the run, each once, at a part of it.
class Course {
 public:
  Course(MonthBench& bench, Span whole) : bench_(bench), whole_(whole) {
    bench_.onPass = [this] { pass(); };
  }
  void at(double part, std::function<void()> act) {
    acts_.emplace(std::chrono::duration_cast<Span>(whole_ * part), std::move(act));
  }
  /// Watt-hours that the load has really drawn from channel 3.
  [[nodiscard]] double drawn() const { return wattHours_; }

 private:
  void pass() {
    const Span now = bench_.links->now();
    if (now >= sampled_ + 10s) {
      const double watts = bench_.links->instrument().mainframe.channel(3, now).terminals().watts();
      wattHours_ +=
          (watts_ + watts) / 2 * std::chrono::duration<double>(now - sampled_).count() / 3600;
      sampled_ = now;
      watts_ = watts;
    }
    while (!acts_.empty() && acts_.begin()->first <= now) {
      const auto act = acts_.begin()->second;
      acts_.erase(acts_.begin());
      act();
    }
  }

  MonthBench& bench_;
  Span whole_;
  std::multimap<Span, std::function<void()>> acts_;
  Span sampled_{0};
  double watts_ = 0;
  double wattHours_ = 0;
};

TEST(Month, hasEveryRowWhateverHappens) {
  const TemporaryFolder folder;
  const SmallDisk disk(folder.path(), 64 << 20);
  zansim::Configuration configuration;
  configuration.setSource("3=12.6,0.05,2000");
  MonthBench bench(configuration);
  const Span whole = timeToRun();
  Course course(bench, whole);

  // The load is on from the beginning.
  bench.links->tell(":CHAN 3;:CURR:STAT:L1 1;:LOAD ON\n");
  for (const char* fault : {"silent every=997", "late=3000 every=1511", "garble every=1201",
                            "double every=1709", "cut=2 every=1999"}) {
    bench.links->instrument().faults.add(fault);
  }
  course.at(0.10, [&] { bench.date.step(2500ms); });
  course.at(0.30, [&] { bench.date.step(-1h); });
  course.at(0.35, [&] { bench.date.step(1h); });
  course.at(0.50, [&] { bench.date.setUtcOffset(120); });
  if (disk.mounted()) {
    course.at(0.40, [&] { disk.fill("rest"); });
    course.at(0.45, [&] { std::filesystem::remove(folder.path() / "rest"); });
  }
  for (const double part : {0.15, 0.20, 0.60, 0.80}) {
    course.at(part, [&] { bench.links->pullOut(true); });
    course.at(part + 0.004, [&] { bench.links->pullOut(false); });
  }

  LogOptions options;
  options.file = (folder.path() / "bench.csv").string();
  options.channel = 3;
  options.every = static_cast<int>(std::chrono::milliseconds(kEvery).count());
  options.turning = {.bytes = 100'000, .daily = true};
  options.limits.seconds = std::chrono::duration<double>(whole).count();
  EXPECT_EQ(logReadings(*bench.station, options), kDone) << bench.errors.text();

  std::size_t files = 0;
  const std::vector<Fields> rows = rowsIn(folder.path(), files);
  EXPECT_GE(files, static_cast<std::size_t>(whole / 24h) + 2);
  std::size_t readings = 0;
  std::size_t missed = 0;
  std::size_t whole_rows = 0;
  std::multiset<std::string> events;
  double elapsed = 0;
  std::string time;
  double energy = 0;
  for (const Fields& row : rows) {
    ASSERT_EQ(row.size(), 10U) << testing::PrintToString(row);
    const double at = std::stod(row[1]);
    EXPECT_GE(at, elapsed) << testing::PrintToString(row);
    elapsed = at;
    if (!row[8].empty()) {
      events.insert(row[8]);
      missed += row[8] == "gap" ? std::stoul(row[9]) : 0;
      time = row[8] == "clock stepped" || row[8] == "utc offset" ? "" : time;
    } else {
      ++readings;
      whole_rows += std::none_of(row.begin() + 3, row.begin() + 8,
                                 [](const std::string& field) { return field.empty(); });
      EXPECT_GT(row[0], time) << testing::PrintToString(row);
      time = row[0];
      EXPECT_GE(std::stod(row[7]), energy);
      energy = std::stod(row[7]);
      // What a fault garbles is left out, not passed off as a reading.
      if (!row[3].empty()) {
        EXPECT_NEAR(std::stod(row[3]), 10, 3) << testing::PrintToString(row);
      }
    }
  }
  EXPECT_EQ(readings + missed, static_cast<std::size_t>(whole / Span(kEvery)));
  EXPECT_GT(whole_rows, readings * 98 / 100);
  EXPECT_EQ(events.count("link lost"), 4U);
  EXPECT_EQ(events.count("link regained"), 4U);
  EXPECT_EQ(events.count("clock stepped"), 3U);
  EXPECT_EQ(events.count("utc offset"), 1U);
  EXPECT_EQ(events.count("begin"), 1U);
  EXPECT_EQ(events.count("end"), 1U);
  EXPECT_NEAR(energy, course.drawn(), course.drawn() * 0.001);
}

}  // namespace
}  // namespace zanctl
