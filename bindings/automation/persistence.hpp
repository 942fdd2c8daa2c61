#pragma once

#include <ole2.h>
#include <olectl.h>

#include "bindings/automation/part.hpp"

namespace lumodevice::automation {

/// The property that a container keeps with a form: "Exchanges", which is "Interleaved", as hosts
/// of old expect, or "InTurn". It is set before the component is used for the first time.
class Persistence final : public Part<IPersistStreamInit, IPersistPropertyBag> {
 public:
  using Part::Part;

  HRESULT STDMETHODCALLTYPE GetClassID(CLSID* id) override;
  HRESULT STDMETHODCALLTYPE InitNew() override;

  // In a stream.
  HRESULT STDMETHODCALLTYPE IsDirty() override;
  HRESULT STDMETHODCALLTYPE Load(IStream* stream) override;
  HRESULT STDMETHODCALLTYPE Save(IStream* stream, BOOL clearDirty) override;
  HRESULT STDMETHODCALLTYPE GetSizeMax(ULARGE_INTEGER* size) override;

  // In a property bag.
  HRESULT STDMETHODCALLTYPE Load(IPropertyBag* bag, IErrorLog* log) override;
  HRESULT STDMETHODCALLTYPE Save(IPropertyBag* bag, BOOL clearDirty, BOOL saveAll) override;
};

}  // namespace lumodevice::automation
