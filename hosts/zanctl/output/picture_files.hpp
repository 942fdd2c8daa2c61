#pragma once

#include <string>
#include <string_view>

#include "hosts/zanctl/output/output.hpp"
#include "lumodevice/toolkit/picture.hpp"

/// Pictures as files.
namespace zanctl {

/// Whether a file of that name is to be a PNG file: it ends in ".png", in any case.
[[nodiscard]] bool namesPng(std::string_view name);

/// Throws Unusable for a name that asks for a picture of another kind, as one that ends in ".jpg":
/// a bitmap under such a name would be read by no other program. Throws it, too, for a PNG on a
/// machine without the library that writes one.
void checkPictureName(std::string_view name);

/// Throws Unusable where this machine makes no PNG files.
void checkPngWriter();

/// The bytes of a PNG file; `picture` is not empty.
[[nodiscard]] std::string pngFile(const lumodevice::toolkit::Picture& picture);

/// Writes the picture in the format that the name of the file asks for, and prints where it is.
/// `bitmap` is the picture as a bitmap file. Throws Unusable.
void savePicture(const lumodevice::toolkit::Picture& picture, std::string_view bitmap,
                 const std::string& file, Output& output);

/// Prints that the picture is in that file, unless that is standard output itself.
void tellSaved(const lumodevice::toolkit::Picture& picture, const std::string& file,
               Output& output);

}  // namespace zanctl
