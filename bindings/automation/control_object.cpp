#include "bindings/automation/control_object.hpp"

#include <algorithm>
#include <exception>
#include <iterator>
#include <ocidl.h>
#include <utility>

#include "bindings/automation/guid.hpp"
#include "bindings/automation/identity.hpp"
#include "bindings/automation/module.hpp"
#include "lumodevice/io/fault.hpp"
#include "lumodevice/system_host.hpp"
#include "lumodevice/windows/information_box.hpp"
#include "lumodevice/windows/message_loop.hpp"

namespace lumodevice::automation {

namespace {

constexpr IID kMembersId = guidOf(kInterfaceId);

/// What the component finds around it; who holds the host holds all of it, and the file: the object
/// may go while an act of the panel still waits.
struct Surroundings {
  Surroundings() { module::hold(); }
  ~Surroundings() {
    others.reset();
    module::release();
  }
  Surroundings(const Surroundings&) = delete;
  Surroundings& operator=(const Surroundings&) = delete;

  // A handler of the component throws nothing; what a view does is told to who looks for it.
  windows::MessageLoop loop{[](const std::exception_ptr& /*failure*/) {
    OutputDebugStringW(L"LumoDevice: a handler failed\n");
  }};
  std::shared_ptr<void> others;
};

/// Throws ComFailure(ERROR_MOD_NOT_FOUND) where the user named a VISA library that cannot be
/// loaded.
Host hostOf(Exchanges exchanges, const std::shared_ptr<HWND>& panel) {
  const auto surroundings = std::make_shared<Surroundings>();
  surroundings->loop.keptBy(surroundings);
  try {
    Host host = systemHost({.loop = &surroundings->loop,
                            .informationBox = windows::InformationBoxes([panel] { return *panel; }),
                            .exchanges = exchanges});
    surroundings->others = std::exchange(host.owned, surroundings);
    return host;
  } catch (const io::IoFault&) {
    throw ComFailure{HRESULT_FROM_WIN32(ERROR_MOD_NOT_FOUND)};
  }
}

}  // namespace

/// An interface that can be asked for, and where its functions are.
struct ControlObject::Face {
  const IID& iid;
  void* (*of)(ControlObject& object);

  /// For a part that is a class with the functions of that interface.
  template <typename Interface, auto ItsPart>
  static void* in(ControlObject& object) {
    return static_cast<Interface*>(&(object.*ItsPart));
  }
  static void* automation(ControlObject& object) { return &object.automation_; }
};

const ControlObject::Face ControlObject::kFaces[] = {
    {IID_IDispatch, Face::automation},
    {kMembersId, Face::automation},
    {IID_IProvideClassInfo, Face::in<IProvideClassInfo, &ControlObject::classInfo_>},
    {IID_IProvideClassInfo2, Face::in<IProvideClassInfo2, &ControlObject::classInfo_>},
    {IID_ISupportErrorInfo, Face::in<ISupportErrorInfo, &ControlObject::classInfo_>},
    {IID_IConnectionPointContainer, Face::in<IConnectionPointContainer, &ControlObject::events_>},
    {IID_IPersist, Face::in<IPersistStreamInit, &ControlObject::persistence_>},
    {IID_IPersistStreamInit, Face::in<IPersistStreamInit, &ControlObject::persistence_>},
    {IID_IPersistPropertyBag, Face::in<IPersistPropertyBag, &ControlObject::persistence_>},
    {IID_IOleObject, Face::in<IOleObject, &ControlObject::oleObject_>},
    {IID_IOleWindow, Face::in<IOleInPlaceObject, &ControlObject::oleInPlace_>},
    {IID_IOleInPlaceObject, Face::in<IOleInPlaceObject, &ControlObject::oleInPlace_>},
    {IID_IOleInPlaceActiveObject, Face::in<IOleInPlaceActiveObject, &ControlObject::oleInPlace_>},
    {IID_IOleControl, Face::in<IOleControl, &ControlObject::oleControl_>},
    {IID_IViewObject, Face::in<IViewObject2, &ControlObject::viewObject_>},
    {IID_IViewObject2, Face::in<IViewObject2, &ControlObject::viewObject_>},
    {IID_IQuickActivate, Face::in<IQuickActivate, &ControlObject::quickActivation_>},
};

IUnknown& wholeOf(ControlObject& object) {
  return object.whole();
}

HRESULT ControlObject::create(IUnknown* outer, REFIID iid, void** out) noexcept {
  *out = nullptr;
  if (outer != nullptr && iid != IID_IUnknown) {
    return CLASS_E_NOAGGREGATION;
  }
  auto* const object = new (std::nothrow) ControlObject(outer);
  if (object == nullptr) {
    return E_OUTOFMEMORY;
  }
  const HRESULT result = object->QueryInterface(iid, out);
  object->Release();
  return result;
}

ControlObject::ControlObject(IUnknown* outer) : whole_(outer != nullptr ? outer : this) {
  module::hold();
}

ControlObject::~ControlObject() {
  module::release();
}

ControlObject::Entry::~Entry() {
  if (--object_.entries_ == 0 && object_.references_ == 0) {
    delete &object_;
  }
}

HRESULT ControlObject::QueryInterface(REFIID iid, void** out) {
  if (out == nullptr) {
    return E_POINTER;
  }
  *out = nullptr;
  if (iid == IID_IUnknown) {
    *out = this;
    AddRef();
    return S_OK;
  }
  const Face* const face = std::find_if(std::begin(kFaces), std::end(kFaces),
                                        [&iid](const Face& row) { return row.iid == iid; });
  if (face == std::end(kFaces)) {
    return E_NOINTERFACE;
  }
  *out = face->of(*this);
  whole_->AddRef();
  return S_OK;
}

ULONG ControlObject::AddRef() {
  return ++references_;
}

ULONG ControlObject::Release() {
  const ULONG left = --references_;
  if (left == 0) {
    // Also when a call waits in it: the instrument is let go at once, the object at its end.
    const Entry entry(*this);
    end();
  }
  return left;
}

ZANCtrl& ControlObject::component() {
  if (ended_) {
    throw ComFailure{CO_E_OBJNOTCONNECTED};
  }
  if (component_ == nullptr) {
    component_ = std::make_unique<ZANCtrl>(hostOf(exchanges_, inPlace_.shared()));
  }
  return *component_;
}

void ControlObject::end() {
  ended_ = true;
  inPlace_.deactivate();
  component_.reset();
}

void ControlObject::setExchanges(Exchanges exchanges) {
  if (component_ != nullptr && exchanges != exchanges_) {
    throw ComFailure{E_UNEXPECTED};
  }
  exchanges_ = exchanges;
}

}  // namespace lumodevice::automation
