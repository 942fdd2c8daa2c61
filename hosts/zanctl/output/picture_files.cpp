#include "hosts/zanctl/output/picture_files.hpp"

#include <algorithm>
#include <array>
#include <cctype>
#include <png.h>
#include <stdexcept>

#include "hosts/zanctl/late_library.hpp"
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

/// Throws Unusable where the library is missing.
decltype(::png_image_write_to_memory)* pngWriter() {
  decltype(::png_image_write_to_memory)* write = nullptr;
  if (!LateLibrary(ZANCTL_PNG_LIBRARY).find("png_image_write_to_memory", write)) {
    throw Unusable("cannot write a PNG: this machine has no " ZANCTL_PNG_LIBRARY
                   "; a Windows bitmap (.bmp) needs none");
  }
  return write;
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
    (void)pngWriter();
  }
}

/// The picture keeps its rows from the bottom up.
std::string pngFile(const Picture& picture) {
  decltype(::png_image_write_to_memory)* const writeToMemory = pngWriter();
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.width = static_cast<png_uint_32>(picture.width());
  image.height = static_cast<png_uint_32>(picture.height());
  image.format = PNG_FORMAT_BGR;
  const std::uint8_t* const lowest = picture.row(picture.height() - 1).data();
  const auto size = static_cast<png_int_32>(picture.bitmap().size() - Picture::kHeaderSize);
  const png_int_32 stride = size / picture.height();
  png_alloc_size_t bytes = PNG_IMAGE_PNG_SIZE_MAX(image);
  std::string file(bytes, '\0');
  if (writeToMemory(&image, file.data(), &bytes, 0, lowest, -stride, nullptr) == 0) {
    throw std::runtime_error(image.message);  // the room is enough for any picture
  }
  file.resize(bytes);
  return file;
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
