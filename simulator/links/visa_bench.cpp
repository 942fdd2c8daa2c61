#include "simulator/links/visa_bench.hpp"

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <utility>

#include "simulator/wire/characters.hpp"

namespace zansim {
namespace {

constexpr std::pair<std::string_view, Interface> kInterfaces[] = {
    {"USB", Interface::Usb}, {"GPIB", Interface::Gpib}, {"ASRL", Interface::Serial}};

std::optional<Interface> interfaceOf(std::string_view upperName) {
  for (const auto& [prefix, interface] : kInterfaces) {
    if (upperName.starts_with(prefix)) {
      return interface;
    }
  }
  return std::nullopt;
}

/// Upper case, without blanks behind, with board number and class.
std::string fullName(std::string_view name) {
  std::string text(name.substr(0, name.find('\0')));
  text.erase(text.find_last_not_of(' ') + 1);
  std::transform(text.begin(), text.end(), text.begin(), upper);
  const std::size_t colons = text.find("::");
  if (colons != std::string::npos && colons > 0 && text[colons - 1] >= 'A' &&
      text[colons - 1] <= 'Z') {
    text.insert(colons, 1, '0');
  }
  if (!text.ends_with("::INSTR")) {
    text += "::INSTR";
  }
  return text;
}

Interface knownInterface(std::string_view name) {
  if (const std::optional<Interface> interface = interfaceOf(fullName(name))) {
    return *interface;
  }
  throw std::invalid_argument("\"" + std::string(name) + "\" is no USB, GPIB or ASRL resource");
}

}  // namespace

VisaResource::VisaResource(std::string resourceName, std::string nameOfInterface,
                           Instrument* instrument)
    : name(std::move(resourceName)),
      interfaceName(std::move(nameOfInterface)),
      interface(knownInterface(name)),
      takesSerialEndModes(interface == Interface::Serial) {
  if (instrument != nullptr) {
    connection_.emplace(*instrument, interface == Interface::Serial
                                         ? Connection::Kind::Stream
                                         : Connection::Kind::MessageBased);
  }
}

VisaResource& VisaBench::add(std::string name, std::string interfaceName, Instrument* instrument) {
  resources_.push_back(
      std::make_unique<VisaResource>(std::move(name), std::move(interfaceName), instrument));
  return *resources_.back();
}

void VisaBench::addUsual(Instrument& instrument) {
  add("ASRL1::INSTR", "ASRL1 (Serial Port)");
  const Configuration& configuration = instrument.mainframe.configuration();
  add("USB0::0x5A41::0x0200::" + configuration.serial + "::INSTR", "USB0 (ZAN DC Electronic Load)",
      &instrument)
      .takesSerialEndModes = true;
}

VisaResource* VisaBench::find(std::string_view name, bool& known) const {
  const std::string wanted = fullName(name);
  known = interfaceOf(wanted).has_value();
  const auto found = std::find_if(resources_.begin(), resources_.end(), [&](const auto& resource) {
    return fullName(resource->name) == wanted;
  });
  return found == resources_.end() ? nullptr : found->get();
}

}  // namespace zansim
