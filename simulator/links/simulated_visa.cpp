#include "simulator/links/simulated_visa.hpp"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <utility>

#include "lumodevice/io/find_expression.hpp"
#include "simulator/links/visa_attributes.hpp"
#include "simulator/links/visa_statuses.hpp"

namespace zansim {

using namespace lumodevice::io;

namespace {

constexpr std::uint32_t kAccessModes = 0x7;
constexpr std::uint32_t kEndsByTerminationCharacter = 2;

/// The number in a part of a name: "USB0::0x5A41::..." has 0x5A41 in part 1.
std::uint32_t numberOf(std::string_view name, int part) {
  for (; part > 0; --part) {
    name.remove_prefix(std::min(name.find("::") + 2, name.size()));
  }
  const bool hexadecimal = name.starts_with("0x") || name.starts_with("0X");
  name.remove_prefix(hexadecimal ? 2 : 0);
  std::uint32_t number = 0;
  std::from_chars(name.data(), name.data() + name.size(), number, hexadecimal ? 16 : 10);
  return number;
}

/// A read that waits for ever gives up after a day, so that a lost answer is seen on a virtual
/// clock too.
constexpr Duration kForEver = std::chrono::hours(24);

Duration timeOut(std::uint32_t milliseconds) {
  return milliseconds == VI_TMO_INFINITE ? kForEver
                                         : Duration(std::chrono::milliseconds(milliseconds));
}

}  // namespace

SimulatedVisa::~SimulatedVisa() {
  for (const auto& [handle, object] : objects_) {
    release(handle, object);
  }
}

const SimulatedVisa::Object* SimulatedVisa::object(ViObject handle, Kind kind) const {
  const auto found = objects_.find(handle);
  return found != objects_.end() && found->second.kind == kind ? &found->second : nullptr;
}

ViObject SimulatedVisa::keep(Object object) {
  objects_.emplace(++lastHandle_, std::move(object));
  return lastHandle_;
}

void SimulatedVisa::release(ViObject handle, const Object& object) const {
  if (object.resource != nullptr &&
      object.resource->lockedBy_ == VisaResource::Holder{this, handle}) {
    object.resource->lockedBy_.reset();
  }
}

ViStatus SimulatedVisa::viOpenDefaultRM(ViSession& resourceManager) {
  resourceManager = keep({.kind = Kind::ResourceManager});
  return VI_SUCCESS;
}

ViStatus SimulatedVisa::viFindRsrc(ViSession resourceManager, const std::string& expression,
                                   ViFindList& findList, std::uint32_t& count,
                                   std::string& descriptor) {
  if (object(resourceManager, Kind::ResourceManager) == nullptr) {
    return VI_ERROR_INV_OBJECT;
  }
  const auto pattern = lumodevice::io::FindExpression::parse(expression);
  if (!pattern) {
    return VI_ERROR_INV_EXPR;
  }
  Object list{.kind = Kind::FindList, .parent = resourceManager};
  for (const auto& resource : bench_.resources()) {
    if (resource->isPresent() && pattern->matches(resource->name)) {
      list.found.push_back(resource->name);
    }
  }
  if (list.found.empty()) {
    return VI_ERROR_RSRC_NFOUND;
  }
  count = static_cast<std::uint32_t>(list.found.size());
  std::reverse(list.found.begin(), list.found.end());
  findList = keep(std::move(list));
  return viFindNext(findList, descriptor);
}

ViStatus SimulatedVisa::viFindNext(ViFindList findList, std::string& descriptor) {
  if (object(findList, Kind::FindList) == nullptr) {
    return VI_ERROR_INV_OBJECT;
  }
  std::vector<std::string>& found = objects_.at(findList).found;
  if (found.empty()) {
    return VI_ERROR_RSRC_NFOUND;
  }
  descriptor = found.back();
  found.pop_back();
  return VI_SUCCESS;
}

ViStatus SimulatedVisa::viOpen(ViSession resourceManager, const std::string& descriptor,
                               std::uint32_t accessMode, std::uint32_t openTimeout,
                               ViSession& instrument) {
  if (object(resourceManager, Kind::ResourceManager) == nullptr) {
    return VI_ERROR_INV_OBJECT;
  }
  if (accessMode > kAccessModes) {
    return VI_ERROR_INV_ACC_MODE;
  }
  bool known = false;
  VisaResource* const resource = bench_.find(descriptor, known);
  if (resource == nullptr || !resource->isPresent()) {
    return known ? VI_ERROR_RSRC_NFOUND : VI_ERROR_INV_RSRC_NAME;
  }
  const bool locks = (accessMode & VI_EXCLUSIVE_LOCK) != 0;
  if (locks && !awaitLock(*resource, openTimeout)) {
    return VI_ERROR_RSRC_LOCKED;
  }
  instrument = keep({.kind = Kind::Session, .parent = resourceManager, .resource = resource});
  if (locks) {
    resource->lockedBy_ = {this, instrument};
    objects_.at(instrument).locks = 1;
  }
  return VI_SUCCESS;
}

bool SimulatedVisa::awaitLock(const VisaResource& resource, std::uint32_t milliseconds) {
  if (resource.lockedBy_) {
    bench_.clock().wait(timeOut(milliseconds));
  }
  return !resource.lockedBy_;
}

ViStatus SimulatedVisa::viLock(ViSession instrument, std::uint32_t milliseconds) {
  if (!isSession(instrument)) {
    return VI_ERROR_INV_OBJECT;
  }
  Object& session = objects_.at(instrument);
  std::optional<VisaResource::Holder>& holder = session.resource->lockedBy_;
  const VisaResource::Holder own{this, instrument};
  if (holder != own && !awaitLock(*session.resource, milliseconds)) {
    return VI_ERROR_RSRC_LOCKED;
  }
  holder = own;
  return ++session.locks == 1 ? VI_SUCCESS : VI_SUCCESS_NESTED_EXCLUSIVE;
}

ViStatus SimulatedVisa::viUnlock(ViSession instrument) {
  if (!isSession(instrument)) {
    return VI_ERROR_INV_OBJECT;
  }
  Object& session = objects_.at(instrument);
  if (session.locks == 0) {
    return VI_ERROR_SESN_NLOCKED;
  }
  if (--session.locks > 0) {
    return VI_SUCCESS_NESTED_EXCLUSIVE;
  }
  release(instrument, session);
  return VI_SUCCESS;
}

ViStatus SimulatedVisa::viParseRsrc(ViSession resourceManager, std::string_view name,
                                    VisaName& parsed) const {
  if (object(resourceManager, Kind::ResourceManager) == nullptr) {
    return VI_ERROR_INV_OBJECT;
  }
  auto found = parseVisaName(name);
  if (!found) {
    return VI_ERROR_INV_RSRC_NAME;
  }
  bool known = false;
  if (const VisaResource* const resource = bench_.find(name, known)) {
    found->full = resource->name;
  }
  parsed = std::move(*found);
  return VI_SUCCESS;
}

bool SimulatedVisa::isSession(ViObject handle) const {
  return object(handle, Kind::Session) != nullptr;
}

ViStatus SimulatedVisa::viClear(ViSession instrument) {
  const ViStatus refused = refusal(instrument);
  if (refused == VI_SUCCESS) {
    if (Connection* const connection = object(instrument, Kind::Session)->resource->connection()) {
      connection->clear();
    }
  }
  return refused;
}

ViStatus SimulatedVisa::viReadSTB(ViSession instrument, std::uint16_t& status) {
  constexpr unsigned kMessageAvailable = 0x10;
  constexpr unsigned kErrorAvailable = 0x04;
  status = 0;
  const ViStatus refused = refusal(instrument);
  if (refused != VI_SUCCESS) {
    return refused;
  }
  if (const Connection* const connection =
          object(instrument, Kind::Session)->resource->connection()) {
    const auto due = connection->nextDue();
    const bool available = due && *due <= bench_.clock().now();
    status = static_cast<std::uint16_t>((available ? kMessageAvailable : 0U) |
                                        (connection->hasErrors() ? kErrorAvailable : 0U));
  }
  return VI_SUCCESS;
}

ViStatus SimulatedVisa::viClose(ViObject handle) {
  if (handle == 0) {
    return VI_WARN_NULL_OBJECT;
  }
  const auto found = objects_.find(handle);
  if (found == objects_.end()) {
    return VI_ERROR_INV_OBJECT;
  }
  release(handle, found->second);
  objects_.erase(found);
  std::erase_if(objects_, [&](const auto& entry) {
    const bool child = entry.second.parent == handle;
    if (child) {
      release(entry.first, entry.second);
    }
    return child;
  });
  return VI_SUCCESS;
}

ViStatus SimulatedVisa::viGetAttribute(ViObject handle, ViAttr attribute, std::string& value) {
  const Object* const session = object(handle, Kind::Session);
  if (session == nullptr) {
    return objects_.contains(handle) ? VI_ERROR_NSUP_ATTR : VI_ERROR_INV_OBJECT;
  }
  return readText(*session, attribute, value) ? VI_SUCCESS : VI_ERROR_NSUP_ATTR;
}

bool SimulatedVisa::readText(const Object& session, ViAttr attribute, std::string& value) {
  const VisaResource& resource = *session.resource;
  const Configuration* const instrument =
      resource.interface == Interface::Usb ? resource.configuration() : nullptr;
  switch (attribute) {
    case VI_ATTR_INTF_INST_NAME:
      value = resource.interfaceName;
      return true;
    case kResourceName:
      value = resource.name;
      return true;
    case kResourceClass:
      value = "INSTR";
      return true;
    case kLibraryMaker:
      value = "LumoDevice (simulated)";
      return true;
    case kMakerName:
      value = instrument == nullptr ? "" : instrument->maker;
      return instrument != nullptr;
    case kModelName:
      value = instrument == nullptr ? "" : instrument->model;
      return instrument != nullptr;
    case kUsbSerialNumber:
      value = instrument == nullptr ? "" : instrument->serial;
      return instrument != nullptr;
    default:
      return false;
  }
}

ViStatus SimulatedVisa::viSetAttribute(ViObject handle, ViAttr attribute, std::uint32_t value) {
  const Object* const session = object(handle, Kind::Session);
  if (session == nullptr) {
    return objects_.contains(handle) ? VI_ERROR_NSUP_ATTR : VI_ERROR_INV_OBJECT;
  }
  const VisaAttribute* const row = findAttribute(attribute, *session->resource);
  if (row == nullptr) {
    std::string text;
    return viGetAttribute(handle, attribute, text) == VI_SUCCESS ? VI_ERROR_ATTR_READONLY
                                                                 : VI_ERROR_NSUP_ATTR;
  }
  if (row->readOnly) {
    return VI_ERROR_ATTR_READONLY;
  }
  if (!takesValue(*row, value)) {
    return VI_ERROR_NSUP_ATTR_STATE;
  }
  objects_.at(handle).attributes[attribute] = value;
  return VI_SUCCESS;
}

ViStatus SimulatedVisa::numericAttribute(ViObject handle, ViAttr attribute, std::uint32_t& value,
                                         int& width) const {
  const Object* const session = object(handle, Kind::Session);
  if (session == nullptr) {
    return objects_.contains(handle) ? VI_ERROR_NSUP_ATTR : VI_ERROR_INV_OBJECT;
  }
  const VisaAttribute* const row = findAttribute(attribute, *session->resource);
  if (row == nullptr) {
    return VI_ERROR_NSUP_ATTR;
  }
  width = row->width;
  value = SimulatedVisa::attribute(*session, attribute);
  return VI_SUCCESS;
}

std::uint32_t SimulatedVisa::attribute(const Object& session, ViAttr attribute) {
  const auto set = session.attributes.find(attribute);
  if (set != session.attributes.end()) {
    return set->second;
  }
  VisaResource& resource = *session.resource;
  switch (attribute) {
    case kLockState:
      return resource.lockedBy_ ? VI_EXCLUSIVE_LOCK : VI_NO_LOCK;
    case kManagerSession:
      return session.parent;
    case kInterfaceType:
      return static_cast<std::uint32_t>(interfaceType(resource.interface));
    case kInterfaceNumber:
      return parseVisaName(resource.name).value_or(VisaName{}).board;
    case kMakerNumber:
      return numberOf(resource.name, 1);
    case kModelNumber:
      return numberOf(resource.name, 2);
    case kAvailable:
      return resource.connection() == nullptr
                 ? 0
                 : static_cast<std::uint32_t>(resource.connection()->unread());
    default:
      break;
  }
  const VisaAttribute* const row = findAttribute(attribute, *session.resource);
  return row == nullptr ? 0 : row->initial;
}

ViStatus SimulatedVisa::refusal(ViSession handle) const {
  const Object* const session = object(handle, Kind::Session);
  if (session == nullptr) {
    return VI_ERROR_INV_OBJECT;
  }
  const std::optional<VisaResource::Holder>& holder = session->resource->lockedBy_;
  if (holder && holder != VisaResource::Holder{this, handle}) {
    return VI_ERROR_RSRC_LOCKED;
  }
  return session->resource->isPresent() ? VI_SUCCESS : VI_ERROR_CONN_LOST;
}

std::optional<char> SimulatedVisa::stopCharacter(const Object& session) {
  const bool serial = session.resource->interface == Interface::Serial;
  const bool stops = serial ? attribute(session, VI_ATTR_ASRL_END_IN) == kEndsByTerminationCharacter
                            : attribute(session, VI_ATTR_TERMCHAR_EN) != 0;
  if (!stops) {
    return std::nullopt;
  }
  return static_cast<char>(attribute(session, VI_ATTR_TERMCHAR));
}

ViStatus SimulatedVisa::viRead(ViSession instrument, std::span<char> buffer, std::uint32_t& count) {
  count = 0;
  const Object* const session = object(instrument, Kind::Session);
  const ViStatus refused = refusal(instrument);
  if (refused != VI_SUCCESS || buffer.empty()) {
    return refused;
  }
  Connection* const connection = session->resource->connection();
  if (connection == nullptr) {
    waitInVain(*session);
    return VI_ERROR_TMO;
  }
  return readUntil(*connection, *session, buffer, count);
}

void SimulatedVisa::waitInVain(const Object& session) {
  bench_.clock().wait(timeOut(attribute(session, VI_ATTR_TMO_VALUE)));
}

ViStatus SimulatedVisa::readUntil(Connection& connection, const Object& session,
                                  std::span<char> buffer, std::uint32_t& count) {
  Clock& clock = bench_.clock();
  const Duration deadline = clock.now() + timeOut(attribute(session, VI_ATTR_TMO_VALUE));
  const std::optional<char> stop = stopCharacter(session);
  const bool marksEnd = session.resource->interface != Interface::Serial;
  for (;;) {
    const Connection::Taken taken = connection.take(buffer.subspan(count), clock.now(), stop);
    count += static_cast<std::uint32_t>(taken.count);
    if (taken.end && marksEnd) {
      return VI_SUCCESS;
    }
    if (taken.stop) {
      return VI_SUCCESS_TERM_CHAR;
    }
    if (count == buffer.size()) {
      return VI_SUCCESS_MAX_CNT;
    }
    const std::optional<Duration> due = connection.nextDue();
    const Duration now = clock.now();
    if (due && *due <= now) {
      continue;
    }
    if (now >= deadline) {
      break;
    }
    clock.wait(std::min(due.value_or(deadline), deadline) - now);
  }
  if (count == 0) {
    connection.readInVain();
  }
  return VI_ERROR_TMO;
}

ViStatus SimulatedVisa::viWrite(ViSession instrument, std::string_view data, std::uint32_t& count) {
  count = 0;
  const Object* const session = object(instrument, Kind::Session);
  const ViStatus refused = refusal(instrument);
  if (refused != VI_SUCCESS) {
    return refused;
  }
  VisaResource& resource = *session->resource;
  const bool serial = resource.interface == Interface::Serial;
  const bool sendsEnd = attribute(*session, VI_ATTR_SEND_END_EN) != 0 && !data.empty();
  const bool appends = serial && sendsEnd &&
                       attribute(*session, VI_ATTR_ASRL_END_OUT) == kEndsByTerminationCharacter;
  resource.bytesWritten += data.size();
  if (Connection* const connection = resource.connection()) {
    const Duration now = bench_.clock().now();
    connection->feed(data, sendsEnd && !serial, now);
    if (appends) {
      const char terminator = static_cast<char>(attribute(*session, VI_ATTR_TERMCHAR));
      connection->feed(std::string_view(&terminator, 1), false, now);
    }
  }
  count = static_cast<std::uint32_t>(data.size());
  return VI_SUCCESS;
}

std::string SimulatedVisa::discardUnread(ViSession instrument) {
  const Object* const session = object(instrument, Kind::Session);
  Connection* const connection =
      refusal(instrument) == VI_SUCCESS ? session->resource->connection() : nullptr;
  return connection == nullptr ? std::string() : connection->takeAll(bench_.clock().now());
}

}  // namespace zansim
