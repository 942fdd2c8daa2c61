#include "lumodevice/windows/information_box.hpp"

#include "platform/windows/text.hpp"

namespace lumodevice::windows {

/// The operator knows the boxes by the program, which is what its window is called.
void InformationBoxes::operator()(std::string_view text) const {
  const HWND given = owner_ ? owner_() : nullptr;
  const HWND owner = ::IsWindow(given) != 0 ? ::GetAncestor(given, GA_ROOT) : nullptr;
  std::wstring title(owner == nullptr ? 0 : static_cast<std::size_t>(::GetWindowTextLengthW(owner)),
                     L'\0');
  if (!title.empty()) {
    (void)::GetWindowTextW(owner, title.data(), static_cast<int>(title.size()) + 1);
  }
  ::MessageBoxW(owner, wide(text).c_str(), title.empty() ? L"LumoDevice" : title.c_str(),
                MB_OK | MB_ICONINFORMATION | (owner == nullptr ? MB_TASKMODAL : 0U));
}

}  // namespace lumodevice::windows
