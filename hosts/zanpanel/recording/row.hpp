#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zanpanel {

/// What came in one turn of the auto query. Each value is the answer to its own query; one that did
/// not come is left empty.
struct Row {
  std::optional<double> volts = std::nullopt;
  std::optional<double> amperes = std::nullopt;
  std::optional<double> watts = std::nullopt;
  std::optional<bool> load = std::nullopt;

  [[nodiscard]] bool empty() const { return !volts && !amperes && !watts && !load; }
};

/// Puts the answers of the auto query together, a turn a row.
class RowBuilder {
 public:
  /// Takes an answer; a row that is complete with it, or that it can no longer belong to.
  [[nodiscard]] std::optional<Row> take(std::string_view query, std::string_view answer);
  /// Something is there of a row.
  [[nodiscard]] bool begun() const { return !row_.empty(); }
  /// What is there of a row that will not be completed.
  [[nodiscard]] std::optional<Row> cut();

 private:
  Row row_;
};

}  // namespace zanpanel
