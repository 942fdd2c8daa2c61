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
    case toolkit::Property::ItemInserted:
    case toolkit::Property::ItemRemoved:
    case toolkit::Property::ItemsCleared:
      return "ListCount";
    case toolkit::Property::Place:
    case toolkit::Property::ZOrder:
      break;
  }
  return "";
}

void require(bool done, std::string_view act) {
  if (!done) {
    throw std::logic_error("the operator cannot " + std::string(act));
  }
}

}  // namespace

Bench::Bench(const Setup& setup)
    : loop(setup.loop != nullptr ? *setup.loop : ownLoop_), logging_(setup.logging) {
  ownLoop_.onPass = [this] { script.note("pass"); };
  ownLoop_.onSleep = [this](std::int32_t milliseconds) {
    script.note("sleep " + std::to_string(milliseconds));
  };
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
          .informationBox = [this](std::string_view text) { script.note("box " + escaped(text)); },
          .log = logging_ ? &log : nullptr};
}

void Bench::destroy() {
  component_.reset();
}

std::string Bench::read(std::string_view name, std::string_view property) {
  return toolkit::readProperty(find(name), property);
}

std::string Bench::items(std::string_view name) {
  const auto& list = dynamic_cast<const toolkit::ListControl&>(find(name));
  std::vector<std::string> entries;
  entries.reserve(static_cast<std::size_t>(list.listCount()));
  for (int i = 0; i < list.listCount(); ++i) {
    entries.push_back(list.list(i));
  }
  return lines(entries);
}

void Bench::click(std::string_view name) {
  require(toolkit::hand::click(find(name)), "click " + std::string(name));
}

void Bench::type(std::string_view name, std::string_view text) {
  require(toolkit::hand::type(find(name), text), "type into " + std::string(name));
}

void Bench::select(std::string_view name, int index) {
  require(toolkit::hand::select(find(name), index), "select from " + std::string(name));
}

void Bench::press(std::string_view name, toolkit::Key key) {
  require(toolkit::hand::press(find(name), key), "press a key in " + std::string(name));
}

std::string Bench::ask(std::string_view command) {
  zan().SendCmd(command);
  return zan().ResultStr();
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

toolkit::Control& Bench::find(std::string_view name) {
  for (const auto& control : component_->surface().controls()) {
    if (control->fullName() == name) {
      return *control;
    }
  }
  throw std::logic_error("there is no control " + std::string(name));
}

void Bench::requireConnected(std::string_view how) {
  if (!zan().isConnected()) {
    throw std::logic_error("the bench did not connect " + std::string(how));
  }
  journal();
}

}  // namespace lumodevice::support
