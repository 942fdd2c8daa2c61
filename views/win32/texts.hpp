#pragma once

#include <string>
#include <string_view>

namespace lumodevice::win32 {

/// The bytes of a control's text as characters: UTF-8, or where they are none (an instrument
/// answers what it likes), each byte as the character of that number. A zero, at which the system
/// would end the text, is a blank.
[[nodiscard]] std::wstring shown(std::string_view bytes);

/// What was typed, in UTF-8.
[[nodiscard]] std::string typed(std::wstring_view text);

/// A caption with the letter marked that stands at byte `mnemonic`; toolkit::kNoMnemonic for none.
[[nodiscard]] std::wstring marked(std::string_view caption, int mnemonic);

/// A caption of which no letter is marked.
[[nodiscard]] std::wstring unmarked(std::wstring_view caption);

}  // namespace lumodevice::win32
