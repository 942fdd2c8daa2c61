#pragma once

#include <ole2.h>

#include "bindings/automation/part.hpp"
#include "lumodevice/windows/com_pointer.hpp"

namespace lumodevice::automation {

/// What every container asks of an object that it embeds.
class OleObject final : public Part<IOleObject> {
 public:
  using Part::Part;

  HRESULT STDMETHODCALLTYPE SetClientSite(IOleClientSite* site) override;
  HRESULT STDMETHODCALLTYPE GetClientSite(IOleClientSite** site) override;
  HRESULT STDMETHODCALLTYPE SetHostNames(LPCOLESTR application, LPCOLESTR document) override;
  /// The panel goes, and the component ends, also in the midst of its waits.
  HRESULT STDMETHODCALLTYPE Close(DWORD save) override;
  HRESULT STDMETHODCALLTYPE SetMoniker(DWORD which, IMoniker* moniker) override;
  HRESULT STDMETHODCALLTYPE GetMoniker(DWORD assign, DWORD which, IMoniker** moniker) override;
  HRESULT STDMETHODCALLTYPE InitFromData(IDataObject* data, BOOL creation, DWORD reserved) override;
  HRESULT STDMETHODCALLTYPE GetClipboardData(DWORD reserved, IDataObject** data) override;
  HRESULT STDMETHODCALLTYPE DoVerb(LONG verb, MSG* message, IOleClientSite* site, LONG index,
                                   HWND parent, const RECT* place) override;
  HRESULT STDMETHODCALLTYPE EnumVerbs(IEnumOLEVERB** verbs) override;
  HRESULT STDMETHODCALLTYPE Update() override;
  HRESULT STDMETHODCALLTYPE IsUpToDate() override;
  HRESULT STDMETHODCALLTYPE GetUserClassID(CLSID* id) override;
  HRESULT STDMETHODCALLTYPE GetUserType(DWORD form, LPOLESTR* type) override;
  HRESULT STDMETHODCALLTYPE SetExtent(DWORD aspect, SIZEL* extent) override;
  HRESULT STDMETHODCALLTYPE GetExtent(DWORD aspect, SIZEL* extent) override;
  HRESULT STDMETHODCALLTYPE Advise(IAdviseSink* sink, DWORD* cookie) override;
  HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override;
  HRESULT STDMETHODCALLTYPE EnumAdvise(IEnumSTATDATA** sinks) override;
  HRESULT STDMETHODCALLTYPE GetMiscStatus(DWORD aspect, DWORD* status) override;
  HRESULT STDMETHODCALLTYPE SetColorScheme(LOGPALETTE* palette) override;

 private:
  windows::ComPointer<IOleAdviseHolder> sinks_;
};

}  // namespace lumodevice::automation
