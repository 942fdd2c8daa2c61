#include <gtest/gtest.h>
#include <map>
#include <set>
#include <utility>

#include "tests/matrix/cell.hpp"

namespace lumodevice::matrix {
namespace {

TEST(Matrix, theShareHasEveryOperationUnderEveryFaultAndBothOverEveryLinkWithBothChoices) {
  using Kind = std::pair<support::Over, Exchanges>;
  std::set<std::pair<std::size_t, std::size_t>> pairs;
  std::map<std::size_t, std::set<Kind>> ofOperation;
  std::map<std::size_t, std::set<Kind>> ofFault;
  for (const Cell& cell : shareOfCells()) {
    pairs.emplace(cell.operation, cell.fault);
    ofOperation[cell.operation].emplace(cell.link, cell.exchanges);
    ofFault[cell.fault].emplace(cell.link, cell.exchanges);
  }
  EXPECT_EQ(pairs.size(), slow::operations().size() * faults().size());
  EXPECT_EQ(allCells().size(), pairs.size() * 6);
  for (const auto& [operation, kinds] : ofOperation) {
    EXPECT_EQ(kinds.size(), 6U) << slow::operations()[operation].name;
  }
  for (const auto& [fault, kinds] : ofFault) {
    EXPECT_EQ(kinds.size(), 6U) << faults()[fault].name;
  }
}

TEST(Matrix, theShareHolds) {
  for (const Cell& cell : shareOfCells()) {
    EXPECT_EQ(run(cell).wrong, "") << cell.name();
  }
}

}  // namespace
}  // namespace lumodevice::matrix
