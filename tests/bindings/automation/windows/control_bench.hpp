#pragma once

#include <cstdint>
#include <gtest/gtest.h>
#include <ole2.h>
#include <olectl.h>
#include <string>
#include <string_view>

#include "bindings/automation/guid.hpp"
#include "bindings/automation/identity.hpp"
#include "bindings/automation/values.hpp"
#include "lumodevice/windows/com_pointer.hpp"

namespace lumodevice::automation {

using windows::ComPointer;

/// Another interface of the same object, or none.
template <typename Wanted, typename Interface>
ComPointer<Wanted> as(const ComPointer<Interface>& object) {
  ComPointer<Wanted> wanted;
  object->QueryInterface(__uuidof(Wanted), wanted.untypedOut());
  return wanted;
}

/// The file of the control, loaded as a program that uses it would have it, beside a simulated
/// instrument that stands behind the VISA library. The registry is not asked.
class ControlBench : public ::testing::Test {
 protected:
  ControlBench();
  ~ControlBench() override;

  using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
  using Plain = HRESULT(STDAPICALLTYPE*)();
  template <typename Function>
  [[nodiscard]] Function exported(const char* name) const {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(file_, name)));
  }
  [[nodiscard]] ComPointer<IClassFactory> factory() const;
  [[nodiscard]] ComPointer<IDispatch> control() const;

 private:
  HMODULE file_;
};

/// What a late-bound call came to.
struct Outcome {
  HRESULT result = S_OK;
  windows::Variant value;
  UINT wrongArgument = 77;
};

/// By dispatch identifier, with the arguments in the order of IDispatch (the last one first).
void call(IDispatch& object, DISPID id, WORD flags, VARIANT* arguments, UINT count,
          Outcome& outcome);
void call(IDispatch& object, DISPID id, WORD flags, Outcome& outcome);
/// The identifier of a name, or DISPID_UNKNOWN.
[[nodiscard]] DISPID idOf(IDispatch& object, const wchar_t* name);

// By name.

[[nodiscard]] HRESULT getText(IDispatch& object, const wchar_t* name, std::wstring& text);
[[nodiscard]] HRESULT getNumber(IDispatch& object, const wchar_t* name, std::int32_t& number);
[[nodiscard]] HRESULT put(IDispatch& object, const wchar_t* name, VARIANT& value);
[[nodiscard]] HRESULT run(IDispatch& object, const wchar_t* name, VARIANT& argument);

[[nodiscard]] VARIANT textVariant(const windows::Bstr& text);
[[nodiscard]] std::wstring_view view(const windows::Bstr& text);
[[nodiscard]] VARIANT boolVariant(bool value);
[[nodiscard]] VARIANT numberVariant(std::int32_t value);
[[nodiscard]] VARIANT ofType(VARTYPE type);

}  // namespace lumodevice::automation
