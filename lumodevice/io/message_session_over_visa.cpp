#include "lumodevice/io/message_session_over_visa.hpp"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string>

namespace lumodevice::io {

int hresult(ViStatus status) {
  return static_cast<int>(E_VISA_SYSTEM_ERROR | (static_cast<std::uint32_t>(status) & 0xFFFFU));
}

ViStatus require(ViStatus status, std::string_view act) {
  if (status >= 0) return status;
  std::array<char, 16> number{};
  (void)std::snprintf(number.data(), number.size(), "0x%08X", static_cast<unsigned>(status));
  throw VisaComFault(hresult(status),
                     std::string(act) + " failed with VISA status " + number.data());
}

MessageSessionOverVisa::MessageSessionOverVisa(Visa& visa, std::string_view resourceName,
                                               std::uint32_t accessMode, std::uint32_t openTimeout)
    : visa_(visa) {
  require(visa_.viOpenDefaultRM(resourceManager_), "opening the resource manager");
  const ViStatus status = visa_.viOpen(resourceManager_, std::string(resourceName), accessMode,
                                       openTimeout, instrument_);
  if (status < 0) visa_.viClose(resourceManager_);
  require(status, "opening " + std::string(resourceName));
}

MessageSessionOverVisa::~MessageSessionOverVisa() {
  visa_.viClose(instrument_);
  visa_.viClose(resourceManager_);
}

void MessageSessionOverVisa::setTimeout(std::int32_t milliseconds) {
  setAttribute(VI_ATTR_TMO_VALUE, static_cast<std::uint32_t>(milliseconds), "setting the time-out");
}

void MessageSessionOverVisa::setTerminationCharacterEnabled(bool enabled) {
  setAttribute(VI_ATTR_TERMCHAR_EN, enabled ? 1 : 0, "setting the termination character enable");
}

void MessageSessionOverVisa::setSerialEndIn(int mode) {
  setAttribute(VI_ATTR_ASRL_END_IN, static_cast<std::uint16_t>(mode),
               "setting the end mode for reading");
}

void MessageSessionOverVisa::setSerialEndOut(int mode) {
  setAttribute(VI_ATTR_ASRL_END_OUT, static_cast<std::uint16_t>(mode),
               "setting the end mode for writing");
}

void MessageSessionOverVisa::setAttribute(ViAttr attribute, std::uint32_t value,
                                          std::string_view act) {
  require(visa_.viSetAttribute(instrument_, attribute, value), act);
}

ViStatus MessageSessionOverVisa::read(std::span<char> buffer, std::uint32_t& count) {
  count = 0;
  const ViStatus status = visa_.viRead(instrument_, buffer, count);
  count = std::min(count, static_cast<std::uint32_t>(buffer.size()));
  return status;
}

void MessageSessionOverVisa::write(std::string_view data, bool end) {
  if (end != sendsEnd_) {
    setAttribute(VI_ATTR_SEND_END_EN, end ? 1 : 0, "setting the end indicator enable");
    sendsEnd_ = end;
  }
  while (!data.empty()) {
    std::uint32_t count = 0;
    require(visa_.viWrite(instrument_, data, count), "writing");
    if (count == 0) require(VI_ERROR_IO, "writing");
    data.remove_prefix(std::min<std::size_t>(count, data.size()));
  }
}

}  // namespace lumodevice::io
