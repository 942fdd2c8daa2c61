#include "tests/support/bench.hpp"

#include <chrono>
#include <stdexcept>

#include "lumodevice/toolkit/properties.hpp"

namespace lumodevice::support {

namespace {

constexpr const char* kResource = "GPIB0::7::INSTR";
constexpr int kPort = 3;

/// The name that a property can be read by; "" for what is no single value.
std::string_view propertyName(toolkit::Property property) {
  switch (property) {
    case toolkit::Property::Text:
      return "Text";
    case toolkit::Property::Caption:
      return "Caption";
    case toolkit::Property::Value:
      return "Value";
    case toolkit::Property::Enabled:
      return "Enabled";
    case toolkit::Property::Visible:
      return "Visible";
    case toolkit::Property::Tag:
      return "Tag";
    case toolkit::Property::ListIndex:
      return "ListIndex";
    case toolkit::Property::Interval:
      return "Interval";
    case toolkit::Property::MousePointer:
      return "MousePointer";
    case toolkit::Property::OLEDropMode:
      return "OLEDropMode";
    case toolkit::Property::Picture:
      return "Picture";
    case toolkit::Property::Stretch:
      return "Stretch";
    case toolkit::Property::ItemInserted:
    case toolkit::Property::ItemRemoved:
    case toolkit::Property::ItemsCleared:
      return "ListCount";
    case toolkit::Property::Place:
    case toolkit::Property::Look:
    case toolkit::Property::ZOrder:
      break;
  }
  return "";
}

}  // namespace

Bench::Bench(const Setup& setup)
    : loop(setup.loop != nullptr ? *setup.loop : ownLoop_),
      logging_(setup.logging),
      exchanges_(setup.exchanges) {
  passes_ = ownLoop_.observePasses([this] { script.note("pass"); });
  sleeps_ = ownLoop_.observeSleeps(
      [this](std::int32_t milliseconds) { script.note("sleep " + std::to_string(milliseconds)); });
  component_ = std::make_unique<ZANCtrl>(host());
  component_->surface().attach(*this);
}

Bench::~Bench() {
  destroy();
}

Host Bench::host() {
  return {.loop = loop,
          .visa = visa,
          .visaCom = visaCom,
          .serialDevices = serial,
          .drive = drive,
          .wallClock = wallClock,
          .informationBox = [this](std::string_view text) { showBox(text); },
          .log = logging_ ? &log : nullptr,
          .exchanges = exchanges_};
}

void Bench::showBox(std::string_view text) {
  script.note("box " + escaped(text));
  if (onBox) {
    onBox();
  }
}

void Bench::destroy() {
  component_.reset();
}

void Bench::watch(std::initializer_list<std::string_view> names) {
  for (const std::string_view name : names) {
    watched_.insert(find(name).fullName());
  }
}

void Bench::stopReceivePoll() {
  control<toolkit::Timer>("Timer2").setEnabled(false);
}

void Bench::connectVisa() {
  visa.resources = {{kResource, "GPIB0", &instrument}};
  stopReceivePoll();
  click("cmdAutoConnVISA");
  requireConnected("over the VISA library");
}

void Bench::connectVisaCom() {
  visaCom.instruments = {{kResource, &instrument}};
  click("optVisa2");
  connectVisa();
}

void Bench::connectSerial() {
  serial.ports[kPort].instrument = &instrument;
  click("optConnRS232");
  type("Text1", std::to_string(kPort));
  select("Combo2", 0);
  click("Command2");
  requireConnected("over the serial port");
}

void Bench::changed(const toolkit::Control& control, toolkit::Property property, int /*item*/) {
  const std::string_view name = propertyName(property);
  if (!name.empty() && watched_.contains(control.fullName())) {
    script.note(control.fullName() + '.' + std::string(name) + ' ' +
                escaped(toolkit::readProperty(control, name)));
  }
}

void Bench::requireConnected(std::string_view how) {
  if (!zan().isConnected()) {
    throw std::logic_error("the bench did not connect " + std::string(how));
  }
  journal();
}

}  // namespace lumodevice::support
