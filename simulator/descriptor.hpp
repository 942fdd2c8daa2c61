#pragma once

#include <cstdint>
#ifndef _WIN32
#include <unistd.h>
#endif
#include <utility>

namespace zansim {

#ifdef _WIN32
void closeSocket(std::uintptr_t socket);
#endif

/// Owns a file descriptor; on Windows, where sockets have numbers of their own, a socket.
class Descriptor {
 public:
#ifdef _WIN32
  using Number = std::uintptr_t;
#else
  using Number = int;
#endif
  static constexpr Number kNone = static_cast<Number>(-1);

  Descriptor() = default;
  explicit Descriptor(Number number) : number_(number) {}
  ~Descriptor() {
    reset();
  }
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, kNone)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    reset();
    number_ = std::exchange(other.number_, kNone);
    return *this;
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  [[nodiscard]] Number get() const {
    return number_;
  }
  [[nodiscard]] bool isOpen() const {
    return number_ != kNone;
  }
  void reset() {
    if (isOpen()) {
#ifdef _WIN32
      closeSocket(std::exchange(number_, kNone));
#else
      ::close(std::exchange(number_, kNone));
#endif
    }
  }

 private:
  Number number_ = kNone;
};

}  // namespace zansim
