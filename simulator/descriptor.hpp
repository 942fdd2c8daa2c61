#pragma once

#ifdef _WIN32
// Before <windows.h>, which else brings the older of the two in.
#include <windows.h>
#include <winsock2.h>
#else
#include <unistd.h>
#endif
#include <utility>

namespace zansim {

/// Owns a file descriptor; on Windows, where sockets have numbers of their own, a socket.
class Descriptor {
 public:
#ifdef _WIN32
  using Number = SOCKET;
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
      ::closesocket(std::exchange(number_, kNone));
#else
      ::close(std::exchange(number_, kNone));
#endif
    }
  }

 private:
  Number number_ = kNone;
};

}  // namespace zansim
