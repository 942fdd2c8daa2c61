#include "tests/simulator/load_bench.hpp"

#include <gtest/gtest.h>

namespace zansim::tests {

void LoadBench::send(std::string_view message) {
  EXPECT_EQ(ask(message), "") << message;
  EXPECT_EQ(error(), 0) << message;
}

}  // namespace zansim::tests
