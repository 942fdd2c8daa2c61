#include "bindings/automation/in_place.hpp"

#include <cmath>
#include <utility>

#include "bindings/automation/control_object.hpp"
#include "bindings/automation/identity.hpp"
#include "lumodevice/form/controls.hpp"

namespace lumodevice::automation {

using windows::ComPointer;

namespace {

constexpr double kHimetricPerTwip = 2540.0 / 1440;

LONG himetric(int twips) {
  return std::lround(twips * kHimetricPerTwip);
}

SIZEL naturalExtent() {
  const toolkit::Place& form = form::kControls.front().place;
  return {himetric(form.width), himetric(form.height)};
}

/// The object as the container sees it activate.
ComPointer<IOleInPlaceActiveObject> activeObjectOf(ControlObject& object) {
  ComPointer<IOleInPlaceActiveObject> active;
  object.whole().QueryInterface(IID_IOleInPlaceActiveObject, active.untypedOut());
  return active;
}

}  // namespace

/// The form by itself: nobody handles what its controls do.
struct InPlace::Design {
  toolkit::VirtualLoop loop;
  form::Controls form{loop};
};

InPlace::InPlace(ControlObject& object) : object_(object), extent_(naturalExtent()) {}

InPlace::~InPlace() = default;

void InPlace::setSite(IOleClientSite* site) {
  site_ = ComPointer<IOleClientSite>::of(site);
}

bool InPlace::isRunning() const {
  const auto ambient = site<IDispatch>(IID_IDispatch);
  if (!ambient) {
    return true;
  }
  VARIANT value;
  VariantInit(&value);
  DISPPARAMS none{};
  const HRESULT result = ambient->Invoke(DISPID_AMBIENT_USERMODE, IID_NULL, LOCALE_USER_DEFAULT,
                                         DISPATCH_PROPERTYGET, &none, &value, nullptr, nullptr);
  const bool designed = SUCCEEDED(result) && value.vt == VT_BOOL && value.boolVal == VARIANT_FALSE;
  VariantClear(&value);
  return !designed;
}

toolkit::Surface& InPlace::surface() {
  if (isRunning()) {
    return object_.component().surface();
  }
  if (!design_) {
    design_ = std::make_unique<Design>();
  }
  return design_->form.surface();
}

void InPlace::makeView(HWND parent) {
  toolkit::Surface& shown = surface();
  view_ = std::make_unique<win32::FormView>(shown, parent);
  *shared_ = view_->window();
  view_->setTabLeaves(true);
  view_->setFocusHandler([this](bool inside) { focusMoved(inside); });
  EnableWindow(view_->window(), isRunning() ? TRUE : FALSE);
}

HRESULT InPlace::activate(bool ui) {
  if (!view_) {
    inPlaceSite_ = site<IOleInPlaceSite>(IID_IOleInPlaceSite);
    if (!inPlaceSite_ || inPlaceSite_->CanInPlaceActivate() != S_OK) {
      return E_FAIL;
    }
    demand(inPlaceSite_->OnInPlaceActivate());
    HWND parent = nullptr;
    RECT place{};
    RECT clip{};
    OLEINPLACEFRAMEINFO info{};
    info.cb = sizeof(info);
    demand(inPlaceSite_->GetWindow(&parent));
    demand(inPlaceSite_->GetWindowContext(frame_.out(), document_.out(), &place, &clip, &info));
    makeView(parent);
    this->place(place, clip);
    ShowWindow(view_->window(), SW_SHOWNA);
    if (site_) {
      site_->ShowObject();
    }
  }
  return ui ? activateUi() : S_OK;
}

HRESULT InPlace::activateUi() {
  if (std::exchange(uiActive_, true)) {
    return S_OK;
  }
  inPlaceSite_->OnUIActivate();
  const auto active = activeObjectOf(object_);
  for (IOleInPlaceUIWindow* const window :
       {static_cast<IOleInPlaceUIWindow*>(frame_.get()), document_.get()}) {
    if (window != nullptr) {
      window->SetActiveObject(active.get(), L"LumoDevice");
      window->SetBorderSpace(nullptr);
    }
  }
  const HWND focus = GetFocus();
  if (view_ && focus != view_->window() && IsChild(view_->window(), focus) == FALSE) {
    SetFocus(view_->window());
  }
  return S_OK;
}

HRESULT InPlace::deactivateUi() {
  if (std::exchange(uiActive_, false)) {
    for (IOleInPlaceUIWindow* const window :
         {static_cast<IOleInPlaceUIWindow*>(frame_.get()), document_.get()}) {
      if (window != nullptr) {
        window->SetActiveObject(nullptr, nullptr);
      }
    }
    inPlaceSite_->OnUIDeactivate(FALSE);
  }
  return S_OK;
}

HRESULT InPlace::deactivate() {
  deactivateUi();
  if (const auto gone = std::exchange(view_, nullptr)) {
    gone->setFocusHandler(nullptr);
    *shared_ = nullptr;
    const auto inPlaceSite = std::exchange(inPlaceSite_, {});
    frame_ = {};
    document_ = {};
    inPlaceSite->OnInPlaceDeactivate();
  }
  return S_OK;
}

HRESULT InPlace::show(bool visible) const {
  if (view_) {
    ShowWindow(view_->window(), visible ? SW_SHOWNA : SW_HIDE);
  }
  return S_OK;
}

HRESULT InPlace::place(const RECT& place, const RECT& clip) const {
  const HWND own = window();
  if (own == nullptr) {
    return E_UNEXPECTED;
  }
  MoveWindow(own, place.left, place.top, place.right - place.left, place.bottom - place.top, TRUE);
  RECT seen{};
  HRGN region = nullptr;
  if (IntersectRect(&seen, &place, &clip) != FALSE && EqualRect(&seen, &place) == FALSE) {
    OffsetRect(&seen, -place.left, -place.top);
    region = CreateRectRgnIndirect(&seen);
  }
  SetWindowRgn(own, region, TRUE);
  return S_OK;
}

void InPlace::focusMoved(bool inside) {
  object_.entered([&] {
    if (const auto control = site<IOleControlSite>(IID_IOleControlSite)) {
      control->OnFocus(inside ? TRUE : FALSE);
    }
    // A click in it activates it, as its container expects.
    return inside && view_ ? activateUi() : S_OK;
  });
}

void InPlace::ambientChanged(DISPID property) {
  if (property != DISPID_AMBIENT_USERMODE && property != DISPID_UNKNOWN) {
    return;
  }
  const bool designs = !isRunning();
  const bool designed = design_ != nullptr;
  if (view_ && designs != designed) {
    const HWND parent = GetParent(view_->window());
    RECT place{};
    GetWindowRect(view_->window(), &place);
    MapWindowPoints(nullptr, parent, reinterpret_cast<POINT*>(&place), 2);
    view_.reset();
    design_.reset();
    makeView(parent);
    this->place(place, place);
    show(true);
  } else if (!designs) {
    design_.reset();
  }
}

HRESULT InPlace::draw(HDC device, const RECT& place) {
  if (view_) {
    view_->print(device, place);
    return S_OK;
  }
  // Looking at it makes no component: containers do that to forms that nobody runs.
  Design drawn;
  toolkit::Surface& shown =
      object_.hasComponent() ? object_.component().surface() : drawn.form.surface();
  win32::FormView(shown, nullptr).print(device, place);
  return S_OK;
}

}  // namespace lumodevice::automation
