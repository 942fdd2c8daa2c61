#pragma once

#include <ole2.h>

namespace lumodevice::automation {

class ControlObject;

/// The members of the control: its dual interface, which early-bound callers have by place and
/// late-bound ones by name or by dispatch identifier. Both ways are made from the table of members,
/// so this is no class with virtual functions: where callers look for the table of functions stands
/// one that was put together from the rows.
class Automation {
 public:
  explicit Automation(ControlObject& object);
  Automation(const Automation&) = delete;
  Automation& operator=(const Automation&) = delete;

  [[nodiscard]] ControlObject& object() const { return *object_; }

 private:
  const void* const functions_;
  ControlObject* const object_;
};

/// What IDispatch asks for.
[[nodiscard]] HRESULT idsOfNames(REFIID reserved, LPOLESTR* names, UINT count, DISPID* ids);
[[nodiscard]] HRESULT invoke(ControlObject& object, DISPID id, REFIID reserved, LCID locale,
                             WORD flags, DISPPARAMS* given, VARIANT* result, UINT* wrongArgument);

}  // namespace lumodevice::automation
