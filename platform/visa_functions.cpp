#include "platform/visa_functions.hpp"

#include <algorithm>
#include <cstring>
#include <limits>
#include <string_view>
#include <utility>

namespace lumodevice::platform {

namespace {

/// Resources that one search may claim to have found: a caller walks them all, so a count that
/// cannot be true would keep it busy for hours.
constexpr std::uint32_t kMostMatches = 4096;

constexpr std::uint32_t kTextAttributeBit = 0x80000000;

/// Room for a text of up to VI_FIND_BUFLEN bytes and for what a careless library writes beyond.
class TextBuffer {
 public:
  char* data() { return bytes_.data(); }
  [[nodiscard]] std::string text() const {
    return {bytes_.data(), ::strnlen(bytes_.data(), io::VI_FIND_BUFLEN - 1)};
  }

 private:
  std::array<char, 16 * io::VI_FIND_BUFLEN> bytes_{};
};

class LoadedVisa : public io::Visa {
 public:
  LoadedVisa(std::shared_ptr<void> library, const VisaFunctions& functions)
      : library_(std::move(library)), call_(functions) {}

  io::ViStatus viOpenDefaultRM(io::ViSession& resourceManager) override {
    resourceManager = 0;
    return call_.viOpenDefaultRM(&resourceManager);
  }

  io::ViStatus viFindRsrc(io::ViSession resourceManager, const std::string& expression,
                          io::ViFindList& findList, std::uint32_t& count,
                          std::string& descriptor) override {
    TextBuffer found;
    findList = 0;
    count = 0;
    const io::ViStatus status =
        call_.viFindRsrc(resourceManager, expression.c_str(), &findList, &count, found.data());
    count = std::min(count, kMostMatches);
    if (status >= 0) descriptor = found.text();
    return status;
  }

  io::ViStatus viFindNext(io::ViFindList findList, std::string& descriptor) override {
    TextBuffer found;
    const io::ViStatus status = call_.viFindNext(findList, found.data());
    if (status >= 0) descriptor = found.text();
    return status;
  }

  io::ViStatus viOpen(io::ViSession resourceManager, const std::string& descriptor,
                      std::uint32_t accessMode, std::uint32_t openTimeout,
                      io::ViSession& instrument) override {
    instrument = 0;
    return call_.viOpen(resourceManager, descriptor.c_str(), accessMode, openTimeout, &instrument);
  }

  io::ViStatus viClose(io::ViObject object) override { return call_.viClose(object); }

  io::ViStatus viGetAttribute(io::ViObject object, io::ViAttr attribute,
                              std::string& value) override {
    if ((attribute & kTextAttributeBit) == 0) return io::VI_ERROR_NSUP_ATTR;
    TextBuffer read;
    const io::ViStatus status = call_.viGetAttribute(object, attribute, read.data());
    if (status >= 0) value = read.text();
    return status;
  }

  io::ViStatus viSetAttribute(io::ViObject object, io::ViAttr attribute,
                              std::uint32_t value) override {
    return call_.viSetAttribute(object, attribute, AttributeState{value});
  }

  /// Short answers, whose length the instrument decides, take the way over a roomy buffer; long
  /// reads go straight to the caller's.
  io::ViStatus viRead(io::ViSession instrument, std::span<char> buffer,
                      std::uint32_t& count) override {
    std::array<unsigned char, 8192> room;
    const bool isShort = buffer.size() <= room.size() / 2;
    if (isShort) std::fill_n(room.begin(), buffer.size(), static_cast<unsigned char>(0));
    auto* target = isShort ? room.data() : reinterpret_cast<unsigned char*>(buffer.data());
    const auto asked = static_cast<std::uint32_t>(
        std::min<std::size_t>(buffer.size(), std::numeric_limits<std::uint32_t>::max()));
    count = 0;
    const io::ViStatus status = call_.viRead(instrument, target, asked, &count);
    count = std::min(count, asked);
    if (isShort) std::copy_n(room.begin(), count, buffer.begin());
    return status;
  }

  io::ViStatus viWrite(io::ViSession instrument, std::string_view data,
                       std::uint32_t& count) override {
    const auto asked = static_cast<std::uint32_t>(
        std::min<std::size_t>(data.size(), std::numeric_limits<std::uint32_t>::max()));
    count = 0;
    const io::ViStatus status = call_.viWrite(
        instrument, reinterpret_cast<const unsigned char*>(data.data()), asked, &count);
    count = std::min(count, asked);
    return status;
  }

 private:
  std::shared_ptr<void> library_;
  VisaFunctions call_;
};

template <auto Member>
void keep(VisaFunctions& functions, void* address) {
  auto& function = functions.*Member;
  function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(address);
}

}  // namespace

const std::array<VisaFunction, 9> kVisaFunctions{{
    {"viOpenDefaultRM", 141, keep<&VisaFunctions::viOpenDefaultRM>},
    {"viFindRsrc", 129, keep<&VisaFunctions::viFindRsrc>},
    {"viFindNext", 130, keep<&VisaFunctions::viFindNext>},
    {"viOpen", 131, keep<&VisaFunctions::viOpen>},
    {"viClose", 132, keep<&VisaFunctions::viClose>},
    {"viGetAttribute", 133, keep<&VisaFunctions::viGetAttribute>},
    {"viSetAttribute", 134, keep<&VisaFunctions::viSetAttribute>},
    {"viRead", 256, keep<&VisaFunctions::viRead>},
    {"viWrite", 257, keep<&VisaFunctions::viWrite>},
}};

std::unique_ptr<io::Visa> visaOver(std::shared_ptr<void> library, const VisaFunctions& functions) {
  return std::make_unique<LoadedVisa>(std::move(library), functions);
}

}  // namespace lumodevice::platform
