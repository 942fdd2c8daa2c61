// Runs all cells, or those whose names contain the argument, and prints those that do not hold.
// All of them fill the table in docs/testing.md. Exit status 1 where one does not hold.

#include <array>
#include <chrono>
#include <iostream>
#include <iterator>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "tests/matrix/cell.hpp"
#include "tests/slow/manual_table.hpp"

namespace {

using namespace lumodevice;
using matrix::Cell;
using matrix::Outcome;

struct Count {
  std::size_t held = 0;
  std::size_t all = 0;
  void add(std::size_t more, std::size_t of) {
    held += more;
    all += of;
  }
  [[nodiscard]] std::string text() const {
    return held == all ? std::to_string(all) : std::to_string(held) + "/" + std::to_string(all);
  }
};

/// Cells that hold by operation and fault, and of the further queries by fault those that got their
/// own answers.
class Table {
 public:
  void add(const Cell& cell, const Outcome& outcome) {
    cells_[cell.operation][cell.fault].add(outcome.wrong.empty() ? 1 : 0, 1);
    all_.add(outcome.wrong.empty() ? 1 : 0, 1);
    if (outcome.connected) {
      (cell.exchanges == Exchanges::InTurn ? inTurn_ : interleaved_)[cell.fault].add(
          outcome.ownAnswers, std::size(matrix::kFurtherQueries));
    }
  }

  [[nodiscard]] const Count& all() const { return all_; }

  [[nodiscard]] std::string text() const {
    std::ostringstream text;
    text << "| " << all_.text() << " |";
    for (const matrix::Fault& fault : matrix::faults()) {
      text << ' ' << fault.name << " |";
    }
    text << "\n|---|";
    for (std::size_t i = 0; i < matrix::faults().size(); ++i) {
      text << "---|";
    }
    text << '\n';
    for (std::size_t row = 0; row < cells_.size(); ++row) {
      addRow(text, slow::operations()[row].name, cells_[row]);
    }
    addRow(text, "*further queries, in turn*", inTurn_);
    addRow(text, "*further queries, interleaved*", interleaved_);
    return text.str();
  }

 private:
  using Row = std::vector<Count>;

  static void addRow(std::ostream& text, std::string_view name, const Row& row) {
    text << "| " << name << " |";
    for (const Count& count : row) {
      text << ' ' << count.text() << " |";
    }
    text << '\n';
  }

  const Row empty_{matrix::faults().size()};
  Count all_;
  std::vector<Row> cells_{slow::operations().size(), empty_};
  Row inTurn_ = empty_;
  Row interleaved_ = empty_;
};

}  // namespace

int main(int count, char** arguments) {
  const std::string_view part = count > 1 ? arguments[1] : "";
  Table table;
  for (const Cell& cell : matrix::allCells()) {
    const std::string name = cell.name();
    if (name.find(part) == std::string::npos) {
      continue;
    }
    const Outcome outcome = matrix::run(cell);
    table.add(cell, outcome);
    if (!outcome.wrong.empty()) {
      std::cout << name << ": " << outcome.wrong << std::endl;
    }
  }
  std::cout << table.all().held << " of " << table.all().all << " cells hold\n";
  const bool written = !part.empty() || slow::manualHas("matrix", table.text());
  if (!written) {
    std::cout << "docs/testing.md has another table:\n" << table.text();
  }
  return table.all().held == table.all().all && written ? 0 : 1;
}
