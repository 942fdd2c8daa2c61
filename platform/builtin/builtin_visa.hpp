#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "lumodevice/io/visa.hpp"
#include "platform/builtin/local_instruments.hpp"

namespace lumodevice::platform {

/// The layer used where no VISA library is installed. Its resources are the instruments that the
/// system has drivers for and raw sockets. A socket cannot be discovered: a find expression that is
/// itself a socket's resource name ("TCPIP0::HOST::PORT::SOCKET") is its own and only match. What
/// needs a VISA library (HiSLIP, VXI-11, GPIB) is opened with VI_ERROR_LIBRARY_NFOUND.
///
/// Opening with or without a lock makes no difference: a USBTMC device is never shared with another
/// process, and sessions of one process do not shut each other out.
class BuiltinVisa : public io::Visa {
 public:
  /// Null: sockets alone.
  explicit BuiltinVisa(std::unique_ptr<LocalInstruments> local = nullptr)
      : local_(std::move(local)) {}

  io::ViStatus viOpenDefaultRM(io::ViSession& resourceManager) override;
  io::ViStatus viFindRsrc(io::ViSession resourceManager, const std::string& expression,
                          io::ViFindList& findList, std::uint32_t& count,
                          std::string& descriptor) override;
  io::ViStatus viFindNext(io::ViFindList findList, std::string& descriptor) override;
  io::ViStatus viOpen(io::ViSession resourceManager, const std::string& descriptor,
                      std::uint32_t accessMode, std::uint32_t openTimeout,
                      io::ViSession& instrument) override;
  io::ViStatus viClose(io::ViObject object) override;
  io::ViStatus viGetAttribute(io::ViObject object, io::ViAttr attribute,
                              std::string& value) override;
  io::ViStatus viSetAttribute(io::ViObject object, io::ViAttr attribute,
                              std::uint32_t value) override;
  io::ViStatus viRead(io::ViSession instrument, std::span<char> buffer,
                      std::uint32_t& count) override;
  io::ViStatus viWrite(io::ViSession instrument, std::string_view data,
                       std::uint32_t& count) override;
  std::string discardUnread(io::ViSession instrument) override;

 private:
  /// A resource manager has neither an owner nor content of its own.
  struct Object {
    io::ViSession owner = 0;
    std::unique_ptr<InstrumentSession> instrument;
    std::unique_ptr<std::vector<std::string>> matches;  ///< of a find list, the next one last
  };

  [[nodiscard]] bool isResourceManager(io::ViObject handle) const;
  [[nodiscard]] InstrumentSession* sessionOf(io::ViObject handle) const;
  io::ViObject add(Object object);
  [[nodiscard]] std::unique_ptr<InstrumentSession> openInstrument(std::string_view descriptor,
                                                                  std::uint32_t openTimeout,
                                                                  io::ViStatus& status) const;

  std::unique_ptr<LocalInstruments> local_;
  std::map<io::ViObject, Object> objects_;
  io::ViObject lastHandle_ = 0;
};

}  // namespace lumodevice::platform
