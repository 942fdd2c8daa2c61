#pragma once

#include <string>
#include <string_view>

/// The one place that says how a text of the component becomes one of automation: one byte is one
/// character, the one with its number. So every answer arrives as it came, byte for byte and with
/// its length, and goes back as it was; NUL is a character like any other.
namespace lumodevice::automation {

[[nodiscard]] std::u16string toAutomation(std::string_view bytes);

/// Of the characters that are no bytes each UTF-16 unit becomes "?", as hosts are used to have it.
[[nodiscard]] std::string fromAutomation(std::u16string_view text);

}  // namespace lumodevice::automation
