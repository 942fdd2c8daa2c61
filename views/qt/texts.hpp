#pragma once

#include <QtCore/QString>
#include <string>
#include <string_view>

namespace lumodevice::qt {

/// The bytes of a control's text as characters: UTF-8, or where they are none (an instrument
/// answers what it likes), each byte as the character of that number.
[[nodiscard]] QString shown(std::string_view bytes);

/// What was typed, in UTF-8.
[[nodiscard]] std::string typed(const QString& text);

/// A caption for Qt, with the letter marked that stands at byte `mnemonic`; toolkit::kNoMnemonic
/// for none.
[[nodiscard]] QString marked(std::string_view caption, int mnemonic);

/// A text that Qt takes for plain text wherever it might look for markup (tool tips).
[[nodiscard]] QString plain(std::string_view text);

}  // namespace lumodevice::qt
