#pragma once

#include <cstdint>
#include <memory>
#include <ole2.h>
#include <string>
#include <string_view>

#include "lumodevice/automation_type.hpp"
#include "lumodevice/members.hpp"
#include "lumodevice/windows/com_values.hpp"

namespace lumodevice::automation {

/// How a value of a member lies in a call, and how it gets there and back. What goes in stays the
/// caller's, what comes out becomes the caller's.
template <typename CppType>
struct Carried;

template <>
struct Carried<bool> {
  using Value = VARIANT_BOOL;
  static constexpr VARTYPE kVartype = VT_BOOL;
  static bool in(Value value) { return value != VARIANT_FALSE; }
  static Value out(bool value) { return value ? VARIANT_TRUE : VARIANT_FALSE; }
};

template <>
struct Carried<std::int16_t> {
  using Value = SHORT;
  static constexpr VARTYPE kVartype = VT_I2;
  static Value out(std::int16_t value) { return value; }
};

template <>
struct Carried<LinkKind> {
  using Value = SHORT;
  static constexpr VARTYPE kVartype = VT_I2;
  static Value out(LinkKind kind) { return static_cast<SHORT>(kind); }
};

template <>
struct Carried<std::string> {
  using Value = BSTR;
  static constexpr VARTYPE kVartype = VT_BSTR;
  static std::string in(BSTR text) { return windows::bytesOf(text); }
  static BSTR out(std::string_view bytes);
};
template <>
struct Carried<std::string_view> : Carried<std::string> {};

/// The object itself, in whose identity hosts trust: the one that was put is the one that is got.
template <>
struct Carried<std::shared_ptr<io::FormattedIO488>> {
  using Value = IUnknown*;
  static constexpr VARTYPE kVartype = VT_UNKNOWN;
  /// Throws ComFailure(E_NOINTERFACE) for an object that is no formatted-I/O object.
  static std::shared_ptr<io::FormattedIO488> in(IUnknown* object);
  static IUnknown* out(const std::shared_ptr<io::FormattedIO488>& object);
};

/// Makes `given`, which may be a reference, a value of that type as far as the system converts it
/// for a user of that locale. Throws ComFailure: DISP_E_TYPEMISMATCH, DISP_E_OVERFLOW, for an
/// argument that was left out DISP_E_PARAMNOTOPTIONAL.
void convert(VARIANT& given, VARTYPE type, LCID locale, windows::Variant& converted);

}  // namespace lumodevice::automation
