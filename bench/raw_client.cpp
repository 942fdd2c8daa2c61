// The least that asks an instrument on a socket who it is: what zanctl's time stands beside.
//
// Usage: raw_client PORT QUERY

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "bench/raw_socket.hpp"

int main(int count, char** words) {
  if (count != 3) {
    return 2;
  }
  const bench::RawSocket socket(static_cast<std::uint16_t>(std::atoi(words[1])));
  const std::string answer = socket.ask(std::string(words[2]) + "\n");
  std::fputs(answer.c_str(), stdout);
  return answer.empty() ? 1 : 0;
}
