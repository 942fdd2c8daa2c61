#pragma once

#include <string>
#include <string_view>

#include "lumodevice/toolkit/picture.hpp"

namespace zanctl {

/// The picture drawn in 24-bit colours on a terminal, two points above each other to the character,
/// each the mean of `step` x `step` points of the picture; what does not fill a character is left
/// out. Every line starts with `indent`.
[[nodiscard]] std::string preview(const lumodevice::toolkit::Picture& picture, int step,
                                  std::string_view indent);

/// The same in characters from blank to "@", the brightest of the picture in "@", for a terminal
/// without colours.
[[nodiscard]] std::string previewInShades(const lumodevice::toolkit::Picture& picture, int step,
                                          std::string_view indent);

}  // namespace zanctl
