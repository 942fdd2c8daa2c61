#include "simulator/links/visa_bench.hpp"

#include <algorithm>
#include <charconv>
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

constexpr std::string_view kClass = "::INSTR";
constexpr std::string_view kFirstInterface = "::0::INSTR";

/// The number of texts between the double colons.
int partsOf(std::string_view name) {
  int parts = 1;
  for (std::size_t at = name.find("::"); at != std::string_view::npos;
       at = name.find("::", at + 2)) {
    ++parts;
  }
  return parts;
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
  if (!text.ends_with(kClass)) {
    text += kClass;
  }
  // A USB name may name its interface, which is 0 here: USB0::maker::model::serial::0::INSTR
  if (text.starts_with("USB") && text.ends_with(kFirstInterface) && partsOf(text) == 6) {
    text.replace(text.size() - kFirstInterface.size(), kFirstInterface.size(), kClass);
  }
  return text;
}

}  // namespace

std::optional<VisaName> parseVisaName(std::string_view name) {
  std::string full = fullName(name);
  const auto interface = interfaceOf(full);
  if (!interface) {
    return std::nullopt;
  }
  const std::size_t digits = full.find_first_of("0123456789");
  const std::size_t colons = std::min(full.find("::"), full.size());
  std::uint16_t board = 0;
  if (digits < colons) {
    const auto [end, error] = std::from_chars(full.data() + digits, full.data() + colons, board);
    if (error != std::errc() || end != full.data() + colons) {
      return std::nullopt;
    }
  }
  return VisaName{*interface, board, std::move(full)};
}

namespace {

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
    configuration_ = &instrument->mainframe.configuration();
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
