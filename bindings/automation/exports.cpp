/// What the system calls in the file: see exports.def.
#include <cwchar>
#include <olectl.h>
#include <windows.h>

#include "bindings/automation/class_factory.hpp"
#include "bindings/automation/guid.hpp"
#include "bindings/automation/identity.hpp"
#include "bindings/automation/module.hpp"
#include "bindings/automation/registration.hpp"

using namespace lumodevice::automation;

STDAPI DllGetClassObject(REFCLSID id, REFIID iid, void** out) {
  if (out == nullptr) {
    return E_POINTER;
  }
  *out = nullptr;
  return id == guidOf(kClassId) ? ClassFactory::only().QueryInterface(iid, out)
                                : CLASS_E_CLASSNOTAVAILABLE;
}

STDAPI DllCanUnloadNow() {
  return module::isHeld() ? S_FALSE : S_OK;
}

STDAPI DllRegisterServer() {
  return registerControl(Scope::Machine);
}

STDAPI DllUnregisterServer() {
  return unregisterControl(Scope::Machine);
}

/// "user": for the user who asks; nothing: for all.
STDAPI DllInstall(BOOL install, LPCWSTR for_) {
  const bool named = for_ != nullptr && *for_ != L'\0';
  if (named && _wcsicmp(for_, L"user") != 0) {
    return E_INVALIDARG;
  }
  const Scope scope = named ? Scope::User : Scope::Machine;
  return install != FALSE ? registerControl(scope) : unregisterControl(scope);
}
