#include "views/win32/texts.hpp"

#include <algorithm>

#include "views/win32/windows.hpp"

namespace lumodevice::win32 {

std::wstring shown(std::string_view bytes) {
  if (bytes.empty()) {
    return {};
  }
  const int size = static_cast<int>(bytes.size());
  const int length =
      MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, bytes.data(), size, nullptr, 0);
  std::wstring text(static_cast<std::size_t>(length > 0 ? length : size), L'\0');
  if (length > 0) {
    MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, bytes.data(), size, text.data(), length);
  } else {
    std::transform(bytes.begin(), bytes.end(), text.begin(), [](char byte) {
      return static_cast<wchar_t>(static_cast<unsigned char>(byte));
    });
  }
  std::replace(text.begin(), text.end(), L'\0', L' ');
  return text;
}

std::string typed(std::wstring_view text) {
  if (text.empty()) {
    return {};
  }
  const int size = static_cast<int>(text.size());
  const int length =
      WideCharToMultiByte(CP_UTF8, 0, text.data(), size, nullptr, 0, nullptr, nullptr);
  std::string bytes(static_cast<std::size_t>(length), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), size, bytes.data(), length, nullptr, nullptr);
  return bytes;
}

std::wstring unmarked(std::wstring_view caption) {
  std::wstring text;
  for (const wchar_t letter : caption) {
    text.append(letter == L'&' ? 2 : 1, letter);
  }
  return text;
}

std::wstring marked(std::string_view caption, int mnemonic) {
  const auto letter = static_cast<std::size_t>(mnemonic);
  if (mnemonic < 0 || letter >= caption.size() || caption[letter] == '&') {
    return unmarked(shown(caption));
  }
  return unmarked(shown(caption.substr(0, letter))) + L'&' +
         unmarked(shown(caption.substr(letter)));
}

}  // namespace lumodevice::win32
