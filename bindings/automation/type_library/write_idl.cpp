/// Writes the interface of the control into the file that is named: what the type library is
/// compiled from.
#include <fstream>
#include <iostream>

#include "bindings/automation/type_library/idl.hpp"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: write_idl FILE\n";
    return 2;
  }
  std::ofstream file(argv[1], std::ios::binary);
  file << lumodevice::automation::interfaceDefinition();
  file.close();
  if (!file) {
    std::cerr << "write_idl: cannot write " << argv[1] << '\n';
    return 1;
  }
  return 0;
}
