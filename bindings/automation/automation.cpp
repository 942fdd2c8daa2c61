#include "bindings/automation/automation.hpp"

#include <array>
#include <cstddef>
#include <type_traits>
#include <utility>

#include "bindings/automation/class_info.hpp"
#include "bindings/automation/control_object.hpp"
#include "bindings/automation/guid.hpp"
#include "bindings/automation/identity.hpp"
#include "bindings/automation/member_call.hpp"

namespace lumodevice::automation {

namespace {

// Callers look at the first word.
static_assert(std::is_standard_layout_v<Automation>);

using Function = void (*)();

// The functions of IUnknown and IDispatch, as the table has them.

HRESULT STDMETHODCALLTYPE queryInterface(Automation* self, REFIID iid, void** out) {
  return self->object().whole().QueryInterface(iid, out);
}

ULONG STDMETHODCALLTYPE addRef(Automation* self) {
  return self->object().whole().AddRef();
}

ULONG STDMETHODCALLTYPE release(Automation* self) {
  return self->object().whole().Release();
}

HRESULT STDMETHODCALLTYPE getTypeInfoCount(Automation* /*self*/, UINT* count) {
  if (count == nullptr) {
    return E_POINTER;
  }
  *count = 1;
  return S_OK;
}

HRESULT STDMETHODCALLTYPE getTypeInfo(Automation* self, UINT index, LCID /*locale*/,
                                      ITypeInfo** info) {
  return self->object().entered([&]() -> HRESULT {
    if (info == nullptr) {
      return E_POINTER;
    }
    *info = nullptr;
    return index != 0 ? DISP_E_BADINDEX : typeInformation(guidOf(kInterfaceId), info);
  });
}

HRESULT STDMETHODCALLTYPE getIdsOfNames(Automation* self, REFIID reserved, LPOLESTR* names,
                                        UINT count, LCID /*locale*/, DISPID* ids) {
  return self->object().entered([&] { return idsOfNames(reserved, names, count, ids); });
}

HRESULT STDMETHODCALLTYPE invokeMember(Automation* self, DISPID id, REFIID reserved, LCID locale,
                                       WORD flags, DISPPARAMS* given, VARIANT* result,
                                       EXCEPINFO* /*exception*/, UINT* wrongArgument) {
  return self->object().entered([&] {
    return invoke(self->object(), id, reserved, locale, flags, given, result, wrongArgument);
  });
}

/// A member as the table has it. `words` are what the caller passes: the argument, by value or by
/// reference, and the place for the result, as far as the member has them.
template <std::size_t Row, typename... Words>
HRESULT STDMETHODCALLTYPE member(Automation* self, Words... words) {
  using Call = MemberCall<Row>;
  return self->object().entered([&]() -> HRESULT {
    const std::tuple<Words...> passed(words...);
    const typename Call::ArgumentValue* argument = nullptr;
    typename Call::ResultValue* result = nullptr;
    if constexpr (Call::kTakes) {
      if constexpr (kMemberRows[Row].argument.passing == Passing::ByReference) {
        argument = std::get<0>(passed);
      } else {
        argument = &std::get<0>(passed);
      }
    }
    if constexpr (Call::kGives) {
      result = std::get<sizeof...(Words) - 1>(passed);
    }
    if ((Call::kTakes && argument == nullptr) || (Call::kGives && result == nullptr)) {
      return E_POINTER;
    }
    if constexpr (Call::kGives) {
      *result = {};
    }
    Call::run(self->object().component(), argument, result);
    return S_OK;
  });
}

template <std::size_t Row>
Function memberFunction() {
  using Call = MemberCall<Row>;
  using Result = typename Call::ResultValue*;
  using Passed = std::conditional_t<kMemberRows[Row].argument.passing == Passing::ByReference,
                                    typename Call::ArgumentValue*, typename Call::ArgumentValue>;
  if constexpr (Call::kTakes && Call::kGives) {
    return reinterpret_cast<Function>(&member<Row, Passed, Result>);
  } else if constexpr (Call::kTakes) {
    return reinterpret_cast<Function>(&member<Row, Passed>);
  } else if constexpr (Call::kGives) {
    return reinterpret_cast<Function>(&member<Row, Result>);
  } else {
    return reinterpret_cast<Function>(&member<Row>);
  }
}

template <std::size_t... Rows>
auto tableOfFunctions(std::index_sequence<Rows...> /*rows*/) {
  return std::to_array<Function>({
      reinterpret_cast<Function>(&queryInterface),
      reinterpret_cast<Function>(&addRef),
      reinterpret_cast<Function>(&release),
      reinterpret_cast<Function>(&getTypeInfoCount),
      reinterpret_cast<Function>(&getTypeInfo),
      reinterpret_cast<Function>(&getIdsOfNames),
      reinterpret_cast<Function>(&invokeMember),
      memberFunction<Rows>()...,
  });
}

const void* functions() {
  static const auto table = tableOfFunctions(std::make_index_sequence<kMemberRows.size()>());
  return table.data();
}

}  // namespace

Automation::Automation(ControlObject& object) : functions_(functions()), object_(&object) {}

}  // namespace lumodevice::automation
