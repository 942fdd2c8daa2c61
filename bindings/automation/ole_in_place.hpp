#pragma once

#include <ole2.h>

#include "bindings/automation/part.hpp"

namespace lumodevice::automation {

/// The control in a window of its container: where it is, and the keys that go to it.
class OleInPlace final : public Part<IOleInPlaceObject, IOleInPlaceActiveObject> {
 public:
  using Part::Part;

  HRESULT STDMETHODCALLTYPE GetWindow(HWND* window) override;
  HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL enter) override;

  HRESULT STDMETHODCALLTYPE InPlaceDeactivate() override;
  HRESULT STDMETHODCALLTYPE UIDeactivate() override;
  HRESULT STDMETHODCALLTYPE SetObjectRects(const RECT* place, const RECT* clip) override;
  HRESULT STDMETHODCALLTYPE ReactivateAndUndo() override;

  /// S_OK for a key that the panel took; S_FALSE for one that is the container's, among them the
  /// Tab key behind the last control of the panel.
  HRESULT STDMETHODCALLTYPE TranslateAccelerator(MSG* message) override;
  HRESULT STDMETHODCALLTYPE OnFrameWindowActivate(BOOL active) override;
  HRESULT STDMETHODCALLTYPE OnDocWindowActivate(BOOL active) override;
  HRESULT STDMETHODCALLTYPE ResizeBorder(const RECT* border, IOleInPlaceUIWindow* window,
                                         BOOL frame) override;
  HRESULT STDMETHODCALLTYPE EnableModeless(BOOL enable) override;
};

}  // namespace lumodevice::automation
