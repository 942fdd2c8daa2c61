#pragma once

#include <span>

#include "tests/matrix/matrix_bench.hpp"

namespace lumodevice::matrix {

/// What goes wrong with the link from the beginning of an operation on.
struct Fault {
  const char* name;
  void (*begin)(MatrixBench& bench);
  /// Answers may come in other bytes than the instrument sent: nobody can tell whose they are.
  bool damages = false;
  /// The link is still gone when the operation is over.
  bool stays = false;
};
[[nodiscard]] std::span<const Fault> faults();

}  // namespace lumodevice::matrix
