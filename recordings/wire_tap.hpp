#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "lumodevice/io/forwarding_visa.hpp"
#include "lumodevice/io/serial_port.hpp"
#include "lumodevice/toolkit/event_loop.hpp"
#include "lumodevice/toolkit/observers.hpp"

namespace lumodevice::recordings {

/// What is done with links, and what goes over them.
enum class WireAct : std::uint8_t {
  Manager,    ///< a VISA resource manager was asked for
  Find,       ///< a search: `name` the expression, `bytes` the first match, `value` their number
  FindNext,   ///< `bytes` a further match
  Open,       ///< `bytes` the settings of a serial line; `number`, `value`: access mode, time-out
  Close,      ///< also once for each session that went with its resource manager
  Attribute,  ///< a text attribute `number` was asked for: `bytes`
  Setting,    ///< the attribute `number` was set to `value`, or a serial line to `bytes`
  Sending,    ///< about to be sent; Sent follows unless the link threw
  Sent,       ///< `value` bytes of them
  Received,   ///< `value` bytes at most were asked for; 0 for a serial line
  Dropped,    ///< what had come and was thrown away unread
  Port,       ///< the port (`value`) that stands for the device `name` was asked for
};

/// One thing that happened. What it refers to lasts while it is told.
struct WireEvent {
  using Duration = toolkit::EventLoop::Duration;

  WireAct act;
  /// Links are numbered from 1 as they are opened; 0 for none.
  std::uint32_t link = 0;
  /// The resource ("USB0::...") or the port ("COM3") of the link.
  std::string_view name = {};
  std::string_view bytes = {};
  std::uint32_t number = 0;
  std::uint32_t value = 0;
  /// The VISA status, or the number of a SerialFault; 0 for success.
  std::int32_t status = 0;
  /// What a SerialFault says.
  std::string_view fault = {};
  bool serial = false;
  /// In the time of the loop.
  Duration begin{0};
  Duration end{0};
};

/// "9600,n,8,1"
[[nodiscard]] std::string textOf(const io::SerialSettings& settings);

/// Between a component and its links: tells of all that is done with them. The serial control asks
/// a line many times a second whether something has come; that nothing has is not told.
class WireTap {
 public:
  /// All must outlive it.
  WireTap(io::Visa& visa, io::SerialDevices& serialDevices, const toolkit::EventLoop& loop)
      : teller_{events, loop}, visa_(visa, teller_), serialDevices_(serialDevices, teller_) {}
  WireTap(const WireTap&) = delete;
  WireTap& operator=(const WireTap&) = delete;

  using Events = toolkit::Observers<const WireEvent&>;
  Events events;

  [[nodiscard]] io::Visa& visa() { return visa_; }
  [[nodiscard]] io::SerialDevices& serialDevices() { return serialDevices_; }

 private:
  struct Teller {
    const Events& events;
    const toolkit::EventLoop& loop;
    std::uint32_t links = 0;
    [[nodiscard]] WireEvent::Duration now() const { return loop.now(); }
    /// What began at event.begin has ended.
    void tell(WireEvent event) const;
  };
  class TappedLine;

  class TappedVisa : public io::ForwardingVisa {
   public:
    TappedVisa(Visa& visa, Teller& teller) : below_(visa), teller_(teller) {}
    ViStatus viOpenDefaultRM(ViSession& resourceManager) override;
    ViStatus viFindRsrc(ViSession resourceManager, const std::string& expression,
                        ViFindList& findList, std::uint32_t& count,
                        std::string& descriptor) override;
    ViStatus viFindNext(ViFindList findList, std::string& descriptor) override;
    ViStatus viOpen(ViSession resourceManager, const std::string& descriptor,
                    std::uint32_t accessMode, std::uint32_t openTimeout,
                    ViSession& instrument) override;
    ViStatus viClose(ViObject object) override;
    ViStatus viGetAttribute(ViObject object, ViAttr attribute, std::string& value) override;
    ViStatus viSetAttribute(ViObject object, ViAttr attribute, std::uint32_t value) override;
    ViStatus viRead(ViSession instrument, std::span<char> buffer, std::uint32_t& count) override;
    ViStatus viWrite(ViSession instrument, std::string_view data, std::uint32_t& count) override;
    std::string discardUnread(ViSession instrument) override;

   protected:
    [[nodiscard]] Visa& target() override { return below_; }

   private:
    struct Session {
      std::uint32_t link = 0;
      std::string name = {};
      ViSession manager = 0;
    };
    [[nodiscard]] WireEvent eventOn(ViSession instrument, WireAct act) const;

    Visa& below_;
    Teller& teller_;
    std::map<ViSession, Session> sessions_;
  };

  class TappedSerialDevices : public io::SerialDevices {
   public:
    TappedSerialDevices(SerialDevices& devices, Teller& teller)
        : below_(devices), teller_(teller) {}
    [[nodiscard]] std::unique_ptr<io::SerialLine> open(int port,
                                                       const io::SerialSettings& settings) override;
    [[nodiscard]] int portNamed(std::string_view device) override;

   private:
    SerialDevices& below_;
    Teller& teller_;
  };

  Teller teller_;
  TappedVisa visa_;
  TappedSerialDevices serialDevices_;
};

}  // namespace lumodevice::recordings
