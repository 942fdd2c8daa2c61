#include "hosts/zanctl/output/picture_files.hpp"

#include <algorithm>
#include <cctype>
#include <png.h>
#include <stdexcept>

#include "hosts/zanctl/output/files_by_name.hpp"

namespace zanctl {

using lumodevice::toolkit::Picture;

bool namesPng(std::string_view name) {
  constexpr std::string_view kEnding = ".png";
  return name.size() >= kEnding.size() &&
         std::ranges::equal(name.substr(name.size() - kEnding.size()), kEnding, {},
                            [](unsigned char letter) { return std::tolower(letter); });
}

/// The picture keeps its rows from the bottom up.
std::string pngFile(const Picture& picture) {
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
  if (png_image_write_to_memory(&image, file.data(), &bytes, 0, lowest, -stride, nullptr) == 0) {
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
