#include "tests/capture/counted_memory.hpp"

#include <algorithm>
#include <cstdlib>
#include <new>
#include <utility>

namespace {

std::size_t largest = 0;

}  // namespace

void* operator new(std::size_t size) {
  largest = std::max(largest, size);
  if (void* const memory = std::malloc(size == 0 ? 1 : size)) {
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

std::size_t lumodevice::capture::largestAllocation() {
  return std::exchange(largest, 0);
}
