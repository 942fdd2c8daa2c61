#include "recordings/wire_tap.hpp"

#include <algorithm>
#include <utility>

namespace lumodevice::recordings {

using namespace io;

std::string textOf(const SerialSettings& settings) {
  return std::to_string(settings.baud) + ',' + settings.parity + ',' +
         std::to_string(settings.dataBits) + ',' + settings.stopBits;
}

void WireTap::Teller::tell(WireEvent event) const {
  event.end = now();
  events.tell(event);
}

WireEvent WireTap::TappedVisa::eventOn(ViSession instrument, WireAct act) const {
  const auto session = sessions_.find(instrument);
  WireEvent event{.act = act, .begin = teller_.now()};
  if (session != sessions_.end()) {
    event.link = session->second.link;
    event.name = session->second.name;
  }
  return event;
}

ViStatus WireTap::TappedVisa::viOpenDefaultRM(ViSession& resourceManager) {
  WireEvent event{.act = WireAct::Manager, .begin = teller_.now()};
  event.status = target().viOpenDefaultRM(resourceManager);
  teller_.tell(event);
  return event.status;
}

ViStatus WireTap::TappedVisa::viFindRsrc(ViSession resourceManager, const std::string& expression,
                                         ViFindList& findList, std::uint32_t& count,
                                         std::string& descriptor) {
  WireEvent event{.act = WireAct::Find, .name = expression, .begin = teller_.now()};
  event.status = target().viFindRsrc(resourceManager, expression, findList, count, descriptor);
  if (event.status >= VI_SUCCESS) {
    event.bytes = descriptor;
    event.value = count;
  }
  teller_.tell(event);
  return event.status;
}

ViStatus WireTap::TappedVisa::viFindNext(ViFindList findList, std::string& descriptor) {
  WireEvent event{.act = WireAct::FindNext, .begin = teller_.now()};
  event.status = target().viFindNext(findList, descriptor);
  if (event.status >= VI_SUCCESS) {
    event.bytes = descriptor;
  }
  teller_.tell(event);
  return event.status;
}

ViStatus WireTap::TappedVisa::viOpen(ViSession resourceManager, const std::string& descriptor,
                                     std::uint32_t accessMode, std::uint32_t openTimeout,
                                     ViSession& instrument) {
  WireEvent event{.act = WireAct::Open,
                  .name = descriptor,
                  .number = accessMode,
                  .value = openTimeout,
                  .begin = teller_.now()};
  event.status = target().viOpen(resourceManager, descriptor, accessMode, openTimeout, instrument);
  if (event.status >= VI_SUCCESS) {
    event.link = ++teller_.links;
    sessions_.insert_or_assign(instrument, Session{event.link, descriptor, resourceManager});
  }
  teller_.tell(event);
  return event.status;
}

ViStatus WireTap::TappedVisa::viClose(ViObject object) {
  const WireEvent::Duration begin = teller_.now();
  const ViStatus status = target().viClose(object);
  if (status < VI_SUCCESS) {
    return status;
  }
  // A resource manager takes the sessions that it opened with it.
  std::erase_if(sessions_, [&](const auto& entry) {
    const Session& session = entry.second;
    const bool gone = entry.first == object || session.manager == object;
    if (gone) {
      teller_.tell({.act = WireAct::Close,
                    .link = session.link,
                    .name = session.name,
                    .status = status,
                    .begin = begin});
    }
    return gone;
  });
  return status;
}

ViStatus WireTap::TappedVisa::viGetAttribute(ViObject object, ViAttr attribute,
                                             std::string& value) {
  WireEvent event = eventOn(object, WireAct::Attribute);
  event.number = attribute;
  event.status = target().viGetAttribute(object, attribute, value);
  if (event.status >= VI_SUCCESS) {
    event.bytes = value;
  }
  teller_.tell(event);
  return event.status;
}

ViStatus WireTap::TappedVisa::viSetAttribute(ViObject object, ViAttr attribute,
                                             std::uint32_t value) {
  WireEvent event = eventOn(object, WireAct::Setting);
  event.number = attribute;
  event.value = value;
  event.status = target().viSetAttribute(object, attribute, value);
  teller_.tell(event);
  return event.status;
}

ViStatus WireTap::TappedVisa::viRead(ViSession instrument, std::span<char> buffer,
                                     std::uint32_t& count) {
  WireEvent event = eventOn(instrument, WireAct::Received);
  event.value = static_cast<std::uint32_t>(buffer.size());
  event.status = target().viRead(instrument, buffer, count);
  event.bytes = {buffer.data(), std::min<std::size_t>(count, buffer.size())};
  teller_.tell(event);
  return event.status;
}

ViStatus WireTap::TappedVisa::viWrite(ViSession instrument, std::string_view data,
                                      std::uint32_t& count) {
  WireEvent event = eventOn(instrument, WireAct::Sending);
  event.bytes = data;
  teller_.tell(event);
  event.act = WireAct::Sent;
  event.status = target().viWrite(instrument, data, count);
  event.value = count;
  teller_.tell(event);
  return event.status;
}

std::string WireTap::TappedVisa::discardUnread(ViSession instrument) {
  WireEvent event = eventOn(instrument, WireAct::Dropped);
  std::string unread = target().discardUnread(instrument);
  if (!unread.empty()) {
    event.bytes = unread;
    teller_.tell(event);
  }
  return unread;
}

class WireTap::TappedLine : public SerialLine {
 public:
  TappedLine(std::unique_ptr<SerialLine> line, Teller& teller, std::uint32_t link, std::string name)
      : below_(std::move(line)), teller_(teller), link_(link), name_(std::move(name)) {}
  ~TappedLine() override {
    const WireEvent event = eventOf(WireAct::Close);
    below_.reset();
    teller_.tell(event);
  }
  TappedLine(const TappedLine&) = delete;
  TappedLine& operator=(const TappedLine&) = delete;

