#include "bindings/automation/values.hpp"

#include <new>
#include <string>

#include "bindings/automation/failure.hpp"
#include "bindings/automation/text.hpp"

namespace lumodevice::automation {

std::string Carried<std::string>::in(BSTR text) {
  static_assert(sizeof(OLECHAR) == sizeof(char16_t));
  return fromAutomation({reinterpret_cast<const char16_t*>(text), SysStringLen(text)});
}

BSTR Carried<std::string>::out(std::string_view bytes) {
  const std::u16string text = toAutomation(bytes);
  BSTR made = SysAllocStringLen(reinterpret_cast<const OLECHAR*>(text.data()),
                                static_cast<UINT>(text.size()));
  if (made == nullptr) {
    throw std::bad_alloc();
  }
  return made;
}

void convert(VARIANT& given, VARTYPE type, LCID locale, Variant& converted) {
  Variant plain;
  demand(VariantCopyInd(&plain.get(), &given));
  const VARTYPE found = V_VT(&plain.get());
  if (found == VT_ERROR) {
    throw ComFailure{V_ERROR(&plain.get()) == DISP_E_PARAMNOTFOUND ? DISP_E_PARAMNOTOPTIONAL
                                                                   : DISP_E_TYPEMISMATCH};
  }
  if (type == VT_UNKNOWN && found == VT_DISPATCH) {
    // Without asking the object: also nothing is a reference.
    V_VT(&plain.get()) = VT_UNKNOWN;
  }
  demand(VariantChangeTypeEx(&converted.get(), &plain.get(), locale, VARIANT_ALPHABOOL, type));
}

}  // namespace lumodevice::automation
