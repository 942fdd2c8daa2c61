#include "hosts/zanctl/output/picture_files.hpp"

#include <algorithm>
#include <array>
#include <cctype>

#include "hosts/zanctl/output/escape.hpp"
#include "hosts/zanctl/output/files_by_name.hpp"
#include "hosts/zanctl/output/mistake.hpp"

namespace zanctl {

using lumodevice::toolkit::Picture;

namespace {

bool endsIn(std::string_view name, std::string_view ending) {
  return name.size() >= ending.size() &&
         std::ranges::equal(name.substr(name.size() - ending.size()), ending, {},
                            [](unsigned char letter) { return std::tolower(letter); });
}

}  // namespace

bool namesPng(std::string_view name) {
  return endsIn(name, ".png");
}

void checkPictureName(std::string_view name) {
  constexpr std::array<std::string_view, 8> kOthers = {".jpg",  ".jpeg", ".gif", ".tif",
                                                       ".tiff", ".webp", ".svg", ".pdf"};
  const auto* const other =
      std::ranges::find_if(kOthers, [&](std::string_view ending) { return endsIn(name, ending); });
  if (other != kOthers.end()) {
    const std::string stem(name.substr(0, name.size() - other->size()));
    throw Unusable("cannot write " + escaped(name) + ": a picture is a PNG (" + escaped(stem) +
                   ".png) or a Windows bitmap (" + escaped(stem) + ".bmp)");
  }
  if (namesPng(name)) {
    checkPngWriter();
  }
}

void savePicture(const Picture& picture, std::string_view bitmap, const std::string& file,
                 Output& output) {
  writeBytes(file, namesPng(file) ? pngFile(picture) : bitmap, output);
  tellSaved(picture, file, output);
}

void tellSaved(const Picture& picture, const std::string& file, Output& output) {
  if (file != kStandardStream) {
    output.line("Saved " + std::to_string(picture.width()) + " x " +
                std::to_string(picture.height()) + " points in " + file);
  }
}

}  // namespace zanctl
