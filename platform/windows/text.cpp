#include "platform/windows/text.hpp"

#include <windows.h>

namespace lumodevice::windows {

std::wstring wide(std::string_view text) {
  const int size = static_cast<int>(text.size());
  std::wstring made(
      static_cast<std::size_t>(::MultiByteToWideChar(CP_UTF8, 0, text.data(), size, nullptr, 0)),
      L'\0');
  (void)::MultiByteToWideChar(CP_UTF8, 0, text.data(), size, made.data(),
                              static_cast<int>(made.size()));
  return made;
}

std::string narrow(std::wstring_view text) {
  const int size = static_cast<int>(text.size());
  std::string made(static_cast<std::size_t>(::WideCharToMultiByte(CP_UTF8, 0, text.data(), size,
                                                                  nullptr, 0, nullptr, nullptr)),
                   '\0');
  (void)::WideCharToMultiByte(CP_UTF8, 0, text.data(), size, made.data(),
                              static_cast<int>(made.size()), nullptr, nullptr);
  return made;
}

std::string errorText(std::uint32_t error) {
  wchar_t* words = nullptr;
  const DWORD size = ::FormatMessageW(
      FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
      nullptr, error, 0, reinterpret_cast<wchar_t*>(&words), 0, nullptr);
  std::string text = narrow({words, size});
  ::LocalFree(words);
  text.erase(text.find_last_not_of("\r\n .") + 1);
  return text.empty() ? "error " + std::to_string(error) : text;
}

}  // namespace lumodevice::windows
