#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "lumodevice/io/visa.hpp"
#include "lumodevice/io/visa_com.hpp"

namespace lumodevice::io {

/// The HRESULT of a failed VISA status, as VisaComFault carries it.
[[nodiscard]] int hresult(ViStatus status);

/// Throws VisaComFault for a negative status; `act` says what failed.
ViStatus require(ViStatus status, std::string_view act);

/// A session of a VISA library with the resource manager that it was opened through: both are
/// closed with it, the instrument first.
class MessageSessionOverVisa : public MessageSession {
 public:
  MessageSessionOverVisa(Visa& visa, std::string_view resourceName, std::uint32_t accessMode,
                         std::uint32_t openTimeout);
  ~MessageSessionOverVisa() override;
  MessageSessionOverVisa(const MessageSessionOverVisa&) = delete;
  MessageSessionOverVisa& operator=(const MessageSessionOverVisa&) = delete;

  void setTimeout(std::int32_t milliseconds) override;
  void setTerminationCharacterEnabled(bool enabled) override;
  void setSerialEndIn(int mode) override;
  void setSerialEndOut(int mode) override;
  std::string discardUnread() override { return visa_.discardUnread(instrument_); }

  /// One viRead; `count` never exceeds the buffer. The status is the caller's to judge.
  [[nodiscard]] ViStatus read(std::span<char> buffer, std::uint32_t& count);
  /// Writes until all of `data` is out, its last byte with END or without. Throws VisaComFault.
  void write(std::string_view data, bool end);

 private:
  void setAttribute(ViAttr attribute, std::uint32_t value, std::string_view act);

  Visa& visa_;
  ViSession resourceManager_ = 0;
  ViSession instrument_ = 0;
  bool sendsEnd_ = true;
};

}  // namespace lumodevice::io
