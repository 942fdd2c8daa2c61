#include "hosts/zanpanel/windows/program.hpp"

int main(int count, char** words) {
  return zanpanel::runProgram(count, words);
}
