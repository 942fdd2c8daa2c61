#include <chrono>
#include <cmath>
#include <gtest/gtest.h>
#include <random>
#include <string>

#include "simulator/commands/command_tables.hpp"
#include "tests/simulator/load_bench.hpp"

using namespace std::chrono_literals;
using zansim::Row;
using zansim::tests::LoadBench;

TEST(Operator, whateverIsSentTheInstrumentStaysSound) {
  std::mt19937 random(99);
  const auto below = [&](std::size_t count) {
    return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
  };
  std::vector<const Row*> rows;
  for (const auto table : zansim::commandTables()) {
    for (const Row& row : table) {
      rows.push_back(&row);
    }
  }
  const char* const values[] = {"",      " MIN", " MAX", " DEF", " ON", " OFF", " LOW",  " HIGH",
                                " 0",    " 1",   " 2.5", " 10",  " -3", " 1e9", " CV",   " CRDL",
                                " CCDH", " CCH", " CRL", " x",   " ''", " 1,2", " 0.03", " 1e-300"};
  LoadBench bench("2021L,2021R,2030,2040,2041,2050", {12.6, 0.05, 5, 0.01, 0.05});
  for (int round = 0; round < 20000; ++round) {
    const std::string header(rows[below(rows.size())]->header);
    const std::string answer =
        bench.ask(header.substr(0, header.find('[')) + (below(3) == 0 ? "?" : "") +
                  values[below(std::size(values))]);
    ASSERT_TRUE(answer.size() < 79U || answer.front() == '#') << answer;
    if (below(4) == 0) {
      bench.pass(std::chrono::nanoseconds(static_cast<std::int64_t>(
          std::pow(10, std::uniform_real_distribution<double>(0, 12)(random)))));
    }
    const std::size_t number = bench.mainframe().selectedChannel();
    const zansim::Channel& channel = bench.channel(number);
    const zansim::Terminals found = channel.terminals();
    ASSERT_TRUE(std::isfinite(found.volts) && std::isfinite(found.amps)) << round;
    ASSERT_GE(found.amps, 0) << round;
    ASSERT_GE(found.volts, -1e-9) << round;
    ASSERT_LE(found.amps, channel.module().highAmps) << round;
    ASSERT_TRUE(channel.isOn() || found.amps == 0) << round;
    ASSERT_TRUE(!channel.isOn() || channel.trip() == zansim::Trip::None) << round;
  }
}
