#pragma once

#include <string>
#include <vector>

#include "tests/matrix/faults.hpp"
#include "tests/slow/operations.hpp"

namespace lumodevice::matrix {

/// Queries that follow an operation.
inline constexpr const char* kFurtherQueries[] = {":FETC:VOLT?", "*IDN?", ":FETC:CURR?", ":CHAN?",
                                                  ":FETC:POW?"};

/// One operation under one fault over one link, with one choice of exchanges.
struct Cell {
  std::size_t operation = 0;
  std::size_t fault = 0;
  support::Over link = support::Over::VisaLibrary;
  Exchanges exchanges = Exchanges::InTurn;

  /// "send a query, late, serial, in turn"
  [[nodiscard]] std::string name() const;
};

/// All that there are.
[[nodiscard]] std::vector<Cell> allCells();
/// Every operation under every fault once, over the links and with both choices by turns.
[[nodiscard]] std::vector<Cell> shareOfCells();

/// What came of a cell.
struct Outcome {
  std::string wrong;           ///< what does not hold; empty where all does
  bool connected = false;      ///< when the fault was over
  std::size_t ownAnswers = 0;  ///< to the further queries, where connected
};
[[nodiscard]] Outcome run(const Cell& cell);

}  // namespace lumodevice::matrix
