#include "hosts/zanctl/station.hpp"

#include "hosts/zanctl/escape.hpp"
#include "lumodevice/toolkit/hand.hpp"
#include "platform/posix/folder_drive.hpp"
#include "platform/posix/system_clock.hpp"
#include "simulator/loop_clock.hpp"

namespace zanctl {

namespace {

namespace toolkit = lumodevice::toolkit;

std::unique_ptr<toolkit::EventLoop> makeLoop(const Options& options) {
  if (options.virtualTime) {
    return std::make_unique<toolkit::VirtualLoop>();
  }
  return std::make_unique<toolkit::RealTimeLoop>();
}

std::unique_ptr<lumodevice::io::WallClock> makeWallClock(const Options& options,
                                                         const lumodevice::io::Clock& clock) {
  if (options.virtualTime) {
    return std::make_unique<lumodevice::posix::VirtualWallClock>(clock);
  }
  return std::make_unique<lumodevice::posix::SystemWallClock>();
}

}  // namespace

Station::Station(const Options& options, const Streams& streams)
    : streams_(streams),
      loop_(makeLoop(options)),
      clock_(std::make_unique<zansim::LoopClock>(*loop_)),
      links_(options.simulate ? simulatedLinks(*clock_) : realLinks(options, streams.errors)) {
  if (options.trace) {
    startTrace(*options.trace);
  }
  lumodevice::io::Visa& visa = trace_ ? *tracingVisa_ : links_->visa();
  lumodevice::io::SerialDevices& serialDevices =
      trace_ ? *tracingSerialDevices_ : links_->serialDevices();
  visaCom_.emplace(visa);
  drive_ = std::make_unique<lumodevice::posix::FolderDrive>(options.driveC.value_or(""));
  wallClock_ = makeWallClock(options, *clock_);
  component_ = std::make_unique<lumodevice::ZANCtrl>(
      lumodevice::Host{.loop = *loop_,
                       .visa = visa,
                       .visaCom = *visaCom_,
                       .serialDevices = serialDevices,
                       .drive = *drive_,
                       .wallClock = *wallClock_,
                       .informationBox = [this](std::string_view text) { showBox(text); }});
  choose(options.link);
}

Station::~Station() = default;

void Station::startTrace(const std::string& file) {
  if (file != "-") {
    traceFile_ = std::make_unique<FileOutput>(file);
  }
  trace_.emplace(file == "-" ? streams_.errors : *traceFile_, *loop_);
  tracingVisa_.emplace(links_->visa(), *trace_);
  tracingSerialDevices_.emplace(links_->serialDevices(), *trace_);
  loop_->onSleep = [this](std::int32_t milliseconds) { trace_->slept(milliseconds); };
}

void Station::showBox(std::string_view text) {
  if (trace_) {
    trace_->showedBox(text);
  }
  (boxesAside_ ? streams_.errors : streams_.output).line("[information] " + escaped(text));
}

void Station::choose(Link link) {
  if (link != Link::Visa) {
    toolkit::hand::click(component_->surface().get<toolkit::OptionButton>(
        link == Link::Serial ? "optConnRS232" : "optVisa2"));
  }
}

}  // namespace zanctl