  void configure(const SerialSettings& settings) override {
    const std::string text = textOf(settings);
    WireEvent event = eventOf(WireAct::Setting);
    event.bytes = text;
    run(event, [&] { below_->configure(settings); });
    teller_.tell(event);
  }
  void write(std::string_view data) override {
    WireEvent event = eventOf(WireAct::Sending);
    event.bytes = data;
    teller_.tell(event);
    event.act = WireAct::Sent;
    event.value = static_cast<std::uint32_t>(data.size());
    run(event, [&] { below_->write(data); });
    teller_.tell(event);
  }
  void receive(std::string& queue) override {
    const std::size_t before = queue.size();
    WireEvent event = eventOf(WireAct::Received);
    run(event, [&] { below_->receive(queue); });
    if (queue.size() > before) {
      event.bytes = std::string_view(queue).substr(before);
      teller_.tell(event);
    }
  }

 private:
  [[nodiscard]] WireEvent eventOf(WireAct act) const {
    return {.act = act, .link = link_, .name = name_, .serial = true, .begin = teller_.now()};
  }
  /// A fault is told, and goes on.
  template <typename Call>
  void run(WireEvent event, Call call) const {
    try {
      call();
    } catch (const SerialFault& fault) {
      event.status = fault.number();
      event.fault = fault.what();
      event.value = 0;
      teller_.tell(event);
      throw;
    }
  }

  std::unique_ptr<SerialLine> below_;
  Teller& teller_;
  std::uint32_t link_;
  std::string name_;
};

std::unique_ptr<SerialLine> WireTap::TappedSerialDevices::open(int port,
                                                               const SerialSettings& settings) {
  const std::string name = "COM" + std::to_string(port);
  const std::string text = textOf(settings);
  WireEvent event{
      .act = WireAct::Open, .name = name, .bytes = text, .serial = true, .begin = teller_.now()};
  try {
    auto line = below_.open(port, settings);
    event.link = ++teller_.links;
    auto tapped = std::make_unique<TappedLine>(std::move(line), teller_, event.link, name);
    teller_.tell(event);
    return tapped;
  } catch (const SerialFault& fault) {
    event.status = fault.number();
    event.fault = fault.what();
    teller_.tell(event);
    throw;
  }
}

int WireTap::TappedSerialDevices::portNamed(std::string_view device) {
  WireEvent event{.act = WireAct::Port, .name = device, .serial = true, .begin = teller_.now()};
  const int port = below_.portNamed(device);
  event.value = static_cast<std::uint32_t>(port);
  teller_.tell(event);
  return port;
}

}  // namespace lumodevice::recordings
