#pragma once

#include <string>

namespace lumodevice::slow {

/// Compares a table with the one that docs/testing.md has between "<!-- NAME: ... -->" and
/// "<!-- end of NAME -->". With LUMODEVICE_WRITE_TABLES in the environment it is written there
/// instead. True where the manual then has it.
[[nodiscard]] bool manualHas(const std::string& name, const std::string& table);

}  // namespace lumodevice::slow
