#include "bindings/automation/class_info.hpp"

#include "bindings/automation/control_object.hpp"
#include "bindings/automation/guid.hpp"
#include "bindings/automation/identity.hpp"
#include "bindings/automation/module.hpp"

namespace lumodevice::automation {

HRESULT typeInformation(REFGUID id, ITypeInfo** info) {
  *info = nullptr;
  ITypeLib* library = nullptr;
  HRESULT result = LoadTypeLibEx(module::path().c_str(), REGKIND_NONE, &library);
  if (SUCCEEDED(result)) {
    result = library->GetTypeInfoOfGuid(id, info);
    library->Release();
  }
  return result;
}

HRESULT ClassInfo::GetClassInfo(ITypeInfo** info) {
  return object().entered(
      [&] { return info == nullptr ? E_POINTER : typeInformation(guidOf(kClassId), info); });
}

HRESULT ClassInfo::GetGUID(DWORD kind, GUID* id) {
  if (id == nullptr) {
    return E_POINTER;
  }
  const bool known = kind == GUIDKIND_DEFAULT_SOURCE_DISP_IID;
  *id = known ? guidOf(kEventsId) : GUID{};
  return known ? S_OK : E_INVALIDARG;
}

HRESULT ClassInfo::InterfaceSupportsErrorInfo(REFIID /*iid*/) {
  return S_FALSE;
}

}  // namespace lumodevice::automation
