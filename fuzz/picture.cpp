// Any bytes at all as a bitmap file: they are a picture, whose own file reads back as the same, or
// they are refused.

#include "lumodevice/toolkit/picture.hpp"

#include <cstddef>
#include <cstdint>
#include <span>

#include "fuzz/require.hpp"

namespace {

using lumodevice::fuzz::require;
using lumodevice::toolkit::Picture;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    const Picture picture = Picture::fromBitmap(std::span(data, size));
    require(!picture.empty(), "a bitmap has points");
    require(Picture::fromBitmap(picture.bitmap()) == picture, "a picture reads back");
  } catch (const lumodevice::toolkit::PictureFault& fault) {
    require(fault.number() == lumodevice::toolkit::kInvalidPicture, "a refusal has its number");
  }
  return 0;
}
