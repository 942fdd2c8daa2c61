#include "tests/bindings/automation/windows/control_bench.hpp"

#include <cstdlib>
#include <stdexcept>

namespace lumodevice::automation {

ControlBench::ControlBench() {
  SetEnvironmentVariableA("LUMODEVICE_VISA_LIBRARY", ZANSIM_VISA_LIBRARY);
  OleInitialize(nullptr);
  file_ = LoadLibraryA(LUMODEVICE_OCX);
  if (file_ == nullptr) {
    throw std::runtime_error("cannot load " LUMODEVICE_OCX);
  }
}

ControlBench::~ControlBench() {
  EXPECT_EQ(exported<Plain>("DllCanUnloadNow")(), S_OK) << "something of the control is still held";
  FreeLibrary(file_);
  OleUninitialize();
}

ComPointer<IClassFactory> ControlBench::factory() const {
  ComPointer<IClassFactory> made;
  const auto get = exported<GetClassObject>("DllGetClassObject");
  EXPECT_EQ(get(guidOf(kClassId), IID_IClassFactory, made.untypedOut()), S_OK);
  return made;
}

ComPointer<IDispatch> ControlBench::control() const {
  ComPointer<IDispatch> made;
  EXPECT_EQ(factory()->CreateInstance(nullptr, IID_IDispatch, made.untypedOut()), S_OK);
  return made;
}

void call(IDispatch& object, DISPID id, WORD flags, VARIANT* arguments, UINT count,
          Outcome& outcome) {
  DISPID put = DISPID_PROPERTYPUT;
  const bool puts = (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0;
  DISPPARAMS given{arguments, puts ? &put : nullptr, count, puts ? 1U : 0U};
  VariantClear(&outcome.value.get());
  outcome.result = object.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &given,
                                 &outcome.value.get(), nullptr, &outcome.wrongArgument);
}

void call(IDispatch& object, DISPID id, WORD flags, Outcome& outcome) {
  call(object, id, flags, nullptr, 0, outcome);
}

DISPID idOf(IDispatch& object, const wchar_t* name) {
  auto* asked = const_cast<wchar_t*>(name);
  DISPID id = DISPID_UNKNOWN;
  object.GetIDsOfNames(IID_NULL, &asked, 1, LOCALE_USER_DEFAULT, &id);
  return id;
}

HRESULT getText(IDispatch& object, const wchar_t* name, std::wstring& text) {
  Outcome outcome;
  call(object, idOf(object, name), DISPATCH_PROPERTYGET | DISPATCH_METHOD, outcome);
  if (SUCCEEDED(outcome.result)) {
    EXPECT_EQ(V_VT(&outcome.value.get()), VT_BSTR);
    const BSTR came = V_BSTR(&outcome.value.get());
    text.assign(came, SysStringLen(came));
  }
  return outcome.result;
}

HRESULT getNumber(IDispatch& object, const wchar_t* name, std::int32_t& number) {
  Outcome outcome;
  call(object, idOf(object, name), DISPATCH_PROPERTYGET | DISPATCH_METHOD, outcome);
  if (SUCCEEDED(outcome.result)) {
    number = V_I2(&outcome.value.get());
  }
  return outcome.result;
}

HRESULT put(IDispatch& object, const wchar_t* name, VARIANT& value) {
  Outcome outcome;
  call(object, idOf(object, name), DISPATCH_PROPERTYPUT, &value, 1, outcome);
  return outcome.result;
}

HRESULT run(IDispatch& object, const wchar_t* name, VARIANT& argument) {
  Outcome outcome;
  call(object, idOf(object, name), DISPATCH_METHOD, &argument, 1, outcome);
  return outcome.result;
}

std::wstring_view view(const windows::Bstr& text) {
  return {text.get(), SysStringLen(text.get())};
}

VARIANT textVariant(const windows::Bstr& text) {
  VARIANT variant;
  V_VT(&variant) = VT_BSTR;
  V_BSTR(&variant) = text.get();
  return variant;
}

VARIANT boolVariant(bool value) {
  VARIANT variant;
  V_VT(&variant) = VT_BOOL;
  V_BOOL(&variant) = value ? VARIANT_TRUE : VARIANT_FALSE;
  return variant;
}

VARIANT numberVariant(std::int32_t value) {
  VARIANT variant;
  V_VT(&variant) = VT_I4;
  V_I4(&variant) = value;
  return variant;
}

VARIANT ofType(VARTYPE type) {
  VARIANT variant;
  VariantInit(&variant);
  V_VT(&variant) = type;
  return variant;
}

}  // namespace lumodevice::automation
