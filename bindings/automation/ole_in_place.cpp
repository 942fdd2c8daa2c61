#include "bindings/automation/ole_in_place.hpp"

#include <olectl.h>

#include "bindings/automation/control_object.hpp"

namespace lumodevice::automation {

namespace {

/// The keys held with another one, as containers want to know them.
DWORD heldKeys() {
  DWORD held = 0;
  for (const auto& [key, bit] : {std::pair{VK_SHIFT, DWORD{1}}, std::pair{VK_CONTROL, DWORD{2}},
                                 std::pair{VK_MENU, DWORD{4}}}) {
    held |= GetKeyState(key) < 0 ? bit : 0;
  }
  return held;
}

}  // namespace

HRESULT OleInPlace::GetWindow(HWND* window) {
  if (window == nullptr) {
    return E_POINTER;
  }
  *window = object().inPlace().window();
  return *window != nullptr ? S_OK : E_FAIL;
}

HRESULT OleInPlace::ContextSensitiveHelp(BOOL /*enter*/) {
  return E_NOTIMPL;
}

HRESULT OleInPlace::InPlaceDeactivate() {
  return object().entered([&] { return object().inPlace().deactivate(); });
}

HRESULT OleInPlace::UIDeactivate() {
  return object().entered([&] { return object().inPlace().deactivateUi(); });
}

HRESULT OleInPlace::SetObjectRects(const RECT* place, const RECT* clip) {
  return object().entered([&]() -> HRESULT {
    return place == nullptr ? E_POINTER
                            : object().inPlace().place(*place, clip != nullptr ? *clip : *place);
  });
}

HRESULT OleInPlace::ReactivateAndUndo() {
  return INPLACE_E_NOTUNDOABLE;
}

HRESULT OleInPlace::TranslateAccelerator(MSG* message) {
  return object().entered([&]() -> HRESULT {
    if (message == nullptr) {
      return E_POINTER;
    }
    const InPlace& inPlace = object().inPlace();
    if (inPlace.view() != nullptr && inPlace.view()->translate(*message)) {
      return S_OK;
    }
    const auto site = inPlace.site<IOleControlSite>(IID_IOleControlSite);
    return site ? site->TranslateAccelerator(message, heldKeys()) : S_FALSE;
  });
}

HRESULT OleInPlace::OnFrameWindowActivate(BOOL /*active*/) {
  return S_OK;
}

HRESULT OleInPlace::OnDocWindowActivate(BOOL /*active*/) {
  return S_OK;
}

HRESULT OleInPlace::ResizeBorder(const RECT* /*border*/, IOleInPlaceUIWindow* /*window*/,
                                 BOOL /*frame*/) {
  return S_OK;
}

HRESULT OleInPlace::EnableModeless(BOOL /*enable*/) {
  return S_OK;
}

}  // namespace lumodevice::automation
