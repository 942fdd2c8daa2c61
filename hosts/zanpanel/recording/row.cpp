#include "hosts/zanpanel/recording/row.hpp"

#include <utility>

#include "hosts/zanpanel/readings/answers.hpp"

namespace zanpanel {

std::optional<Row> RowBuilder::take(std::string_view query, std::string_view answer) {
  if (query == ":LOAD?") {
    row_.load = loadStateIn(answer);
    return cut();
  }
  std::optional<double> Row::*const field = query == ":FETC:VOLT?"   ? &Row::volts
                                            : query == ":FETC:CURR?" ? &Row::amperes
                                            : query == ":FETC:POW?"  ? &Row::watts
                                                                     : nullptr;
  if (field == nullptr) {
    return std::nullopt;
  }
  // The turn begins with the voltage; what is there then is of the one before.
  std::optional<Row> before;
  if (field == &Row::volts || row_.*field) {
    before = cut();
  }
  row_.*field = numberIn(answer);
  return before;
}

std::optional<Row> RowBuilder::cut() {
  const Row row = std::exchange(row_, Row());
  return row.empty() ? std::nullopt : std::optional(row);
}

}  // namespace zanpanel
