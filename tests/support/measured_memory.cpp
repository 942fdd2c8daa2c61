#include "tests/support/measured_memory.hpp"

#include <algorithm>
#include <cstdlib>
#include <new>
#include <utility>

namespace {

std::size_t largestRequest = 0;

}  // namespace

namespace lumodevice::support {

std::size_t takeLargestRequest() {
  return std::exchange(largestRequest, 0);
}

}  // namespace lumodevice::support

void* operator new(std::size_t size) {
  largestRequest = std::max(largestRequest, size);
  if (void* memory = std::malloc(std::max(size, std::size_t{1}))) {
    return memory;
  }
  throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
  std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept {
  std::free(memory);
}
