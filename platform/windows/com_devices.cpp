#include "platform/windows/com_devices.hpp"

#include <string>

#include "lumodevice/windows/com_values.hpp"
#include "platform/windows/text.hpp"

namespace lumodevice::windows {

namespace {

using visacom::idOf;

VARIANT_BOOL asBoolean(bool value) {
  return value ? VARIANT_TRUE : VARIANT_FALSE;
}

[[noreturn]] void fail(HRESULT result, std::string_view act) {
  throw io::VisaComFault(
      static_cast<int>(result),
      "VISA COM: " + std::string(act) + ": " + errorText(static_cast<std::uint32_t>(result)));
}

void require(HRESULT result, std::string_view act) {
  if (FAILED(result)) fail(result, act);
}

}  // namespace

void ComSession::setTimeout(std::int32_t milliseconds) {
  require(session_->put_Timeout(milliseconds), "set the time-out");
}

void ComSession::setTerminationCharacterEnabled(bool enabled) {
  require(session_->put_TerminationCharacterEnabled(asBoolean(enabled)),
          "enable the termination character");
}

ComPointer<visacom::ISerial> ComSession::serial() const {
  ComPointer<visacom::ISerial> serial;
  require(session_->QueryInterface(idOf<visacom::ISerial>(), serial.untypedOut()),
          "reach the serial settings");
  return serial;
}

void ComSession::setSerialEndIn(int mode) {
  require(serial()->put_EndIn(mode), "set the end of input");
}

void ComSession::setSerialEndOut(int mode) {
  require(serial()->put_EndOut(mode), "set the end of output");
}

std::shared_ptr<io::MessageSession> ComFormattedIO::IO() const {
  ComPointer<visacom::IMessage> session;
  require(device_->get_IO(session.out()), "tell the session");
  return session ? std::make_shared<ComSession>(std::move(session)) : nullptr;
}

void ComFormattedIO::setIO(std::shared_ptr<io::MessageSession> session) {
  const auto known = std::dynamic_pointer_cast<ComSession>(session);
  if (session != nullptr && known == nullptr) fail(E_NOINTERFACE, "take the session");
  require(device_->putref_IO(known == nullptr ? nullptr : known->com()), "take the session");
}

void ComFormattedIO::WriteString(std::string_view data, bool flushAndEnd) {
  require(device_->WriteString(Bstr(data).get(), asBoolean(flushAndEnd)), "write");
}

std::string ComFormattedIO::ReadString() {
  Bstr text;
  require(device_->ReadString(text.out()), "read");
  return bytesOf(text.get());
}

io::Bytes ComFormattedIO::ReadIEEEBlock(bool seekToBlock, bool flushToEnd) {
  Variant block;
  require(
      device_->ReadIEEEBlock(VT_UI1, asBoolean(seekToBlock), asBoolean(flushToEnd), &block.get()),
      "read a block");
  io::Bytes bytes;
  if (!readBlock(block.get(), bytes)) fail(DISP_E_TYPEMISMATCH, "read a block");
  return bytes;
}

void ComFormattedIO::WriteIEEEBlock(std::string_view command, std::span<const std::uint8_t> data,
                                    bool flushAndEnd) {
  Variant block;
  if (!storeBlock(data, block.get())) fail(E_OUTOFMEMORY, "write a block");
  require(device_->WriteIEEEBlock(Bstr(command).get(), block.get(), asBoolean(flushAndEnd)),
          "write a block");
}

void ComFormattedIO::FlushWrite(bool sendEnd) {
  require(device_->FlushWrite(asBoolean(sendEnd)), "flush");
}

void ComFormattedIO::SetBufferSize(int bufferMask, std::int32_t bytes) {
  require(device_->SetBufferSize(bufferMask, bytes), "set the size of a buffer");
}

std::shared_ptr<io::MessageSession> ComResourceManager::Open(std::string_view resourceName,
                                                             std::int32_t accessMode,
                                                             std::int32_t openTimeout,
                                                             std::string_view optionString) {
  ComPointer<visacom::IVisaSession> opened;
  require(manager_->Open(Bstr(resourceName).get(), accessMode, openTimeout,
                         Bstr(optionString).get(), opened.out()),
          "open " + std::string(resourceName));
  ComPointer<visacom::IMessage> session;
  require(opened->QueryInterface(idOf<visacom::IMessage>(), session.untypedOut()),
          "reach the messages of " + std::string(resourceName));
  return std::make_shared<ComSession>(std::move(session));
}

}  // namespace lumodevice::windows
