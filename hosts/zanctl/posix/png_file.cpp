#include <png.h>
#include <stdexcept>

#include "hosts/zanctl/output/mistake.hpp"
#include "hosts/zanctl/output/picture_files.hpp"
#include "hosts/zanctl/posix/late_library.hpp"

namespace zanctl {

using lumodevice::toolkit::Picture;

namespace {

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

void checkPngWriter() {
  (void)pngWriter();
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

}  // namespace zanctl
