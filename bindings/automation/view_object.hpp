#pragma once

#include <ole2.h>

#include "bindings/automation/part.hpp"
#include "lumodevice/windows/com_pointer.hpp"

namespace lumodevice::automation {

/// The panel drawn where it has no window: on a form that is designed, and on paper.
class ViewObject final : public Part<IViewObject2> {
 public:
  using Part::Part;

  HRESULT STDMETHODCALLTYPE Draw(DWORD aspect, LONG index, void* reserved, DVTARGETDEVICE* target,
                                 HDC targetDevice, HDC device, const RECTL* place,
                                 const RECTL* window, BOOL(STDMETHODCALLTYPE* goOn)(ULONG_PTR),
                                 ULONG_PTR forGoOn) override;
  HRESULT STDMETHODCALLTYPE GetColorSet(DWORD aspect, LONG index, void* reserved,
                                        DVTARGETDEVICE* target, HDC targetDevice,
                                        LOGPALETTE** colours) override;
  HRESULT STDMETHODCALLTYPE Freeze(DWORD aspect, LONG index, void* reserved,
                                   DWORD* cookie) override;
  HRESULT STDMETHODCALLTYPE Unfreeze(DWORD cookie) override;
  HRESULT STDMETHODCALLTYPE SetAdvise(DWORD aspects, DWORD flags, IAdviseSink* sink) override;
  HRESULT STDMETHODCALLTYPE GetAdvise(DWORD* aspects, DWORD* flags, IAdviseSink** sink) override;
  HRESULT STDMETHODCALLTYPE GetExtent(DWORD aspect, LONG index, DVTARGETDEVICE* target,
                                      SIZEL* extent) override;

 private:
  DWORD aspects_ = 0;
  DWORD flags_ = 0;
  windows::ComPointer<IAdviseSink> sink_;
};

}  // namespace lumodevice::automation
