#pragma once

#include <ocidl.h>
#include <ole2.h>

#include "bindings/automation/part.hpp"

namespace lumodevice::automation {

/// All that a container says to a new control, in one call.
class QuickActivation final : public Part<IQuickActivate> {
 public:
  using Part::Part;

  HRESULT STDMETHODCALLTYPE QuickActivate(QACONTAINER* container, QACONTROL* control) override;
  HRESULT STDMETHODCALLTYPE SetContentExtent(LPSIZEL extent) override;
  HRESULT STDMETHODCALLTYPE GetContentExtent(LPSIZEL extent) override;
};

}  // namespace lumodevice::automation
