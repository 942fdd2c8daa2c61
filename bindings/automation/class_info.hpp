#pragma once

#include <ole2.h>
#include <olectl.h>

#include "bindings/automation/part.hpp"

namespace lumodevice::automation {

/// The description of the type `id` in the type library of this file.
[[nodiscard]] HRESULT typeInformation(REFGUID id, ITypeInfo** info);

/// Tells what class the control is of and which events it has.
class ClassInfo final : public Part<IProvideClassInfo2, ISupportErrorInfo> {
 public:
  using Part::Part;
  HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** info) override;
  HRESULT STDMETHODCALLTYPE GetGUID(DWORD kind, GUID* id) override;
  /// No interface does: members raise no errors for what the instrument does, and for the rest the
  /// result says all.
  HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) override;
};

}  // namespace lumodevice::automation
