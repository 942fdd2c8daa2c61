#include "bindings/automation/ole_control.hpp"

#include <utility>

#include "bindings/automation/control_object.hpp"

namespace lumodevice::automation {

OleControl::~OleControl() {
  if (letters_ != nullptr) {
    DestroyAcceleratorTable(letters_);
  }
}

HRESULT OleControl::GetControlInfo(CONTROLINFO* info) {
  return object().entered([&]() -> HRESULT {
    if (info == nullptr) {
      return E_POINTER;
    }
    std::vector<ACCEL> table;
    if (const win32::FormView* const view = object().inPlace().view()) {
      for (const wchar_t letter : view->mnemonics()) {
        table.push_back({FALT, static_cast<WORD>(letter), static_cast<WORD>(table.size())});
      }
    }
    if (const HACCEL before = std::exchange(letters_, nullptr)) {
      DestroyAcceleratorTable(before);
    }
    letters_ = table.empty()
                   ? nullptr
                   : CreateAcceleratorTableW(table.data(), static_cast<int>(table.size()));
    info->hAccel = letters_;
    info->cAccel = static_cast<USHORT>(table.size());
    info->dwFlags = CTRLINFO_EATS_RETURN;
    return S_OK;
  });
}

HRESULT OleControl::OnMnemonic(MSG* message) {
  return object().entered([&]() -> HRESULT {
    if (message == nullptr) {
      return E_POINTER;
    }
    win32::FormView* const view = object().inPlace().view();
    if (view == nullptr) {
      return S_FALSE;
    }
    // WM_SYSKEYDOWN has the key, WM_SYSCHAR the letter; those of letters differ in their case.
    return view->pressMnemonic(static_cast<wchar_t>(message->wParam)) ? S_OK : S_FALSE;
  });
}

HRESULT OleControl::OnAmbientPropertyChange(DISPID property) {
  return object().entered([&] {
    object().inPlace().ambientChanged(property);
    return S_OK;
  });
}

HRESULT OleControl::FreezeEvents(BOOL /*freeze*/) {
  return S_OK;
}

}  // namespace lumodevice::automation
