#pragma once

#include <map>
#include <memory>
#include <string>

#include "hosts/zanctl/trace.hpp"
#include "lumodevice/io/serial_port.hpp"
#include "lumodevice/io/visa.hpp"

namespace zanctl {

/// A VISA layer whose sessions, writes and reads are written to a trace. A call that failed is no event,
/// but a read that brought nothing is one: it shows where a time-out passed.
class TracingVisa : public lumodevice::io::Visa {
 public:
  /// Both must outlive this object.
  TracingVisa(Visa& visa, WireTrace& trace) : visa_(visa), trace_(trace) {}

  lumodevice::io::ViStatus viOpenDefaultRM(lumodevice::io::ViSession& resourceManager) override;
  lumodevice::io::ViStatus viFindRsrc(lumodevice::io::ViSession resourceManager,
                                      const std::string& expression,
                                      lumodevice::io::ViFindList& findList, std::uint32_t& count,
                                      std::string& descriptor) override;
  lumodevice::io::ViStatus viFindNext(lumodevice::io::ViFindList findList,
                                      std::string& descriptor) override;
  lumodevice::io::ViStatus viOpen(lumodevice::io::ViSession resourceManager,
                                  const std::string& descriptor, std::uint32_t accessMode,
                                  std::uint32_t openTimeout,
                                  lumodevice::io::ViSession& instrument) override;
  lumodevice::io::ViStatus viClose(lumodevice::io::ViObject object) override;
  lumodevice::io::ViStatus viGetAttribute(lumodevice::io::ViObject object,
                                          lumodevice::io::ViAttr attribute,
                                          std::string& value) override;
  lumodevice::io::ViStatus viSetAttribute(lumodevice::io::ViObject object,
                                          lumodevice::io::ViAttr attribute,
                                          std::uint32_t value) override;
  lumodevice::io::ViStatus viRead(lumodevice::io::ViSession instrument, std::span<char> buffer,
                                  std::uint32_t& count) override;
  lumodevice::io::ViStatus viWrite(lumodevice::io::ViSession instrument, std::string_view data,
                                   std::uint32_t& count) override;

 private:
  struct Opened {
    std::string descriptor;
    lumodevice::io::ViSession resourceManager;
  };

  Visa& visa_;
  WireTrace& trace_;
  std::map<lumodevice::io::ViSession, Opened> opened_;
};

/// Serial devices whose opening, closing, writes and reads are written to a trace. A poll that brought
/// nothing is no event.
class TracingSerialDevices : public lumodevice::io::SerialDevices {
 public:
  /// Both must outlive this object and the lines opened through it.
  TracingSerialDevices(SerialDevices& devices, WireTrace& trace)
      : devices_(devices), trace_(trace) {}
  [[nodiscard]] std::unique_ptr<lumodevice::io::SerialLine> open(
      int port, const lumodevice::io::SerialSettings& settings) override;

 private:
  SerialDevices& devices_;
  WireTrace& trace_;
};

}  // namespace zanctl
