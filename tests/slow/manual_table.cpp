#include "tests/slow/manual_table.hpp"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace lumodevice::slow {

bool manualHas(const std::string& name, const std::string& table) {
  std::ifstream file(LUMODEVICE_TESTING_MANUAL);
  std::string text(std::istreambuf_iterator<char>(file), {});
  const std::size_t opening = text.find("<!-- " + name + ":");
  const std::size_t begin = text.find('\n', opening) + 1;
  const std::size_t end = text.find("<!-- end of " + name + " -->");
  if (opening == std::string::npos || end == std::string::npos || end < begin) {
    throw std::logic_error("the manual has no place for the table " + name);
  }
  const std::string whole = "\n" + table + "\n";
  if (text.compare(begin, end - begin, whole) == 0) {
    return true;
  }
  if (std::getenv("LUMODEVICE_WRITE_TABLES") == nullptr) {
    return false;
  }
  std::ofstream(LUMODEVICE_TESTING_MANUAL) << text.replace(begin, end - begin, whole);
  return true;
}

}  // namespace lumodevice::slow
