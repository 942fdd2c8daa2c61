#pragma once

#include <unknwn.h>

namespace lumodevice::automation {

class ControlObject;

/// The unknown of an object that may be a part of another one (a container's extender).
[[nodiscard]] IUnknown& wholeOf(ControlObject& object);

/// The answer of an object that has one interface alone.
template <typename Interface>
HRESULT queryOnly(Interface& object, REFIID iid, void** out) {
  if (out == nullptr) {
    return E_POINTER;
  }
  const bool known = iid == IID_IUnknown || iid == __uuidof(Interface);
  *out = known ? &object : nullptr;
  if (known) {
    object.AddRef();
  }
  return known ? S_OK : E_NOINTERFACE;
}

/// Some interfaces of the control: what derives from it has their functions, and is a member of
/// ControlObject. Asking for others and counting are the business of the whole.
///
///     class ClassInfo : public Part<IProvideClassInfo2> {
///      public:
///       using Part::Part;
///       HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) override;
///       HRESULT STDMETHODCALLTYPE GetGUID(DWORD kind, GUID* id) override;
///     };
template <typename... Interfaces>
class Part : public Interfaces... {
 public:
  explicit Part(ControlObject& object) : object_(&object) {}
  Part(const Part&) = delete;
  Part& operator=(const Part&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
    return wholeOf(*object_).QueryInterface(iid, out);
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return wholeOf(*object_).AddRef(); }
  ULONG STDMETHODCALLTYPE Release() override { return wholeOf(*object_).Release(); }

 protected:
  ~Part() = default;
  [[nodiscard]] ControlObject& object() const { return *object_; }

 private:
  ControlObject* object_;
};

}  // namespace lumodevice::automation
