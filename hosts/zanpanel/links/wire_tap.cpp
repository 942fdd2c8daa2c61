#include "hosts/zanpanel/links/wire_tap.hpp"

#include <algorithm>
#include <utility>

namespace zanpanel {

using namespace lumodevice::io;

ViStatus WireTap::TappedVisa::viOpen(ViSession resourceManager, const std::string& descriptor,
                                     std::uint32_t accessMode, std::uint32_t openTimeout,
                                     ViSession& instrument) {
  const ViStatus status =
      ForwardingVisa::viOpen(resourceManager, descriptor, accessMode, openTimeout, instrument);
  if (status >= VI_SUCCESS) {
    names_.insert_or_assign(instrument, descriptor);
    events_.tell(WireEvent::Opened, descriptor);
  }
  return status;
}

ViStatus WireTap::TappedVisa::viClose(ViObject object) {
  const ViStatus status = ForwardingVisa::viClose(object);
  if (const auto session = names_.extract(object)) {
    events_.tell(WireEvent::Closed, session.mapped());
  }
  return status;
}

ViStatus WireTap::TappedVisa::viRead(ViSession instrument, std::span<char> buffer,
                                     std::uint32_t& count) {
  const ViStatus status = ForwardingVisa::viRead(instrument, buffer, count);
  if (count > 0) {
    events_.tell(WireEvent::Received,
                 std::string_view(buffer.data(), std::min<std::size_t>(count, buffer.size())));
  }
  return status;
}

ViStatus WireTap::TappedVisa::viWrite(ViSession instrument, std::string_view data,
                                      std::uint32_t& count) {
  events_.tell(WireEvent::Sent, data);
  return ForwardingVisa::viWrite(instrument, data, count);
}

std::string WireTap::TappedVisa::discardUnread(ViSession instrument) {
  std::string unread = ForwardingVisa::discardUnread(instrument);
  if (!unread.empty()) {
    events_.tell(WireEvent::Dropped, unread);
  }
  return unread;
}

namespace {

class TappedLine : public SerialLine {
 public:
  TappedLine(std::unique_ptr<SerialLine> line, const WireTap::Events& events, std::string name)
      : below_(std::move(line)), events_(events), name_(std::move(name)) {
    events_.tell(WireEvent::Opened, name_);
  }
  ~TappedLine() override { events_.tell(WireEvent::Closed, name_); }
  TappedLine(const TappedLine&) = delete;
  TappedLine& operator=(const TappedLine&) = delete;

  void configure(const SerialSettings& settings) override { below_->configure(settings); }
  void write(std::string_view data) override {
    events_.tell(WireEvent::Sent, data);
    below_->write(data);
  }
  void receive(std::string& queue) override {
    const std::size_t before = queue.size();
    below_->receive(queue);
    if (queue.size() > before) {
      events_.tell(WireEvent::Received, std::string_view(queue).substr(before));
    }
  }

 private:
  std::unique_ptr<SerialLine> below_;
  const WireTap::Events& events_;
  std::string name_;
};

}  // namespace

std::unique_ptr<SerialLine> WireTap::TappedSerialDevices::open(int port,
                                                               const SerialSettings& settings) {
  auto line = below_.open(port, settings);
  return std::make_unique<TappedLine>(std::move(line), events_, "COM" + std::to_string(port));
}

}  // namespace zanpanel
