#include <algorithm>
#include <array>
#include <cstddef>
#include <cwchar>
#include <string_view>
#include <utility>

#include "bindings/automation/automation.hpp"
#include "bindings/automation/control_object.hpp"
#include "bindings/automation/member_call.hpp"

namespace lumodevice::automation {

namespace {

DISPID idOf(const Member& member) {
  return static_cast<DISPID>(member.dispatchId);
}

/// As languages without case write them.
bool isNamed(std::string_view name, const OLECHAR* wanted) {
  const auto lower = [](auto letter) {
    return letter >= 'A' && letter <= 'Z' ? letter - 'A' + 'a' : static_cast<int>(letter);
  };
  return std::equal(name.begin(), name.end(), wanted, wanted + std::wcslen(wanted),
                    [&lower](char one, OLECHAR other) { return lower(one) == lower(other); });
}

// Where a VARIANT has a value of a type.

VARIANT_BOOL& valueIn(VARIANT& variant, const VARIANT_BOOL* /*type*/) {
  return V_BOOL(&variant);
}
BSTR& valueIn(VARIANT& variant, const BSTR* /*type*/) {
  return V_BSTR(&variant);
}
IUnknown*& valueIn(VARIANT& variant, IUnknown* const* /*type*/) {
  return V_UNKNOWN(&variant);
}

/// Puts what came out into the VARIANT, which becomes its owner; null: nobody wants it.
template <typename Carried>
void give(typename Carried::Value came, VARIANT* result) {
  VARIANT unwanted;
  VARIANT& place = result != nullptr ? *result : unwanted;
  V_VT(&place) = Carried::kVartype;
  if constexpr (Carried::kVartype == VT_I2) {
    V_I2(&place) = came;
  } else {
    valueIn(place, &came) = came;
  }
  if constexpr (Carried::kVartype == VT_UNKNOWN) {
    if (came == nullptr) {
      // Languages that know dispatch objects alone ask whether it is nothing.
      V_VT(&place) = VT_DISPATCH;
    }
  }
  if (result == nullptr) {
    VariantClear(&unwanted);
  }
}

/// Runs a member with an argument of any type, and gives what comes out.
template <std::size_t Row>
void runLate(ControlObject& object, VARIANT* given, LCID locale, VARIANT* result) {
  using Call = MemberCall<Row>;
  typename Call::ResultValue came{};
  if constexpr (Call::kTakes) {
    windows::Variant argument;
    convert(*given, Call::ArgumentCarried::kVartype, locale, argument);
    const typename Call::ArgumentValue* value = nullptr;
    value = &valueIn(argument.get(), value);
    Call::run(object.component(), value, &came);
  } else {
    Call::run(object.component(), nullptr, &came);
  }
  if constexpr (Call::kGives) {
    give<typename Call::ResultCarried>(came, result);
  }
}

using LateCall = void (*)(ControlObject&, VARIANT*, LCID, VARIANT*);

template <std::size_t... Rows>
constexpr auto lateCalls(std::index_sequence<Rows...> /*rows*/) {
  return std::array<LateCall, sizeof...(Rows)>{&runLate<Rows>...};
}
constexpr auto kLateCalls = lateCalls(std::make_index_sequence<kMemberRows.size()>());

/// What callers name a row by: its identifier, and the flag under which it is called.
struct Address {
  DISPID id;
  WORD flag;
};

/// In the order of MemberKind.
constexpr std::array<WORD, 4> kFlags = {DISPATCH_PROPERTYGET, DISPATCH_PROPERTYPUT,
                                        DISPATCH_PROPERTYPUTREF, DISPATCH_METHOD};

constexpr auto kAddresses = [] {
  std::array<Address, kMemberRows.size()> addresses{};
  std::transform(kMemberRows.begin(), kMemberRows.end(), addresses.begin(), [](const Member& row) {
    return Address{static_cast<DISPID>(row.dispatchId),
                   kFlags.at(static_cast<std::size_t>(row.kind))};
  });
  return addresses;
}();

bool isObject(const VARIANT& value) {
  const bool inVariant = V_VT(&value) == (VT_VARIANT | VT_BYREF) && V_VARIANTREF(&value) != nullptr;
  const VARIANT& meant = inVariant ? *V_VARIANTREF(&value) : value;
  const auto type = static_cast<VARTYPE>(V_VT(&meant) & ~VT_BYREF);
  return type == VT_DISPATCH || type == VT_UNKNOWN;
}

/// The row that is meant, or the number of rows. Of the languages some have one kind of assignment
/// alone: an object that is put where only a reference can be is one.
std::size_t rowFor(DISPID id, WORD flags, const DISPPARAMS& given) {
  const auto find = [id](WORD wanted) {
    const auto row = std::find_if(
        kAddresses.begin(), kAddresses.end(),
        [&](const Address& address) { return address.id == id && (address.flag & wanted) != 0; });
    return static_cast<std::size_t>(row - kAddresses.begin());
  };
  const std::size_t row = find(flags);
  if (row == kMemberRows.size() && (flags & DISPATCH_PROPERTYPUT) != 0 && given.cArgs == 1 &&
      isObject(given.rgvarg[0])) {
    return find(DISPATCH_PROPERTYPUTREF);
  }
  return row;
}

/// What is put has a name of its own; an argument of a method is the first, if it is named at all.
bool namesFit(const Member& member, const DISPPARAMS& given) {
  const bool put =
      member.kind == MemberKind::PropertyPut || member.kind == MemberKind::PropertyPutReference;
  const DISPID name = put ? DISPID_PROPERTYPUT : 0;
  return given.cNamedArgs == 0 || (given.cNamedArgs == 1 && given.rgdispidNamedArgs[0] == name);
}

}  // namespace

HRESULT idsOfNames(REFIID reserved, LPOLESTR* names, UINT count, DISPID* ids) {
  if (reserved != IID_NULL) {
    return DISP_E_UNKNOWNINTERFACE;
  }
  if (names == nullptr || ids == nullptr || count == 0) {
    return E_INVALIDARG;
  }
  std::fill(ids, ids + count, DISPID_UNKNOWN);
  for (const Member& member : kMemberRows) {
    if (!isNamed(member.name, names[0])) {
      continue;
    }
    ids[0] = idOf(member);
    for (UINT i = 1; i < count; ++i) {
      if (member.kind == MemberKind::Method && isNamed(member.argument.name, names[i])) {
        ids[i] = 0;
      }
    }
  }
  return std::find(ids, ids + count, DISPID_UNKNOWN) == ids + count ? S_OK : DISP_E_UNKNOWNNAME;
}

HRESULT invoke(ControlObject& object, DISPID id, REFIID reserved, LCID locale, WORD flags,
               DISPPARAMS* given, VARIANT* result, UINT* wrongArgument) {
  if (reserved != IID_NULL) {
    return DISP_E_UNKNOWNINTERFACE;
  }
  if (given == nullptr || (given->cArgs > 0 && given->rgvarg == nullptr) ||
      (given->cNamedArgs > 0 && given->rgdispidNamedArgs == nullptr)) {
    return E_INVALIDARG;
  }
  if (result != nullptr) {
    V_VT(result) = VT_EMPTY;
  }
  const std::size_t row = rowFor(id, flags, *given);
  if (row == kMemberRows.size()) {
    return DISP_E_MEMBERNOTFOUND;
  }
  const Member& member = kMemberRows.at(row);
  const UINT arguments = member.argument.passing == Passing::None ? 0 : 1;
  if (given->cArgs != arguments) {
    return DISP_E_BADPARAMCOUNT;
  }
  if (!namesFit(member, *given)) {
    return DISP_E_PARAMNOTFOUND;
  }
  try {
    kLateCalls.at(row)(object, arguments == 0 ? nullptr : given->rgvarg, locale, result);
  } catch (const ComFailure& failure) {
    if (wrongArgument != nullptr) {
      *wrongArgument = 0;
    }
    return failure.result == E_NOINTERFACE ? DISP_E_TYPEMISMATCH : failure.result;
  }
  return S_OK;
}

}  // namespace lumodevice::automation
