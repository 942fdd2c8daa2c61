#pragma once

#include <string>
#include <string_view>

#include "lumodevice/toolkit/picture.hpp"

/// Pictures as files.
namespace zanctl {

/// Whether a file of that name is to be a PNG file: it ends in ".png", in any case.
[[nodiscard]] bool namesPng(std::string_view name);

/// The bytes of a PNG file; `picture` is not empty.
[[nodiscard]] std::string pngFile(const lumodevice::toolkit::Picture& picture);

}  // namespace zanctl
