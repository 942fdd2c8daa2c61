#include "bindings/automation/view_object.hpp"

#include "bindings/automation/control_object.hpp"

namespace lumodevice::automation {

HRESULT ViewObject::Draw(DWORD aspect, LONG /*index*/, void* /*reserved*/,
                         DVTARGETDEVICE* /*target*/, HDC /*targetDevice*/, HDC device,
                         const RECTL* place, const RECTL* /*window*/,
                         BOOL(STDMETHODCALLTYPE* /*goOn*/)(ULONG_PTR), ULONG_PTR /*forGoOn*/) {
  return object().entered([&]() -> HRESULT {
    if (aspect != DVASPECT_CONTENT) {
      return DV_E_DVASPECT;
    }
    if (place == nullptr || device == nullptr) {
      return E_INVALIDARG;
    }
    return object().inPlace().draw(device, {place->left, place->top, place->right, place->bottom});
  });
}

HRESULT ViewObject::GetColorSet(DWORD /*aspect*/, LONG /*index*/, void* /*reserved*/,
                                DVTARGETDEVICE* /*target*/, HDC /*targetDevice*/,
                                LOGPALETTE** colours) {
  if (colours == nullptr) {
    return E_POINTER;
  }
  *colours = nullptr;
  return S_FALSE;
}

HRESULT ViewObject::Freeze(DWORD /*aspect*/, LONG /*index*/, void* /*reserved*/,
                           DWORD* /*cookie*/) {
  return E_NOTIMPL;
}

HRESULT ViewObject::Unfreeze(DWORD /*cookie*/) {
  return E_NOTIMPL;
}

HRESULT ViewObject::SetAdvise(DWORD aspects, DWORD flags, IAdviseSink* sink) {
  aspects_ = aspects;
  flags_ = flags;
  sink_ = windows::ComPointer<IAdviseSink>::of(sink);
  return S_OK;
}

HRESULT ViewObject::GetAdvise(DWORD* aspects, DWORD* flags, IAdviseSink** sink) {
  if (aspects != nullptr) {
    *aspects = aspects_;
  }
  if (flags != nullptr) {
    *flags = flags_;
  }
  if (sink != nullptr) {
    *sink = windows::ComPointer<IAdviseSink>(sink_).release();
  }
  return S_OK;
}

HRESULT ViewObject::GetExtent(DWORD aspect, LONG /*index*/, DVTARGETDEVICE* /*target*/,
                              SIZEL* extent) {
  if (aspect != DVASPECT_CONTENT) {
    return DV_E_DVASPECT;
  }
  if (extent == nullptr) {
    return E_POINTER;
  }
  *extent = object().inPlace().extent();
  return S_OK;
}

}  // namespace lumodevice::automation
