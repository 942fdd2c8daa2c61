#pragma once

#include <functional>
#include <memory>
#include <ole2.h>
#include <olectl.h>

#include "lumodevice/win32/form_view.hpp"
#include "lumodevice/windows/com_pointer.hpp"

namespace lumodevice::automation {

class ControlObject;

/// The control on a container's form: its site, its window there, and how far it is active. The
/// interfaces that containers have for it (OleObject, OleInPlace, OleControl, ...) lead here.
///
/// While the container's form is being designed there is no component: the panel is drawn from the
/// form's tables, and nothing of it can be used.
class InPlace {
 public:
  explicit InPlace(ControlObject& object);
  ~InPlace();
  InPlace(const InPlace&) = delete;
  InPlace& operator=(const InPlace&) = delete;

  void setSite(IOleClientSite* site);
  [[nodiscard]] const windows::ComPointer<IOleClientSite>& site() const { return site_; }
  /// Of the site, another interface of it; null where it has none.
  template <typename Interface>
  [[nodiscard]] windows::ComPointer<Interface> site(REFIID iid) const {
    windows::ComPointer<Interface> found;
    if (site_) {
      site_->QueryInterface(iid, found.untypedOut());
    }
    return found;
  }

  /// Shows the panel in the container's window; with `ui`, it gets the keyboard too.
  HRESULT activate(bool ui);
  HRESULT deactivateUi();
  HRESULT deactivate();
  /// The panel is visible or not, while it is active.
  HRESULT show(bool visible) const;
  /// In the container's window, in pixels; what lies outside of `clip` is not seen.
  HRESULT place(const RECT& place, const RECT& clip) const;
  /// Null while it is not active.
  [[nodiscard]] HWND window() const { return view_ ? view_->window() : nullptr; }
  [[nodiscard]] win32::FormView* view() const { return view_.get(); }
  [[nodiscard]] bool isUiActive() const { return uiActive_; }

  /// A property of the container's form has become another one.
  void ambientChanged(DISPID property);
  /// Draws the panel into a device, active or not.
  HRESULT draw(HDC device, const RECT& place);

  /// In hundredths of a millimetre; that of the form at first.
  [[nodiscard]] SIZEL extent() const { return extent_; }
  void setExtent(const SIZEL& extent) { extent_ = extent; }

  /// The window that stands for the panel now, for boxes that belong over it; shared with what may
  /// outlive this object.
  [[nodiscard]] const std::shared_ptr<HWND>& shared() const { return shared_; }

 private:
  struct Design;

  /// Whether the container's form runs; a container that does not say so runs it.
  [[nodiscard]] bool isRunning() const;
  [[nodiscard]] toolkit::Surface& surface();
  void makeView(HWND parent);
  void focusMoved(bool inside);
  HRESULT activateUi();

  ControlObject& object_;
  windows::ComPointer<IOleClientSite> site_;
  windows::ComPointer<IOleInPlaceSite> inPlaceSite_;
  windows::ComPointer<IOleInPlaceFrame> frame_;
  windows::ComPointer<IOleInPlaceUIWindow> document_;
  std::unique_ptr<Design> design_;
  std::unique_ptr<win32::FormView> view_;
  std::shared_ptr<HWND> shared_ = std::make_shared<HWND>();
  SIZEL extent_;
  bool uiActive_ = false;
};

}  // namespace lumodevice::automation
