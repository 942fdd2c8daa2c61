/// The members as late-bound languages call them.
#include <cwctype>
#include <string>
#include <vector>

#include "lumodevice/members.hpp"
#include "tests/bindings/automation/windows/control_bench.hpp"

namespace lumodevice::automation {
namespace {

class Dispatch : public ControlBench {
 protected:
  const ComPointer<IDispatch> load = control();
};

std::wstring wideName(std::string_view name) {
  return {name.begin(), name.end()};
}

DISPID idOf(const Member& member) {
  return static_cast<DISPID>(member.dispatchId);
}

/// What a getter gives and what fits an argument.
VARTYPE vartypeOf(Type type) {
  switch (type) {
    case Type::Boolean:
      return VT_BOOL;
    case Type::Integer:
      return VT_I2;
    case Type::String:
      return VT_BSTR;
    case Type::FormattedIO488:
      return VT_DISPATCH;
    default:
      return VT_EMPTY;
  }
}

WORD flagOf(MemberKind kind) {
  switch (kind) {
    case MemberKind::PropertyGet:
      return DISPATCH_PROPERTYGET;
    case MemberKind::PropertyPut:
      return DISPATCH_PROPERTYPUT;
    case MemberKind::PropertyPutReference:
      return DISPATCH_PROPERTYPUTREF;
    case MemberKind::Method:
      break;
  }
  return DISPATCH_METHOD;
}

/// What can be called without an instrument and without a search.
bool isQuick(const Member& member) {
  return member.name != "AutoConnect";
}

TEST_F(Dispatch, everyNameLeadsToItsIdentifierInAnyCase) {
  for (const Member& member : kMemberRows) {
    std::wstring name = wideName(member.name);
    EXPECT_EQ(automation::idOf(*load.get(), name.c_str()), idOf(member)) << member.name;
    for (wchar_t& letter : name) {
      letter = static_cast<wchar_t>(std::towupper(letter));
    }
    EXPECT_EQ(automation::idOf(*load.get(), name.c_str()), idOf(member)) << member.name;
  }
}

TEST_F(Dispatch, namesOfArgumentsOfMethodsAreKnown) {
  wchar_t member[] = L"SendCmd";
  wchar_t argument[] = L"svar";
  wchar_t* names[] = {member, argument};
  DISPID ids[2] = {};
  EXPECT_EQ(load->GetIDsOfNames(IID_NULL, names, 2, LOCALE_USER_DEFAULT, ids), S_OK);
  EXPECT_EQ(ids[0], 0x60030017);
  EXPECT_EQ(ids[1], 0);
  wchar_t unknown[] = L"nothing";
  names[1] = unknown;
  EXPECT_EQ(load->GetIDsOfNames(IID_NULL, names, 2, LOCALE_USER_DEFAULT, ids), DISP_E_UNKNOWNNAME);
  EXPECT_EQ(ids[0], 0x60030017);
  EXPECT_EQ(ids[1], DISPID_UNKNOWN);
}

TEST_F(Dispatch, everyMemberRunsByItsIdentifierAndGivesItsType) {
  for (const Member& member : kMemberRows) {
    if (!isQuick(member)) {
      continue;
    }
    const windows::Bstr text("");
    VARIANT argument = ofType(vartypeOf(member.argument.type));
    if (member.argument.type == Type::String) {
      argument = textVariant(text);
    } else if (member.argument.type == Type::FormattedIO488) {
      V_DISPATCH(&argument) = nullptr;
    }
    Outcome outcome;
    call(*load.get(), idOf(member), flagOf(member.kind), &argument,
         member.argument.type == Type::None ? 0 : 1, outcome);
    EXPECT_EQ(outcome.result, S_OK) << member.name;
    EXPECT_EQ(V_VT(&outcome.value.get()), vartypeOf(member.result)) << member.name;
  }
}

/// By value, by reference, in a VARIANT by reference: and what was passed stays as it was.
TEST_F(Dispatch, argumentsComeInEveryWayThatLanguagesPassThem) {
  const windows::Bstr text("0123");
  VARIANT value = textVariant(text);
  BSTR own = text.get();
  VARIANT byReference = ofType(VT_BSTR | VT_BYREF);
  V_BSTRREF(&byReference) = &own;
  VARIANT inVariant = ofType(VT_VARIANT | VT_BYREF);
  V_VARIANTREF(&inVariant) = &value;
  for (VARIANT* way : {&value, &byReference, &inVariant}) {
    VARIANT empty = ofType(VT_EMPTY);
    ASSERT_EQ(put(*load.get(), L"IDN", empty), S_OK);
    ASSERT_EQ(put(*load.get(), L"IDN", *way), S_OK);
    std::wstring came;
    ASSERT_EQ(getText(*load.get(), L"IDN", came), S_OK);
    EXPECT_EQ(came, L"0123");
    EXPECT_EQ(run(*load.get(), L"SendCmd", *way), S_OK);
    EXPECT_EQ(run(*load.get(), L"GetPresetFile", *way), S_OK);
  }
  EXPECT_EQ(own, text.get());
  EXPECT_EQ(view(text), L"0123");

  VARIANT_BOOL flag = VARIANT_FALSE;
  VARIANT flagByReference = ofType(VT_BOOL | VT_BYREF);
  V_BOOLREF(&flagByReference) = &flag;
  EXPECT_EQ(put(*load.get(), L"DisplayCmd", flagByReference), S_OK);
  EXPECT_EQ(put(*load.get(), L"AutoQuery", flagByReference), S_OK);
  EXPECT_EQ(flag, VARIANT_FALSE);
}

TEST_F(Dispatch, valuesOfOtherTypesAreConvertedAsTheSystemDoes) {
  for (const auto& [value, expected] :
       std::vector<std::pair<VARIANT, VARIANT_BOOL>>{{numberVariant(2), VARIANT_TRUE},
                                                     {numberVariant(0), VARIANT_FALSE},
                                                     {ofType(VT_EMPTY), VARIANT_FALSE}}) {
    VARIANT given = value;
    ASSERT_EQ(put(*load.get(), L"bDevAvaliable", given), S_OK);
    Outcome outcome;
    call(*load.get(), 0x40030007, DISPATCH_PROPERTYGET, outcome);
    EXPECT_EQ(V_BOOL(&outcome.value.get()), expected);
  }
  VARIANT number = numberVariant(1234);
  ASSERT_EQ(put(*load.get(), L"IDN", number), S_OK);
  std::wstring text;
  ASSERT_EQ(getText(*load.get(), L"IDN", text), S_OK);
  EXPECT_EQ(text, L"1234");
}

struct BadValue {
  const char* what;
  VARIANT value;
  HRESULT result;
};

TEST_F(Dispatch, valuesThatDoNotFitAreRefused) {
  VARIANT missing = ofType(VT_ERROR);
  V_ERROR(&missing) = DISP_E_PARAMNOTFOUND;
  VARIANT error = ofType(VT_ERROR);
  V_ERROR(&error) = E_FAIL;
  VARIANT null = ofType(VT_NULL);
  VARIANT object = ofType(VT_DISPATCH);
  V_DISPATCH(&object) = load.get();
  VARIANT array = ofType(VT_ARRAY | VT_UI1);
  V_ARRAY(&array) = SafeArrayCreateVector(VT_UI1, 0, 3);
  VARIANT nowhere = ofType(VT_BSTR | VT_BYREF);
  V_BSTRREF(&nowhere) = nullptr;
  VARIANT variantNowhere = ofType(VT_VARIANT | VT_BYREF);
  V_VARIANTREF(&variantNowhere) = nullptr;
  VARIANT inVariantNowhere = ofType(VT_VARIANT | VT_BYREF);
  V_VARIANTREF(&inVariantNowhere) = &nowhere;
  const BadValue rows[] = {
      {"a reference to nowhere", nowhere, DISP_E_TYPEMISMATCH},
      {"a variant nowhere", variantNowhere, DISP_E_TYPEMISMATCH},
      {"in a variant a reference to nowhere", inVariantNowhere, DISP_E_TYPEMISMATCH},
      {"left out", missing, DISP_E_PARAMNOTOPTIONAL},
      {"an error", error, DISP_E_TYPEMISMATCH},
      {"null", null, DISP_E_TYPEMISMATCH},
      {"an array", array, DISP_E_TYPEMISMATCH}};
  for (const Member& member : kMemberRows) {
    if (member.argument.type == Type::None) {
      continue;
    }
    for (const BadValue& row : rows) {
      VARIANT given = row.value;
      Outcome outcome;
      call(*load.get(), idOf(member), flagOf(member.kind), &given, 1, outcome);
      EXPECT_EQ(outcome.result, row.result) << member.name << ": " << row.what;
      EXPECT_EQ(outcome.wrongArgument, 0U) << member.name << ": " << row.what;
    }
  }
  const windows::Bstr letters("neither");
  VARIANT noFlag = textVariant(letters);
  EXPECT_EQ(put(*load.get(), L"AutoQuery", noFlag), DISP_E_TYPEMISMATCH);
  VARIANT notFormatted = object;
  EXPECT_EQ(put(*load.get(), L"devZAN", notFormatted), DISP_E_TYPEMISMATCH);
  SafeArrayDestroy(V_ARRAY(&array));
}

TEST_F(Dispatch, anotherNumberOfArgumentsIsRefused) {
  VARIANT arguments[3] = {ofType(VT_EMPTY), ofType(VT_EMPTY), ofType(VT_EMPTY)};
  for (const Member& member : kMemberRows) {
    const UINT right = member.argument.type == Type::None ? 0 : 1;
    for (UINT count = 0; count < 3; ++count) {
      if (count != right) {
        Outcome outcome;
        call(*load.get(), idOf(member), flagOf(member.kind), arguments, count, outcome);
        EXPECT_EQ(outcome.result, DISP_E_BADPARAMCOUNT) << member.name << ", " << count;
      }
    }
  }
}

TEST_F(Dispatch, whatIsNotThereIsNotFound) {
  Outcome outcome;
  call(*load.get(), 0x60030018, DISPATCH_METHOD, outcome);
  EXPECT_EQ(outcome.result, DISP_E_MEMBERNOTFOUND);
  call(*load.get(), DISPID_VALUE, DISPATCH_PROPERTYGET, outcome);
  EXPECT_EQ(outcome.result, DISP_E_MEMBERNOTFOUND);
  // A property that is only read, one that is only written, a method that is read.
  VARIANT value = ofType(VT_EMPTY);
  EXPECT_EQ(put(*load.get(), L"ResultStr", value), DISP_E_MEMBERNOTFOUND);
  call(*load.get(), automation::idOf(*load.get(), L"DisplayCmd"), DISPATCH_PROPERTYGET, outcome);
  EXPECT_EQ(outcome.result, DISP_E_MEMBERNOTFOUND);
  call(*load.get(), automation::idOf(*load.get(), L"ShowControl"), DISPATCH_PROPERTYGET, outcome);
  EXPECT_EQ(outcome.result, DISP_E_MEMBERNOTFOUND);
  EXPECT_EQ(automation::idOf(*load.get(), L"Connect"), DISPID_UNKNOWN);
  EXPECT_EQ(automation::idOf(*load.get(), L""), DISPID_UNKNOWN);
}

TEST_F(Dispatch, callsThatAreNoneAreRefused) {
  DISPPARAMS none{};
  EXPECT_EQ(
      load->Invoke(0x6003001d, IID_IUnknown, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr),
      DISP_E_UNKNOWNINTERFACE);
  EXPECT_EQ(
      load->Invoke(0x6003001d, IID_NULL, 0, DISPATCH_METHOD, nullptr, nullptr, nullptr, nullptr),
      E_INVALIDARG);
  DISPPARAMS missing{nullptr, nullptr, 1, 0};
  EXPECT_EQ(
      load->Invoke(0x60030017, IID_NULL, 0, DISPATCH_METHOD, &missing, nullptr, nullptr, nullptr),
      E_INVALIDARG);
  missing = {nullptr, nullptr, 0, 1};
  EXPECT_EQ(
      load->Invoke(0x6003001d, IID_NULL, 0, DISPATCH_METHOD, &missing, nullptr, nullptr, nullptr),
      E_INVALIDARG);
  // Nobody wants the result, or to know which argument was wrong.
  EXPECT_EQ(
      load->Invoke(0x6003001a, IID_NULL, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr),
      S_OK);
  VARIANT value = ofType(VT_NULL);
  DISPID name = 5;
  DISPPARAMS misnamed{&value, &name, 1, 1};
  EXPECT_EQ(
      load->Invoke(0x60030017, IID_NULL, 0, DISPATCH_METHOD, &misnamed, nullptr, nullptr, nullptr),
      DISP_E_PARAMNOTFOUND);
  name = 0;
  EXPECT_EQ(
      load->Invoke(0x60030017, IID_NULL, 0, DISPATCH_METHOD, &misnamed, nullptr, nullptr, nullptr),
      DISP_E_TYPEMISMATCH);
}

std::string allBytes() {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) {
    bytes += static_cast<char>(byte);
  }
  return bytes;
}

/// One byte is one character, NUL too.
TEST_F(Dispatch, textsKeepTheirCharactersAndTheirLength) {
  for (const std::string& text : {allBytes(), std::string(1 << 20, 'x'), std::string()}) {
    const windows::Bstr passed(text);
    VARIANT value = textVariant(passed);
    ASSERT_EQ(put(*load.get(), L"IDN", value), S_OK);
    std::wstring came;
    ASSERT_EQ(getText(*load.get(), L"IDN", came), S_OK);
    EXPECT_TRUE(came == view(passed)) << text.size();
    EXPECT_EQ(run(*load.get(), L"SendCmd", value), S_OK);
  }
}

TEST_F(Dispatch, charactersThatAreNoBytesBecomeQuestionMarks) {
  windows::Variant value;
  V_VT(&value.get()) = VT_BSTR;
  V_BSTR(&value.get()) = SysAllocString(L"2 \x03A9, 3 \x20AC");
  ASSERT_EQ(put(*load.get(), L"IDN", value.get()), S_OK);
  std::wstring came;
  ASSERT_EQ(getText(*load.get(), L"IDN", came), S_OK);
  EXPECT_EQ(came, L"2 ?, 3 ?");
}

TEST_F(Dispatch, unconnectedMembersGiveNothing) {
  std::int32_t number = -1;
  EXPECT_EQ(getNumber(*load.get(), L"ChCount", number), S_OK);
  EXPECT_EQ(number, 0);
  EXPECT_EQ(getNumber(*load.get(), L"ConnStyle", number), S_OK);
  EXPECT_EQ(number, 0);
  std::wstring text = L"-";
  EXPECT_EQ(getText(*load.get(), L"ErrMessage", text), S_OK);
  EXPECT_EQ(text, L"");
}

TEST_F(Dispatch, drivesTheInstrumentOfTheVisaLibrary) {
  Outcome outcome;
  call(*load.get(), automation::idOf(*load.get(), L"AutoConnect"), DISPATCH_METHOD, outcome);
  ASSERT_EQ(outcome.result, S_OK);
  EXPECT_EQ(V_BOOL(&outcome.value.get()), VARIANT_TRUE);
  std::wstring identity;
  EXPECT_EQ(getText(*load.get(), L"IDN", identity), S_OK);
  EXPECT_NE(identity.find(L"ZAN"), std::wstring::npos);
  std::int32_t number = 0;
  EXPECT_EQ(getNumber(*load.get(), L"ConnStyle", number), S_OK);
  EXPECT_EQ(number, 2);
  EXPECT_EQ(getNumber(*load.get(), L"ChCount", number), S_OK);
  EXPECT_GT(number, 0);
  const windows::Bstr query(":CHAN?");
  VARIANT argument = textVariant(query);
  EXPECT_EQ(run(*load.get(), L"SendCmd", argument), S_OK);
  std::wstring answer;
  EXPECT_EQ(getText(*load.get(), L"ResultStr", answer), S_OK);
  EXPECT_EQ(answer.substr(0, 1), L"1");
}

}  // namespace
}  // namespace lumodevice::automation
