#include "bindings/automation/persistence.hpp"

#include <array>
#include <cstdint>
#include <cwchar>
#include <iterator>
#include <string_view>

#include "bindings/automation/control_object.hpp"
#include "bindings/automation/guid.hpp"
#include "bindings/automation/identity.hpp"
#include "bindings/automation/values.hpp"

namespace lumodevice::automation {

namespace {

constexpr const wchar_t* kProperty = L"Exchanges";
constexpr std::array kNames = {L"Interleaved", L"InTurn"};
static_assert(static_cast<int>(Exchanges::Interleaved) == 0 &&
              static_cast<int>(Exchanges::InTurn) == 1);

/// Throws ComFailure(E_INVALIDARG) for another name.
Exchanges exchangesNamed(const wchar_t* name) {
  for (std::size_t i = 0; i < kNames.size(); ++i) {
    if (_wcsicmp(kNames.at(i), name) == 0) {
      return static_cast<Exchanges>(i);
    }
  }
  throw ComFailure{E_INVALIDARG};
}

/// What a stream holds.
struct Kept {
  std::uint32_t layout;
  std::uint32_t exchanges;
};
constexpr std::uint32_t kLayout = 1;

}  // namespace

HRESULT Persistence::GetClassID(CLSID* id) {
  if (id == nullptr) {
    return E_POINTER;
  }
  *id = guidOf(kClassId);
  return S_OK;
}

HRESULT Persistence::InitNew() {
  return object().entered([&] {
    object().setExchanges(Exchanges::Interleaved);
    return S_OK;
  });
}

// Nobody but a container changes the property, and by loading it.
HRESULT Persistence::IsDirty() {
  return S_FALSE;
}

HRESULT Persistence::Load(IStream* stream) {
  return object().entered([&]() -> HRESULT {
    if (stream == nullptr) {
      return E_POINTER;
    }
    Kept kept{};
    ULONG read = 0;
    demand(stream->Read(&kept, sizeof kept, &read));
    if (read != sizeof kept || kept.layout != kLayout || kept.exchanges >= kNames.size()) {
      return STG_E_DOCFILECORRUPT;
    }
    object().setExchanges(static_cast<Exchanges>(kept.exchanges));
    return S_OK;
  });
}

HRESULT Persistence::Save(IStream* stream, BOOL /*clearDirty*/) {
  return object().entered([&]() -> HRESULT {
    if (stream == nullptr) {
      return E_POINTER;
    }
    const Kept kept{kLayout, static_cast<std::uint32_t>(object().exchanges())};
    ULONG written = 0;
    demand(stream->Write(&kept, sizeof kept, &written));
    return written == sizeof kept ? S_OK : STG_E_MEDIUMFULL;
  });
}

HRESULT Persistence::GetSizeMax(ULARGE_INTEGER* size) {
  if (size == nullptr) {
    return E_POINTER;
  }
  size->QuadPart = sizeof(Kept);
  return S_OK;
}

HRESULT Persistence::Load(IPropertyBag* bag, IErrorLog* log) {
  return object().entered([&]() -> HRESULT {
    if (bag == nullptr) {
      return E_POINTER;
    }
    windows::Variant value;
    V_VT(&value.get()) = VT_BSTR;
    if (FAILED(bag->Read(kProperty, &value.get(), log))) {
      // It is not in there: a form of before, or one that never chose.
      return S_OK;
    }
    windows::Variant text;
    convert(value.get(), VT_BSTR, LOCALE_INVARIANT, text);
    const wchar_t* const name = V_BSTR(&text.get());
    object().setExchanges(exchangesNamed(name == nullptr ? L"" : name));
    return S_OK;
  });
}

HRESULT Persistence::Save(IPropertyBag* bag, BOOL /*clearDirty*/, BOOL saveAll) {
  return object().entered([&]() -> HRESULT {
    if (bag == nullptr) {
      return E_POINTER;
    }
    if (saveAll == FALSE && object().exchanges() == Exchanges::Interleaved) {
      return S_OK;
    }
    windows::Variant value;
    V_VT(&value.get()) = VT_BSTR;
    V_BSTR(&value.get()) =
        SysAllocString(kNames.at(static_cast<std::size_t>(object().exchanges())));
    return V_BSTR(&value.get()) == nullptr ? E_OUTOFMEMORY : bag->Write(kProperty, &value.get());
  });
}

}  // namespace lumodevice::automation
