#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "lumodevice/io/forwarding_visa.hpp"
#include "lumodevice/io/serial_port.hpp"
#include "lumodevice/toolkit/observers.hpp"

namespace zanpanel {

enum class WireEvent { Opened, Closed, Sent, Received, Dropped };

/// Between a component and its links: tells of what goes over the wire.
class WireTap {
 public:
  /// Both must outlive it.
  WireTap(lumodevice::io::Visa& visa, lumodevice::io::SerialDevices& serialDevices)
      : visa_(visa, events), serialDevices_(serialDevices, events) {}
  WireTap(const WireTap&) = delete;
  WireTap& operator=(const WireTap&) = delete;

  using Events = lumodevice::toolkit::Observers<WireEvent, std::string_view>;
  /// The bytes, or the name of what was opened or closed. Reads that brought nothing are not told.
  Events events;

  [[nodiscard]] lumodevice::io::Visa& visa() { return visa_; }
  [[nodiscard]] lumodevice::io::SerialDevices& serialDevices() { return serialDevices_; }

 private:
  class TappedVisa : public lumodevice::io::ForwardingVisa {
   public:
    TappedVisa(Visa& visa, Events& events) : below_(visa), events_(events) {}
    ViStatus viOpen(ViSession resourceManager, const std::string& descriptor,
                    std::uint32_t accessMode, std::uint32_t openTimeout,
                    ViSession& instrument) override;
    ViStatus viClose(ViObject object) override;
    ViStatus viRead(ViSession instrument, std::span<char> buffer, std::uint32_t& count) override;
    ViStatus viWrite(ViSession instrument, std::string_view data, std::uint32_t& count) override;
    std::string discardUnread(ViSession instrument) override;

   protected:
    [[nodiscard]] Visa& target() override { return below_; }

   private:
    Visa& below_;
    Events& events_;
    std::map<ViSession, std::string> names_;
  };

  class TappedSerialDevices : public lumodevice::io::SerialDevices {
   public:
    TappedSerialDevices(SerialDevices& devices, Events& events)
        : below_(devices), events_(events) {}
    [[nodiscard]] std::unique_ptr<lumodevice::io::SerialLine> open(
        int port, const lumodevice::io::SerialSettings& settings) override;

   private:
    SerialDevices& below_;
    Events& events_;
  };

  TappedVisa visa_;
  TappedSerialDevices serialDevices_;
};

}  // namespace zanpanel
