#pragma once

#include <utility>
#include <windows.h>

namespace lumodevice::windows {

/// An open handle of the kernel, closed on destruction.
class Handle {
 public:
  Handle() = default;
  /// Both values that stand for none are taken: calls of Windows differ in which one they give.
  explicit Handle(HANDLE handle) noexcept
      : handle_(handle == INVALID_HANDLE_VALUE ? nullptr : handle) {}
  Handle(Handle&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  Handle& operator=(Handle&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  ~Handle() { reset(); }

  [[nodiscard]] HANDLE get() const noexcept { return handle_; }
  explicit operator bool() const noexcept { return handle_ != nullptr; }
  void reset() noexcept {
    if (handle_ != nullptr) ::CloseHandle(std::exchange(handle_, nullptr));
  }

 private:
  HANDLE handle_ = nullptr;
};

}  // namespace lumodevice::windows
