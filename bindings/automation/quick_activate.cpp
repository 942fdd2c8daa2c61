#include "bindings/automation/quick_activate.hpp"

#include "bindings/automation/control_object.hpp"
#include "bindings/automation/guid.hpp"
#include "bindings/automation/identity.hpp"

namespace lumodevice::automation {

namespace {

template <typename Interface>
windows::ComPointer<Interface> partOf(ControlObject& object, REFIID iid) {
  windows::ComPointer<Interface> part;
  object.whole().QueryInterface(iid, part.untypedOut());
  return part;
}

DWORD connect(ControlObject& object, IUnknown* sink) {
  DWORD cookie = 0;
  windows::ComPointer<IConnectionPoint> point;
  const auto points = partOf<IConnectionPointContainer>(object, IID_IConnectionPointContainer);
  if (sink != nullptr && SUCCEEDED(points->FindConnectionPoint(guidOf(kEventsId), point.out()))) {
    point->Advise(sink, &cookie);
  }
  return cookie;
}

}  // namespace

HRESULT QuickActivation::QuickActivate(QACONTAINER* container, QACONTROL* control) {
  return object().entered([&]() -> HRESULT {
    if (container == nullptr || control == nullptr) {
      return E_POINTER;
    }
    object().inPlace().setSite(container->pClientSite);
    if (container->pAdviseSink != nullptr) {
      partOf<IViewObject2>(object(), IID_IViewObject2)
          ->SetAdvise(DVASPECT_CONTENT, 0, container->pAdviseSink);
    }
    const ULONG size = control->cbSize;
    *control = {};
    control->cbSize = size;
    control->dwMiscStatus = kMiscStatus;
    control->dwViewStatus = VIEWSTATUS_OPAQUE;
    control->dwEventCookie = connect(object(), container->pUnkEventSink);
    return S_OK;
  });
}

HRESULT QuickActivation::SetContentExtent(LPSIZEL extent) {
  return partOf<IOleObject>(object(), IID_IOleObject)->SetExtent(DVASPECT_CONTENT, extent);
}

HRESULT QuickActivation::GetContentExtent(LPSIZEL extent) {
  return partOf<IOleObject>(object(), IID_IOleObject)->GetExtent(DVASPECT_CONTENT, extent);
}

}  // namespace lumodevice::automation
