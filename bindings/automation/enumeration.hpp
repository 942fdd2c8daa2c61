#pragma once

#include <algorithm>
#include <cstddef>
#include <new>
#include <unknwn.h>
#include <utility>
#include <vector>

#include "bindings/automation/part.hpp"

namespace lumodevice::automation {

inline IUnknown* referenceIn(IUnknown* item) {
  return item;
}
inline IUnknown* referenceIn(const CONNECTDATA& item) {
  return item.pUnk;
}

/// A list that others walk through, of items each of which holds a reference.
template <typename Interface, typename Item>
class Enumeration final : public Interface {
 public:
  /// With one reference, that of the caller.
  static Interface* of(std::vector<Item> items, std::size_t place = 0) {
    return new Enumeration(std::move(items), place);
  }
  Enumeration(const Enumeration&) = delete;
  Enumeration& operator=(const Enumeration&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
    return queryOnly<Interface>(*this, iid, out);
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) {
      delete this;
    }
    return left;
  }

  HRESULT STDMETHODCALLTYPE Next(ULONG wanted, Item* items, ULONG* fetched) override {
    if (items == nullptr || (fetched == nullptr && wanted != 1)) {
      return E_POINTER;
    }
    const auto count = static_cast<ULONG>(std::min<std::size_t>(wanted, items_.size() - place_));
    for (ULONG i = 0; i < count; ++i) {
      items[i] = items_[place_++];
      referenceIn(items[i])->AddRef();
    }
    if (fetched != nullptr) {
      *fetched = count;
    }
    return count == wanted ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
    const bool enough = count <= items_.size() - place_;
    place_ = enough ? place_ + count : items_.size();
    return enough ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Reset() override {
    place_ = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Clone(Interface** copy) override {
    if (copy == nullptr) {
      return E_POINTER;
    }
    try {
      *copy = of(items_, place_);
      return S_OK;
    } catch (const std::bad_alloc&) {
      *copy = nullptr;
      return E_OUTOFMEMORY;
    }
  }

 private:
  Enumeration(std::vector<Item> items, std::size_t place)
      : items_(std::move(items)), place_(place) {
    for (const Item& item : items_) {
      referenceIn(item)->AddRef();
    }
  }
  ~Enumeration() {
    for (const Item& item : items_) {
      referenceIn(item)->Release();
    }
  }

  ULONG references_ = 1;
  std::vector<Item> items_;
  std::size_t place_;
};

}  // namespace lumodevice::automation
