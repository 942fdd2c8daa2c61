#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "hosts/zanctl/links/wire_trace.hpp"
#include "lumodevice/io/forwarding_visa.hpp"
#include "lumodevice/io/serial_port.hpp"

namespace zanctl {

/// A VISA layer whose sessions, writes and reads are written to a trace. A call that failed is no
/// event, but a read that brought nothing is one: it shows where a time-out passed.
class TracingVisa : public lumodevice::io::ForwardingVisa {
 public:
  /// Both must outlive this object.
  TracingVisa(Visa& visa, WireTrace& trace) : visa_(visa), trace_(trace) {}

  ViStatus viOpen(ViSession resourceManager, const std::string& descriptor,
                  std::uint32_t accessMode, std::uint32_t openTimeout,
                  ViSession& instrument) override;
  ViStatus viClose(ViObject object) override;
  ViStatus viRead(ViSession instrument, std::span<char> buffer, std::uint32_t& count) override;
  ViStatus viWrite(ViSession instrument, std::string_view data, std::uint32_t& count) override;
  /// An event where there was something to drop.
  std::string discardUnread(ViSession instrument) override;

 protected:
  [[nodiscard]] Visa& target() override { return visa_; }

 private:
  struct Opened {
    std::string descriptor;
    ViSession resourceManager;
  };

  Visa& visa_;
  WireTrace& trace_;
  std::map<ViSession, Opened> opened_;
};

/// Serial devices whose opening, closing, writes and reads are written to a trace. A poll that
/// brought nothing is no event. What is dropped has been read like anything else.
class TracingSerialDevices : public lumodevice::io::SerialDevices {
 public:
  /// Both must outlive this object and the lines opened through it.
  TracingSerialDevices(SerialDevices& devices, WireTrace& trace)
      : devices_(devices), trace_(trace) {}
  [[nodiscard]] std::unique_ptr<lumodevice::io::SerialLine> open(
      int port, const lumodevice::io::SerialSettings& settings) override;
  [[nodiscard]] int portNamed(std::string_view device) override {
    return devices_.portNamed(device);
  }

 private:
  SerialDevices& devices_;
  WireTrace& trace_;
};

}  // namespace zanctl
