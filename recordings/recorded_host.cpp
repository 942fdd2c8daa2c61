#include "lumodevice/recorded_host.hpp"

#include <iostream>
#include <memory>
#include <stdexcept>
#include <utility>

#include "lumodevice/io/visa_com_over_visa.hpp"
#include "platform/host_parts.hpp"
#include "platform/loop_clock.hpp"
#include "recordings/recorded_clock.hpp"
#include "recordings/recorder.hpp"
#include "recordings/replayed_links.hpp"

namespace lumodevice {

namespace {

void print(const std::string& text) {
  std::cerr << text << std::endl;
}

/// The tap between the host's links and a component, each part above those that use it.
struct Recorded {
  Recorded(const Host& below, const std::string& file, const RecordingOptions& options)
      : host(below),
        recorder(tap, host.loop, host.wallClock, file,
                 recordings::Bounds{.bytes = options.bytes, .files = options.files},
                 "a program's own host", print) {}

  Host host;
  platform::LoopClock clock{host.loop};
  recordings::WireTap tap{host.visa, host.serialDevices, host.loop};
  io::VisaComOverVisa visaCom{tap.visa(), &clock};
  recordings::Recorder recorder;
};

/// Null where the host brings its own.
std::unique_ptr<toolkit::EventLoop> ownLoop(const ReplayOptions& options) {
  if (options.loop != nullptr) {
    return nullptr;
  }
  if (options.virtualTime) {
    return std::make_unique<toolkit::VirtualLoop>();
  }
  return std::make_unique<toolkit::RealTimeLoop>();
}

struct Replayed {
  Replayed(const std::string& file, const ReplayOptions& options)
      : own(ownLoop(options)),
        loop(own ? *own : *options.loop),
        bench(recordings::readRecording(file), clock, options.mistaken ? options.mistaken : print),
        drive(platform::driveIn(options.driveC)),
        wallClock(bench.recording().begins, clock) {}

  std::unique_ptr<toolkit::EventLoop> own;
  toolkit::EventLoop& loop;
  platform::LoopClock clock{loop};
  recordings::ReplayedBench bench;
  recordings::ReplayedVisa visa{bench};
  io::VisaComOverVisa visaCom{visa, &clock};
  recordings::ReplayedSerialDevices serialDevices{bench};
  std::unique_ptr<io::Drive> drive;
  recordings::RecordedWallClock wallClock;
};

}  // namespace

Host recorded(const Host& host, const std::string& file, const RecordingOptions& options) {
  if (dynamic_cast<io::VisaComOverVisa*>(&host.visaCom) == nullptr) {
    throw std::invalid_argument("a VISA COM that is not over the VISA library is not recorded");
  }
  if (options.files < 1) {
    throw std::invalid_argument("a recording has at least one file");
  }
  const auto parts = std::make_shared<Recorded>(host, file, options);
  return {.loop = host.loop,
          .visa = parts->tap.visa(),
          .visaCom = parts->visaCom,
          .serialDevices = parts->tap.serialDevices(),
          .drive = host.drive,
          .wallClock = host.wallClock,
          .informationBox =
              [parts = parts.get(), box = host.informationBox](std::string_view text) {
                parts->recorder.note(text);
                if (box) {
                  box(text);
                }
              },
          .log = host.log,
          .exchanges = host.exchanges,
          .observing = host.observing,
          .address = host.address,
          .owned = parts};
}

Host replayedHost(const std::string& file, const ReplayOptions& options) {
  const auto parts = std::make_shared<Replayed>(file, options);
  return {.loop = parts->loop,
          .visa = parts->visa,
          .visaCom = parts->visaCom,
          .serialDevices = parts->serialDevices,
          .drive = *parts->drive,
          .wallClock = parts->wallClock,
          .informationBox =
              options.informationBox ? options.informationBox : platform::printInformation,
          .log = options.log,
          .exchanges = options.exchanges,
          .observing = options.observing,
          .address = options.address,
          .owned = parts};
}

}  // namespace lumodevice
