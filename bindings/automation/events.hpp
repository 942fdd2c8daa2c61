#pragma once

#include <map>
#include <ole2.h>
#include <olectl.h>

#include "bindings/automation/part.hpp"

namespace lumodevice::automation {

/// Where hosts say that they listen to the events of the control. It has none, so none is told: but
/// hosts that connect to every event interface find one to connect to.
class Events final : public Part<IConnectionPointContainer> {
 public:
  explicit Events(ControlObject& object) : Part(object), point_(*this) {}

  HRESULT STDMETHODCALLTYPE EnumConnectionPoints(IEnumConnectionPoints** points) override;
  HRESULT STDMETHODCALLTYPE FindConnectionPoint(REFIID iid, IConnectionPoint** point) override;

 private:
  using Part::object;

  /// Lives as long as the control, and has an identity of its own.
  class Point final : public IConnectionPoint {
   public:
    explicit Point(Events& events) : events_(events) {}
    ~Point();
    Point(const Point&) = delete;
    Point& operator=(const Point&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE GetConnectionInterface(IID* iid) override;
    HRESULT STDMETHODCALLTYPE
    GetConnectionPointContainer(IConnectionPointContainer** container) override;
    HRESULT STDMETHODCALLTYPE Advise(IUnknown* sink, DWORD* cookie) override;
    HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override;
    HRESULT STDMETHODCALLTYPE EnumConnections(IEnumConnections** connections) override;

   private:
    Events& events_;
    /// By their cookies.
    std::map<DWORD, IUnknown*> sinks_;
    DWORD lastCookie_ = 0;
  };

  Point point_;
};

}  // namespace lumodevice::automation
