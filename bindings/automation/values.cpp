#include "bindings/automation/values.hpp"

#include <new>

#include "bindings/automation/failure.hpp"
#include "lumodevice/io/fault.hpp"
#include "lumodevice/windows/visa_com.hpp"

namespace lumodevice::automation {

BSTR Carried<std::string>::out(std::string_view bytes) {
  windows::Bstr text(bytes);
  if (text.get() == nullptr) {
    throw std::bad_alloc();
  }
  return text.release();
}

std::shared_ptr<io::FormattedIO488> Carried<std::shared_ptr<io::FormattedIO488>>::in(
    IUnknown* object) {
  try {
    return windows::fromCom(object);
  } catch (const io::VisaComFault&) {
    throw ComFailure{E_NOINTERFACE};
  }
}

IUnknown* Carried<std::shared_ptr<io::FormattedIO488>>::out(
    const std::shared_ptr<io::FormattedIO488>& object) {
  return windows::comOf(object);
}

namespace {

bool isNull(const VARIANT& given) {
  return (V_VT(&given) & VT_BYREF) != 0 && V_BYREF(&given) == nullptr;
}

/// A reference to nowhere, which the system would follow. (One to a variant that refers to another
/// it refuses by itself.)
bool leadsNowhere(const VARIANT& given) {
  return isNull(given) ||
         (V_VT(&given) == (VT_VARIANT | VT_BYREF) && isNull(*V_VARIANTREF(&given)));
}

}  // namespace

void convert(VARIANT& given, VARTYPE type, LCID locale, windows::Variant& converted) {
  if (leadsNowhere(given)) {
    throw ComFailure{DISP_E_TYPEMISMATCH};
  }
  windows::Variant plain;
  demand(VariantCopyInd(&plain.get(), &given));
  const VARTYPE found = V_VT(&plain.get());
  if (found == VT_ERROR) {
    throw ComFailure{V_ERROR(&plain.get()) == DISP_E_PARAMNOTFOUND ? DISP_E_PARAMNOTOPTIONAL
                                                                   : DISP_E_TYPEMISMATCH};
  }
  if ((found & VT_ARRAY) != 0) {
    // The system would take bytes for the two halves of characters.
    throw ComFailure{DISP_E_TYPEMISMATCH};
  }
  if (type == VT_UNKNOWN && found == VT_DISPATCH) {
    // Without asking the object: also nothing is a reference.
    V_VT(&plain.get()) = VT_UNKNOWN;
  }
  demand(VariantChangeTypeEx(&converted.get(), &plain.get(), locale, VARIANT_ALPHABOOL, type));
}

}  // namespace lumodevice::automation
