#include "hosts/zanctl/links/tracing_links.hpp"

#include <algorithm>
#include <utility>

namespace zanctl {

using namespace lumodevice::io;

TracingVisa::ViStatus TracingVisa::viOpen(ViSession resourceManager, const std::string& descriptor,
                                          std::uint32_t accessMode, std::uint32_t openTimeout,
                                          ViSession& instrument) {
  const ViStatus status =
      target().viOpen(resourceManager, descriptor, accessMode, openTimeout, instrument);
  if (status >= VI_SUCCESS) {
    opened_.insert_or_assign(instrument, Opened{descriptor, resourceManager});
    trace_.opened(descriptor);
  }
  return status;
}

TracingVisa::ViStatus TracingVisa::viClose(ViObject object) {
  const ViStatus status = target().viClose(object);
  if (status >= VI_SUCCESS) {
    // A resource manager takes the sessions that it opened with it.
    std::erase_if(opened_, [&](const auto& entry) {
      const bool gone = entry.first == object || entry.second.resourceManager == object;
      if (gone) {
        trace_.closed(entry.second.descriptor);
      }
      return gone;
    });
  }
  return status;
}

TracingVisa::ViStatus TracingVisa::viRead(ViSession instrument, std::span<char> buffer,
                                          std::uint32_t& count) {
  const ViStatus status = target().viRead(instrument, buffer, count);
  trace_.received({buffer.data(), std::min<std::size_t>(count, buffer.size())});
  return status;
}

TracingVisa::ViStatus TracingVisa::viWrite(ViSession instrument, std::string_view data,
                                           std::uint32_t& count) {
  trace_.sent(data);
  return target().viWrite(instrument, data, count);
}

std::string TracingVisa::discardUnread(ViSession instrument) {
  std::string unread = target().discardUnread(instrument);
  if (!unread.empty()) {
    trace_.dropped(unread);
  }
  return unread;
}

namespace {

class TracingSerialLine : public SerialLine {
 public:
  TracingSerialLine(std::unique_ptr<SerialLine> line, WireTrace& trace, std::string name)
      : line_(std::move(line)), trace_(trace), name_(std::move(name)) {
    trace_.opened(name_);
  }
  ~TracingSerialLine() override { trace_.closed(name_); }
  TracingSerialLine(const TracingSerialLine&) = delete;
  TracingSerialLine& operator=(const TracingSerialLine&) = delete;

  void configure(const SerialSettings& settings) override { line_->configure(settings); }
  void write(std::string_view data) override {
    trace_.sent(data);
    line_->write(data);
  }
  void receive(std::string& queue) override {
    const std::size_t before = queue.size();
    line_->receive(queue);
    if (queue.size() > before) {
      trace_.received(std::string_view(queue).substr(before));
    }
  }

 private:
  std::unique_ptr<SerialLine> line_;
  WireTrace& trace_;
  std::string name_;
};

}  // namespace

std::unique_ptr<SerialLine> TracingSerialDevices::open(int port, const SerialSettings& settings) {
  auto line = devices_.open(port, settings);
  return std::make_unique<TracingSerialLine>(std::move(line), trace_, "COM" + std::to_string(port));
}

}  // namespace zanctl
