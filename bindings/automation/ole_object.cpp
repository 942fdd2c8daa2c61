#include "bindings/automation/ole_object.hpp"

#include <cwchar>

#include "bindings/automation/control_object.hpp"
#include "bindings/automation/guid.hpp"
#include "bindings/automation/identity.hpp"

namespace lumodevice::automation {

HRESULT OleObject::SetClientSite(IOleClientSite* site) {
  return object().entered([&] {
    object().inPlace().setSite(site);
    return S_OK;
  });
}

HRESULT OleObject::GetClientSite(IOleClientSite** site) {
  if (site == nullptr) {
    return E_POINTER;
  }
  *site = windows::ComPointer<IOleClientSite>(object().inPlace().site()).release();
  return S_OK;
}

HRESULT OleObject::SetHostNames(LPCOLESTR /*application*/, LPCOLESTR /*document*/) {
  return S_OK;
}

HRESULT OleObject::Close(DWORD /*save*/) {
  return object().entered([&] {
    object().end();
    if (sinks_) {
      sinks_->SendOnClose();
    }
    return S_OK;
  });
}

HRESULT OleObject::SetMoniker(DWORD /*which*/, IMoniker* /*moniker*/) {
  return E_NOTIMPL;
}

HRESULT OleObject::GetMoniker(DWORD /*assign*/, DWORD /*which*/, IMoniker** /*moniker*/) {
  return E_NOTIMPL;
}

HRESULT OleObject::InitFromData(IDataObject* /*data*/, BOOL /*creation*/, DWORD /*reserved*/) {
  return E_NOTIMPL;
}

HRESULT OleObject::GetClipboardData(DWORD /*reserved*/, IDataObject** /*data*/) {
  return E_NOTIMPL;
}

HRESULT OleObject::DoVerb(LONG verb, MSG* /*message*/, IOleClientSite* site, LONG /*index*/,
                          HWND /*parent*/, const RECT* /*place*/) {
  return object().entered([&]() -> HRESULT {
    InPlace& inPlace = object().inPlace();
    if (!inPlace.site() && site != nullptr) {
      inPlace.setSite(site);
    }
    switch (verb) {
      case OLEIVERB_PRIMARY:
      case OLEIVERB_UIACTIVATE:
        return inPlace.activate(true);
      case OLEIVERB_SHOW:
      case OLEIVERB_INPLACEACTIVATE: {
        const HRESULT result = inPlace.activate(false);
        inPlace.show(true);
        return result;
      }
      case OLEIVERB_HIDE:
        inPlace.deactivateUi();
        return inPlace.show(false);
      default:
        return verb > 0 ? OLEOBJ_S_INVALIDVERB : E_NOTIMPL;
    }
  });
}

HRESULT OleObject::EnumVerbs(IEnumOLEVERB** /*verbs*/) {
  return OLE_S_USEREG;
}

HRESULT OleObject::Update() {
  return S_OK;
}

HRESULT OleObject::IsUpToDate() {
  return S_OK;
}

HRESULT OleObject::GetUserClassID(CLSID* id) {
  if (id == nullptr) {
    return E_POINTER;
  }
  *id = guidOf(kClassId);
  return S_OK;
}

HRESULT OleObject::GetUserType(DWORD /*form*/, LPOLESTR* type) {
  if (type == nullptr) {
    return E_POINTER;
  }
  const std::wstring title(kTitle.begin(), kTitle.end());
  const std::size_t size = (title.size() + 1) * sizeof(wchar_t);
  *type = static_cast<LPOLESTR>(CoTaskMemAlloc(size));
  if (*type == nullptr) {
    return E_OUTOFMEMORY;
  }
  std::wmemcpy(*type, title.c_str(), title.size() + 1);
  return S_OK;
}

HRESULT OleObject::SetExtent(DWORD aspect, SIZEL* extent) {
  if (aspect != DVASPECT_CONTENT) {
    return DV_E_DVASPECT;
  }
  if (extent == nullptr) {
    return E_POINTER;
  }
  object().inPlace().setExtent(*extent);
  return S_OK;
}

HRESULT OleObject::GetExtent(DWORD aspect, SIZEL* extent) {
  if (aspect != DVASPECT_CONTENT) {
    return DV_E_DVASPECT;
  }
  if (extent == nullptr) {
    return E_POINTER;
  }
  *extent = object().inPlace().extent();
  return S_OK;
}

HRESULT OleObject::Advise(IAdviseSink* sink, DWORD* cookie) {
  return object().entered([&]() -> HRESULT {
    if (!sinks_) {
      demand(CreateOleAdviseHolder(sinks_.out()));
    }
    return sinks_->Advise(sink, cookie);
  });
}

HRESULT OleObject::Unadvise(DWORD cookie) {
  return sinks_ ? sinks_->Unadvise(cookie) : OLE_E_NOCONNECTION;
}

HRESULT OleObject::EnumAdvise(IEnumSTATDATA** sinks) {
  if (sinks == nullptr) {
    return E_POINTER;
  }
  *sinks = nullptr;
  return sinks_ ? sinks_->EnumAdvise(sinks) : S_OK;
}

HRESULT OleObject::GetMiscStatus(DWORD aspect, DWORD* status) {
  if (status == nullptr) {
    return E_POINTER;
  }
  *status = aspect == DVASPECT_CONTENT ? kMiscStatus : 0;
  return aspect == DVASPECT_CONTENT ? S_OK : DV_E_DVASPECT;
}

HRESULT OleObject::SetColorScheme(LOGPALETTE* /*palette*/) {
  return E_NOTIMPL;
}

}  // namespace lumodevice::automation
