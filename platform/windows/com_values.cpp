#include "lumodevice/windows/com_values.hpp"

#include <algorithm>
#include <utility>

namespace lumodevice::windows {

Bstr::Bstr(std::string_view bytes)
    : text_(::SysAllocStringLen(nullptr, static_cast<UINT>(bytes.size()))) {
  if (text_ != nullptr) {
    std::transform(bytes.begin(), bytes.end(), text_,
                   [](char byte) { return static_cast<OLECHAR>(static_cast<std::uint8_t>(byte)); });
  }
}

BSTR Bstr::release() {
  return std::exchange(text_, nullptr);
}

std::string bytesOf(BSTR text) {
  std::string bytes(::SysStringLen(text), '\0');
  std::transform(text, text + bytes.size(), bytes.begin(), [](OLECHAR character) {
    constexpr OLECHAR kHighest = 0xFF;
    return character > kHighest ? '?' : static_cast<char>(static_cast<std::uint8_t>(character));
  });
  return bytes;
}

bool storeBlock(std::span<const std::uint8_t> block, VARIANT& value) {
  SAFEARRAY* const array = ::SafeArrayCreateVector(VT_UI1, 0, static_cast<ULONG>(block.size()));
  void* place = nullptr;
  if (array == nullptr || FAILED(::SafeArrayAccessData(array, &place))) {
    return false;
  }
  std::copy(block.begin(), block.end(), static_cast<std::uint8_t*>(place));
  (void)::SafeArrayUnaccessData(array);
  value.vt = VT_ARRAY | VT_UI1;
  value.parray = array;
  return true;
}

bool readBlock(const VARIANT& value, io::Bytes& block) {
  const VARIANT* given = &value;
  if (given->vt == (VT_BYREF | VT_VARIANT)) {
    given = given->pvarVal;
  }
  SAFEARRAY* array = nullptr;
  if (given->vt == (VT_ARRAY | VT_UI1)) {
    array = given->parray;
  } else if (given->vt == (VT_ARRAY | VT_UI1 | VT_BYREF)) {
    array = *given->pparray;
  }
  LONG first = 0;
  LONG last = -1;
  void* place = nullptr;
  if (array == nullptr || ::SafeArrayGetDim(array) != 1 ||
      FAILED(::SafeArrayGetLBound(array, 1, &first)) ||
      FAILED(::SafeArrayGetUBound(array, 1, &last)) ||
      FAILED(::SafeArrayAccessData(array, &place))) {
    return false;
  }
  const auto* const bytes = static_cast<const std::uint8_t*>(place);
  block.assign(bytes, bytes + (last - first + 1));
  (void)::SafeArrayUnaccessData(array);
  return true;
}

}  // namespace lumodevice::windows
