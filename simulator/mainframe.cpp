#include "simulator/mainframe.hpp"

#include <utility>

namespace zansim {

Mainframe::Mainframe(Configuration configuration)
    : configuration_(std::move(configuration)), modules_(configuration_.channels()) {}

void Mainframe::reset() {
  selected_ = 1;
}

}  // namespace zansim
