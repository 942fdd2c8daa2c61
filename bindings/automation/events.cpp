#include "bindings/automation/events.hpp"

#include <vector>

#include "bindings/automation/control_object.hpp"
#include "bindings/automation/enumeration.hpp"
#include "bindings/automation/guid.hpp"
#include "bindings/automation/identity.hpp"

namespace lumodevice::automation {

namespace {

const IID kEvents = guidOf(kEventsId);

}  // namespace

HRESULT Events::EnumConnectionPoints(IEnumConnectionPoints** points) {
  return object().entered([&] {
    if (points == nullptr) {
      return E_POINTER;
    }
    *points = Enumeration<IEnumConnectionPoints, IConnectionPoint*>::of({&point_});
    return S_OK;
  });
}

HRESULT Events::FindConnectionPoint(REFIID iid, IConnectionPoint** point) {
  if (point == nullptr) {
    return E_POINTER;
  }
  const bool known = iid == kEvents;
  *point = known ? &point_ : nullptr;
  if (known) {
    point_.AddRef();
  }
  return known ? S_OK : CONNECT_E_NOCONNECTION;
}

Events::Point::~Point() {
  for (const auto& [cookie, sink] : sinks_) {
    sink->Release();
  }
}

HRESULT Events::Point::QueryInterface(REFIID iid, void** out) {
  return queryOnly<IConnectionPoint>(*this, iid, out);
}

ULONG Events::Point::AddRef() {
  return events_.AddRef();
}

ULONG Events::Point::Release() {
  return events_.Release();
}

HRESULT Events::Point::GetConnectionInterface(IID* iid) {
  if (iid == nullptr) {
    return E_POINTER;
  }
  *iid = kEvents;
  return S_OK;
}

HRESULT Events::Point::GetConnectionPointContainer(IConnectionPointContainer** container) {
  if (container == nullptr) {
    return E_POINTER;
  }
  *container = &events_;
  events_.AddRef();
  return S_OK;
}

HRESULT Events::Point::Advise(IUnknown* sink, DWORD* cookie) {
  return events_.object().entered([&]() -> HRESULT {
    if (sink == nullptr || cookie == nullptr) {
      return E_POINTER;
    }
    *cookie = 0;
    // A sink may know the event interface by its own identifier, or be a plain dispatch object.
    void* fitting = nullptr;
    if (FAILED(sink->QueryInterface(kEvents, &fitting)) &&
        FAILED(sink->QueryInterface(IID_IDispatch, &fitting))) {
      return CONNECT_E_CANNOTCONNECT;
    }
    try {
      sinks_.emplace(lastCookie_ + 1, static_cast<IUnknown*>(fitting));
    } catch (...) {
      static_cast<IUnknown*>(fitting)->Release();
      throw;
    }
    *cookie = ++lastCookie_;
    return S_OK;
  });
}

HRESULT Events::Point::Unadvise(DWORD cookie) {
  return events_.object().entered([&]() -> HRESULT {
    const auto found = sinks_.extract(cookie);
    if (found.empty()) {
      return CONNECT_E_NOCONNECTION;
    }
    found.mapped()->Release();
    return S_OK;
  });
}

HRESULT Events::Point::EnumConnections(IEnumConnections** connections) {
  return events_.object().entered([&] {
    if (connections == nullptr) {
      return E_POINTER;
    }
    std::vector<CONNECTDATA> all;
    for (const auto& [cookie, sink] : sinks_) {
      all.push_back({sink, cookie});
    }
    *connections = Enumeration<IEnumConnections, CONNECTDATA>::of(std::move(all));
    return S_OK;
  });
}

}  // namespace lumodevice::automation
