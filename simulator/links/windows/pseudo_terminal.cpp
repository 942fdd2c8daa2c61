#include "simulator/links/pseudo_terminal.hpp"

#include <stdexcept>

namespace zansim {

PseudoTerminal::PseudoTerminal(std::string /*link*/) {
  throw std::invalid_argument("Windows has no pseudo-terminals; listen on a socket (--tcp)");
}

PseudoTerminal::~PseudoTerminal() = default;

bool PseudoTerminal::isAtSpeed(std::int32_t /*baud*/) const {
  return false;
}

bool isTerminalSpeed(std::int32_t /*baud*/) {
  return true;
}

}  // namespace zansim
