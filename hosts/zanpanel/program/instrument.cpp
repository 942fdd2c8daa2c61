#include "hosts/zanpanel/program/instrument.hpp"

#include <algorithm>
#include <iostream>
#include <sstream>
#include <utility>
#include <vector>

#include "hosts/zanpanel/discharge/switch_off.hpp"
#include "lumodevice/simulated_host.hpp"
#include "lumodevice/system_host.hpp"
#include "lumodevice/toolkit/controls.hpp"
#include "lumodevice/toolkit/hand.hpp"

namespace zanpanel {

namespace toolkit = lumodevice::toolkit;
using lumodevice::recordings::WireAct;
using lumodevice::recordings::WireEvent;

namespace {

constexpr Moment kFirstRetry{1000};
constexpr Moment kLongestRetry{30000};

lumodevice::Host linksOf(const LinkOptions& options, toolkit::EventLoop& loop) {
  if (options.simulate) {
    return lumodevice::simulatedHost(
        {.loop = &loop, .driveC = options.driveC, .sources = options.sources});
  }
  return lumodevice::systemHost({.loop = &loop,
                                 .driveC = options.driveC,
                                 .visaLibrary = options.visaLibrary,
                                 .ports = options.ports});
}

/// Null where nothing is to be recorded.
std::unique_ptr<lumodevice::recordings::Recorder> recorderOf(
    const LinkOptions& options, lumodevice::recordings::WireTap& tap,
    const toolkit::EventLoop& loop, const lumodevice::io::WallClock& wallClock) {
  if (options.record.empty()) {
    return nullptr;
  }
  return std::make_unique<lumodevice::recordings::Recorder>(
      tap, loop, wallClock, options.record, lumodevice::recordings::Bounds(), "zanpanel",
      [](const std::string& why) {
        std::cerr << "zanpanel: the recording has ended early: " << why << std::endl;
      });
}

}  // namespace

void CountingLoop::wait(Duration span) {
  const Held held(*this);
  QtLoop::wait(span);
}

void CountingLoop::deliverInput() {
  const Held held(*this);
  QtLoop::deliverInput();
}

Instrument::Instrument(const LinkOptions& options, lumodevice::InformationBox informationBox)
    : options_(options),
      machine_(lumodevice::systemHost({.loop = &loop_, .driveC = options.driveC})),
      links_(linksOf(options, loop_)),
      tap_(links_.visa, links_.serialDevices, loop_),
      wireRecorder_(recorderOf(options, tap_, loop_, machine_.wallClock)),
      visaCom_(tap_.visa()),
      load_({.loop = loop_,
             .visa = tap_.visa(),
             .visaCom = visaCom_,
             .serialDevices = tap_.serialDevices(),
             .drive = links_.drive,
             .wallClock = machine_.wallClock,
             .informationBox =
                 [this, box = std::move(informationBox)](std::string_view text) {
                   const CountingLoop::Held held(loop_);
                   box(text);
                 },
             .exchanges = lumodevice::Exchanges::InTurn,
             .observing = !options.simulate,
             .owned = links_.owned}),
      monitor_(load_, loop_),
      recorder_(load_, monitor_, machine_.wallClock),
      discharge_(load_, monitor_) {
  tapping_ = tap_.events.observe([this](const WireEvent& event) {
    if (event.act == WireAct::Sending) {
      monitor_.sent(event.bytes);
    } else if (event.act == WireAct::Received && !event.bytes.empty()) {
      monitor_.received(event.bytes);
    } else if (event.act == WireAct::Open && event.link != 0) {
      opened_ = event.name;
    }
  });
  watching_ =
      load_.surface().observe([this](const toolkit::Control& control, toolkit::Property property,
                                     int /*item*/) { changed(control, property); });
  losing_ = load_.observeLinkLost([this](const lumodevice::Failure& why) {
    monitor_.lose(why.sentence);
    retryAfter_ = kFirstRetry;
    retryAt_ = monitor_.now() + retryAfter_;
  });
  if (options_.link != Link::Visa) {
    toolkit::hand::click(load_.surface().get<toolkit::OptionButton>(
        options_.link == Link::Serial ? "optConnRS232" : "optVisa2"));
  }
}

std::string Instrument::linkText() const {
  if (!load_.isConnected()) {
    return "not connected";
  }
  return options_.simulate ? opened_ + " (simulated)" : opened_;
}

LinkOptions Instrument::found() const {
  LinkOptions options = options_;
  if (!foundAt_.empty()) {
    options.resource = foundAt_;
  }
  return options;
}

bool Instrument::connect() {
  if (options_.resource.empty()) {
    return load_.AutoConnect();
  }
  return load_.connectTo(options_.resource) || (options_.orAnother && load_.AutoConnect());
}

std::string Instrument::name() const {
  std::vector<std::string> fields;
  std::istringstream identity(load_.IDN());
  for (std::string field; std::getline(identity, field, ',');) {
    const std::size_t begin = field.find_first_not_of(" \r\n");
    const std::size_t end = field.find_last_not_of(" \r\n");
    fields.push_back(begin == std::string::npos ? "" : field.substr(begin, end - begin + 1));
  }
  return fields.size() < 3 ? "" : fields[1] + ' ' + fields[2];
}

void Instrument::setObserving(bool observing) {
  load_.observing(observing);
}

bool Instrument::observing() const {
  return load_.observing();
}

bool Instrument::switchOff() {
  const CountingLoop::Held held(loop_);
  if (discharge_.underWay()) {
    discharge_.stop("its window was closed");
    return discharge_.state() == Discharge::State::Off;
  }
  return switchLoadOff(load_);
}

void Instrument::changed(const toolkit::Control& control, toolkit::Property property) {
  if (control.name() == "cmbChannel" && property == toolkit::Property::ListIndex) {
    selecting_ = true;
  } else if (control.name() == "chkAutoQuery" && property == toolkit::Property::Value) {
    resuming_ = selecting_ && !load_.AutoQuery();
  }
}

void Instrument::resumeReading() {
  if (loop_.waiting()) {
    return;
  }
  selecting_ = false;
  if (std::exchange(resuming_, false) && load_.isConnected()) {
    load_.AutoQuery(true);
  }
}

/// The same instrument only, and not while anything else goes on.
void Instrument::regainLink() {
  if (load_.isConnected()) {
    foundAt_ = opened_;
    reading_ = load_.AutoQuery();
    retryAt_.reset();
    return;
  }
  if (!retryAt_ || monitor_.now() < *retryAt_ || loop_.waiting()) {
    return;
  }
  const CountingLoop::Held held(loop_);
  const bool read = reading_;
  if (load_.reconnect()) {
    load_.AutoQuery(read);
    return;
  }
  retryAfter_ = std::min(2 * retryAfter_, kLongestRetry);
  retryAt_ = monitor_.now() + retryAfter_;
}

void Instrument::look() {
  resumeReading();
  regainLink();
  const CountingLoop::Held held(loop_);
  monitor_.look();
  discharge_.look();
}

}  // namespace zanpanel
