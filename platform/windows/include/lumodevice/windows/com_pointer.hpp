#pragma once

#include <unknwn.h>
#include <utility>

namespace lumodevice::windows {

/// Keeps one reference of an object of COM.
///
///     lumodevice::windows::ComPointer<IDispatch> load;
///     ::CoCreateInstance(id, nullptr, CLSCTX_ALL, IID_IDispatch, load.untypedOut());
template <typename Interface>
class ComPointer {
 public:
  ComPointer() = default;
  /// Takes the reference over.
  explicit ComPointer(Interface* taken) noexcept : object_(taken) {}
  ComPointer(const ComPointer& other) noexcept : object_(other.object_) {
    if (object_ != nullptr) object_->AddRef();
  }
  ComPointer(ComPointer&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  ComPointer& operator=(ComPointer other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~ComPointer() {
    if (object_ != nullptr) object_->Release();
  }

  /// With a reference of its own.
  [[nodiscard]] static ComPointer of(Interface* object) noexcept {
    if (object != nullptr) object->AddRef();
    return ComPointer(object);
  }

  [[nodiscard]] Interface* get() const noexcept { return object_; }
  Interface* operator->() const noexcept { return object_; }
  explicit operator bool() const noexcept { return object_ != nullptr; }
  /// Where a call puts a reference that is the caller's.
  [[nodiscard]] Interface** out() noexcept {
    *this = {};
    return &object_;
  }
  [[nodiscard]] void** untypedOut() noexcept { return reinterpret_cast<void**>(out()); }
  [[nodiscard]] Interface* release() noexcept { return std::exchange(object_, nullptr); }

 private:
  Interface* object_ = nullptr;
};

}  // namespace lumodevice::windows
