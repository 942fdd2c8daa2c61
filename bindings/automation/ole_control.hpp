#pragma once

#include <ole2.h>
#include <olectl.h>
#include <vector>

#include "bindings/automation/part.hpp"

namespace lumodevice::automation {

/// What containers of controls have for them: the letters of their captions, and the properties of
/// the form around them.
class OleControl final : public Part<IOleControl> {
 public:
  explicit OleControl(ControlObject& object) : Part(object) {}
  ~OleControl();

  /// The letters that are marked now, each with Alt. The Enter key is the panel's while it has the
  /// keyboard. The table stays the control's.
  HRESULT STDMETHODCALLTYPE GetControlInfo(CONTROLINFO* info) override;
  HRESULT STDMETHODCALLTYPE OnMnemonic(MSG* message) override;
  HRESULT STDMETHODCALLTYPE OnAmbientPropertyChange(DISPID property) override;
  HRESULT STDMETHODCALLTYPE FreezeEvents(BOOL freeze) override;

 private:
  HACCEL letters_ = nullptr;
};

}  // namespace lumodevice::automation
