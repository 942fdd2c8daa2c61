#pragma once

#include <memory>
#include <utility>

#include "lumodevice/io/visa_com.hpp"
#include "lumodevice/windows/com_pointer.hpp"
#include "lumodevice/windows/visa_com_interfaces.hpp"

/// Objects of VISA COM as the component uses them. What fails throws VisaComFault with the HRESULT.
namespace lumodevice::windows {

class ComSession : public io::MessageSession {
 public:
  explicit ComSession(ComPointer<visacom::IMessage> session) : session_(std::move(session)) {}

  void setTimeout(std::int32_t milliseconds) override;
  void setTerminationCharacterEnabled(bool enabled) override;
  void setSerialEndIn(int mode) override;
  void setSerialEndOut(int mode) override;

  [[nodiscard]] visacom::IMessage* com() const { return session_.get(); }

 private:
  [[nodiscard]] ComPointer<visacom::ISerial> serial() const;

  ComPointer<visacom::IMessage> session_;
};

class ComFormattedIO : public io::FormattedIO488 {
 public:
  explicit ComFormattedIO(ComPointer<visacom::IFormattedIO488> device)
      : device_(std::move(device)) {}

  [[nodiscard]] std::shared_ptr<io::MessageSession> IO() const override;
  /// A session of another kind is refused (E_NOINTERFACE).
  void setIO(std::shared_ptr<io::MessageSession> session) override;
  void WriteString(std::string_view data, bool flushAndEnd) override;
  std::string ReadString() override;
  io::Bytes ReadIEEEBlock(bool seekToBlock, bool flushToEnd) override;
  void WriteIEEEBlock(std::string_view command, std::span<const std::uint8_t> data,
                      bool flushAndEnd) override;
  void FlushWrite(bool sendEnd) override;
  void SetBufferSize(int bufferMask, std::int32_t bytes) override;

  [[nodiscard]] visacom::IFormattedIO488* com() const { return device_.get(); }

 private:
  ComPointer<visacom::IFormattedIO488> device_;
};

class ComResourceManager : public io::ResourceManager {
 public:
  explicit ComResourceManager(ComPointer<visacom::IResourceManager> manager)
      : manager_(std::move(manager)) {}

  std::shared_ptr<io::MessageSession> Open(std::string_view resourceName, std::int32_t accessMode,
                                           std::int32_t openTimeout,
                                           std::string_view optionString) override;

 private:
  ComPointer<visacom::IResourceManager> manager_;
};

}  // namespace lumodevice::windows
