#include <windows.h>

// Stand on <windows.h>.
#include <cstdint>
#include <objbase.h>
#include <stdexcept>
#include <string>
#include <vector>
#include <wincodec.h>

#include "hosts/zanctl/output/picture_files.hpp"
#include "lumodevice/windows/com_pointer.hpp"

namespace zanctl {

namespace {

using lumodevice::toolkit::Picture;
using lumodevice::windows::ComPointer;

void require(HRESULT result) {
  if (FAILED(result)) {
    throw std::runtime_error("the system makes no PNG file of the picture");
  }
}

/// The picture keeps its rows from the bottom up; an encoder takes them from the top down.
void writeRows(IWICBitmapFrameEncode& frame, const Picture& picture) {
  for (int y = 0; y < picture.height(); ++y) {
    const auto row = picture.row(y);
    std::vector<std::uint8_t> bytes(row.begin(), row.end());
    require(frame.WritePixels(1, static_cast<UINT>(bytes.size()), static_cast<UINT>(bytes.size()),
                              bytes.data()));
  }
}

std::string contentOf(IStream& stream) {
  STATSTG state{};
  require(stream.Stat(&state, STATFLAG_NONAME));
  std::string bytes(static_cast<std::size_t>(state.cbSize.QuadPart), '\0');
  require(stream.Seek({}, STREAM_SEEK_SET, nullptr));
  ULONG count = 0;
  require(stream.Read(bytes.data(), static_cast<ULONG>(bytes.size()), &count));
  bytes.resize(count);
  return bytes;
}

std::string encoded(const Picture& picture) {
  ComPointer<IWICImagingFactory> factory;
  require(::CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER,
                             IID_IWICImagingFactory, factory.untypedOut()));
  ComPointer<IStream> stream;
  require(::CreateStreamOnHGlobal(nullptr, TRUE, stream.out()));
  ComPointer<IWICBitmapEncoder> encoder;
  require(factory->CreateEncoder(GUID_ContainerFormatPng, nullptr, encoder.out()));
  require(encoder->Initialize(stream.get(), WICBitmapEncoderNoCache));
  ComPointer<IWICBitmapFrameEncode> frame;
  require(encoder->CreateNewFrame(frame.out(), nullptr));
  require(frame->Initialize(nullptr));
  require(frame->SetSize(static_cast<UINT>(picture.width()), static_cast<UINT>(picture.height())));
  WICPixelFormatGUID format = GUID_WICPixelFormat24bppBGR;
  require(frame->SetPixelFormat(&format));
  writeRows(*frame.get(), picture);
  require(frame->Commit());
  require(encoder->Commit());
  return contentOf(*stream.get());
}

}  // namespace

/// Every Windows makes them.
void checkPngWriter() {}

std::string pngFile(const Picture& picture) {
  const HRESULT apartment = ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  std::string file = encoded(picture);
  if (SUCCEEDED(apartment)) {
    ::CoUninitialize();
  }
  return file;
}

}  // namespace zanctl
