#pragma once

#include <unknwn.h>

namespace lumodevice::automation {

/// Makes controls. One serves all: it has no state and no end.
class ClassFactory final : public IClassFactory {
 public:
  [[nodiscard]] static ClassFactory& only();

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override;
  ULONG STDMETHODCALLTYPE AddRef() override;
  ULONG STDMETHODCALLTYPE Release() override;
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** out) override;
  HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override;
};

}  // namespace lumodevice::automation
