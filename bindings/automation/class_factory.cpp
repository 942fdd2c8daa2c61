#include "bindings/automation/class_factory.hpp"

#include "bindings/automation/control_object.hpp"
#include "bindings/automation/module.hpp"
#include "bindings/automation/part.hpp"

namespace lumodevice::automation {

ClassFactory& ClassFactory::only() {
  static ClassFactory factory;
  return factory;
}

HRESULT ClassFactory::QueryInterface(REFIID iid, void** out) {
  return queryOnly<IClassFactory>(*this, iid, out);
}

// Who holds the factory holds the file.

ULONG ClassFactory::AddRef() {
  module::hold();
  return 2;
}

ULONG ClassFactory::Release() {
  module::release();
  return 1;
}

HRESULT ClassFactory::CreateInstance(IUnknown* outer, REFIID iid, void** out) {
  return out == nullptr ? E_POINTER : ControlObject::create(outer, iid, out);
}

HRESULT ClassFactory::LockServer(BOOL lock) {
  lock != FALSE ? module::hold() : module::release();
  return S_OK;
}

}  // namespace lumodevice::automation
