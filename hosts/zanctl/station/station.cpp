#include "hosts/zanctl/station/station.hpp"

#include "hosts/zanctl/output/escape.hpp"
#include "hosts/zanctl/output/json_line.hpp"
#include "hosts/zanctl/output/mistake.hpp"
#include "hosts/zanctl/station/interruption.hpp"
#include "hosts/zanctl/station/watched_loop.hpp"
#include "lumodevice/link/exchange.hpp"
#include "lumodevice/toolkit/hand.hpp"
#include "platform/loop_clock.hpp"
#include "platform/path_text.hpp"
#include "platform/system_clock.hpp"

namespace zanctl {

namespace {

namespace toolkit = lumodevice::toolkit;

std::unique_ptr<lumodevice::io::WallClock> makeWallClock(const StationOptions& options,
                                                         const lumodevice::io::Clock& clock) {
  if (options.virtualTime) {
    return std::make_unique<lumodevice::platform::VirtualWallClock>(clock);
  }
  return std::make_unique<lumodevice::platform::SystemWallClock>();
}

}  // namespace

Station::Station(const StationOptions& options, const Streams& streams, const MakeLinks& makeLinks)
    : options_(options),
      progress_(streams.errors, !options.dumbTerminal),
      output_(streams.output, progress_),
      errors_(streams.errors, progress_),
      streams_{streams.input, output_, errors_, streams.atTerminal},
      loop_(makeLoop()),
      clock_(std::make_unique<lumodevice::platform::LoopClock>(*loop_)),
      links_(makeLinks ? makeLinks(*clock_) : linksOfOptions()),
      drive_(lumodevice::platform::pathOf(options.driveC.value_or(""))),
      stagedDrive_(options.driveInMemory ? nullptr : &drive_) {
  passes_ = loop_->observePasses([this] {
    Interruption::check();
    progress_.show(loop_->now());
  });
  sleeps_ = loop_->observeSleeps([this](std::int32_t milliseconds) {
    Interruption::check();
    progress_.show(loop_->now());
    // In turn a wait is many short looks whether the answer is there.
    if (trace_ && options_.exchanges == lumodevice::Exchanges::Interleaved) {
      trace_->slept(milliseconds);
    }
  });
  watchBlocks();
  wallClock_ = links_->wallClock();
  if (!wallClock_) {
    wallClock_ = makeWallClock(options, *clock_);
  }
  if (options.trace || options.record) {
    tap_.emplace(*watchedVisa_, *watchedSerialDevices_, *loop_);
  }
  if (options.trace) {
    startTrace(*options.trace);
  }
  if (options.record) {
    startRecording(*options.record);
  }
  lumodevice::io::Visa& visa = tap_ ? tap_->visa() : *watchedVisa_;
  lumodevice::io::SerialDevices& serialDevices =
      tap_ ? tap_->serialDevices() : *watchedSerialDevices_;
  visaCom_.emplace(visa, clock_.get());
  component_ = std::make_unique<lumodevice::ZANCtrl>(
      lumodevice::Host{.loop = *loop_,
                       .visa = visa,
                       .visaCom = *visaCom_,
                       .serialDevices = serialDevices,
                       .drive = stagedDrive_,
                       .wallClock = *wallClock_,
                       .informationBox = [this](std::string_view text) { showBox(text); },
                       .exchanges = options.exchanges,
                       .observing = options.watching == Watching::All,
                       .address = options.resource.value_or("")});
  heldBack_ = component_->observeHeldBack([this](const std::string& command) {
    errors_.line("zanctl: observing, not sent: " + escaped(command));
  });
  connects_ = component_->surface().observe(
      [this](const toolkit::Control& /*control*/, toolkit::Property property, int) {
        everConnected_ =
            everConnected_ || (property == toolkit::Property::Enabled && component_->isConnected());
      });
  losses_ =
      component_->observeLinkLost([this](const lumodevice::Failure& why) { loss_ = why.sentence; });
  if (options.wait) {
    component_->waitUnit(*options.wait);
  }
  choose(options.link);
}

Station::~Station() = default;

std::unique_ptr<toolkit::EventLoop> Station::makeLoop() {
  if (options_.virtualTime) {
    return std::make_unique<toolkit::VirtualLoop>();
  }
  return std::make_unique<WatchedLoop>([this] {
    Interruption::check();
    progress_.show(loop_->now());
  });
}

void Station::watchBlocks() {
  blocks_.emplace([this](std::uint64_t received, std::uint64_t total) {
    progress_.count(received, total);
    progress_.show(loop_->now());
  });
  watchedVisa_.emplace(links_->visa(), *blocks_);
  watchedSerialDevices_.emplace(links_->serialDevices(), *blocks_);
}

void Station::startTrace(const std::string& file) {
  if (file != "-") {
    traceFile_ = std::make_shared<FileOutput>(file);
  }
  trace_.emplace(file == "-" ? streams_.errors : *traceFile_, *loop_);
  tracing_ = tap_->events.observe(
      [this](const lumodevice::recordings::WireEvent& event) { trace_->take(event); });
}

void Station::startRecording(const std::string& file) {
  try {
    recorder_.emplace(*tap_, *loop_, *wallClock_, file, options_.recordBounds,
                      "zanctl " ZANCTL_VERSION, [this](const std::string& why) {
                        *recordingFailed_ = true;
                        errors_.line("zanctl: the recording has ended early: " + why);
                      });
  } catch (const lumodevice::recordings::WriteFault& fault) {
    throw Unusable(fault.what());
  }
}

std::unique_ptr<Links> Station::linksOfOptions() {
  if (options_.replay) {
    return replayedLinks(*options_.replay, *clock_, errors_);
  }
  return options_.simulate ? simulatedLinks(*clock_) : realLinks(options_, errors_);
}

void Station::fail(const std::string& sentence) {
  errors_.line("zanctl: " + sentence);
  if (options_.json) {
    const lumodevice::FailureKind kind = component_->failure().kind;
    const bool ofTheLink = kind != lumodevice::FailureKind::None;
    output_.line(jsonLine(
        {{"failure", sentence}, {"kind", ofTheLink ? Json(rowOf(kind).name) : Json(nullptr)}}));
  }
}

/// Standard output is for data. The box about a missing answer does not say whose it is; the
/// command that was sent last is the one.
void Station::showBox(std::string_view text) {
  if (trace_) {
    trace_->showedBox(text);
  }
  if (recorder_) {
    recorder_->note(text);
  }
  std::string line = "[information] " + escaped(text);
  if (text == lumodevice::link::kNoAnswer) {
    line += " (" + escaped(component_->surface().get<toolkit::TextBox>("TXT").text()) + ")";
  }
  streams_.errors.line(line);
}

void Station::choose(Link link) {
  // The address of a serial port chooses its link itself, and touches no other port.
  if (link == Link::VisaCom || (link == Link::Serial && !options_.resource)) {
    toolkit::hand::click(component_->surface().get<toolkit::OptionButton>(
        link == Link::Serial ? "optConnRS232" : "optVisa2"));
  }
}

}  // namespace zanctl
