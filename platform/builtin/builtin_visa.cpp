#include "platform/builtin/builtin_visa.hpp"

#include <algorithm>
#include <array>
#include <utility>

#include "lumodevice/io/find_expression.hpp"
#include "platform/builtin/socket_session.hpp"
#include "platform/same_name.hpp"

namespace lumodevice::platform {

namespace {

/// On a network or GPIB: what only a VISA library speaks. HiSLIP and VXI-11 are among them.
bool needsLibrary(std::string_view descriptor) {
  constexpr auto kInterfaces = std::to_array<std::string_view>({"TCPIP", "GPIB"});
  constexpr std::string_view kClass = "::INSTR";
  return descriptor.size() > kClass.size() &&
         sameName(descriptor.substr(descriptor.size() - kClass.size()), kClass) &&
         std::ranges::any_of(kInterfaces, [&](std::string_view name) {
           return sameName(descriptor.substr(0, name.size()), name);
         });
}

/// Descriptors come out of fixed-length buffers and may still carry their blanks.
std::string_view withoutPadding(std::string_view text) {
  return text.substr(0, text.find_last_not_of(' ') + 1);
}

}  // namespace

bool BuiltinVisa::isResourceManager(io::ViObject handle) const {
  const auto object = objects_.find(handle);
  return object != objects_.end() && object->second.owner == 0;
}

InstrumentSession* BuiltinVisa::sessionOf(io::ViObject handle) const {
  const auto object = objects_.find(handle);
  return object == objects_.end() ? nullptr : object->second.instrument.get();
}

/// Handles are not used again, so one that was closed stays invalid.
io::ViObject BuiltinVisa::add(Object object) {
  do {
    ++lastHandle_;
  } while (lastHandle_ == 0 || objects_.contains(lastHandle_));
  objects_.emplace(lastHandle_, std::move(object));
  return lastHandle_;
}

io::ViStatus BuiltinVisa::viOpenDefaultRM(io::ViSession& resourceManager) {
  resourceManager = add({});
  return io::VI_SUCCESS;
}

io::ViStatus BuiltinVisa::viFindRsrc(io::ViSession resourceManager, const std::string& expression,
                                     io::ViFindList& findList, std::uint32_t& count,
                                     std::string& descriptor) {
  findList = 0;
  count = 0;
  if (!isResourceManager(resourceManager)) return io::VI_ERROR_INV_OBJECT;
  auto matches = std::make_unique<std::vector<std::string>>();
  const std::string_view wanted = withoutPadding(expression);
  if (parseSocketAddress(wanted)) {
    matches->emplace_back(wanted);
  } else {
    const auto pattern = io::FindExpression::parse(wanted);
    if (!pattern) return io::VI_ERROR_INV_EXPR;
    if (local_ != nullptr) *matches = local_->descriptors();
    std::erase_if(*matches, [&](const std::string& name) { return !pattern->matches(name); });
  }
  if (matches->empty()) return io::VI_ERROR_RSRC_NFOUND;
  count = static_cast<std::uint32_t>(matches->size());
  std::reverse(matches->begin(), matches->end());
  descriptor = std::move(matches->back());
  matches->pop_back();
  findList = add({.owner = resourceManager, .instrument = nullptr, .matches = std::move(matches)});
  return io::VI_SUCCESS;
}

io::ViStatus BuiltinVisa::viFindNext(io::ViFindList findList, std::string& descriptor) {
  const auto object = objects_.find(findList);
  if (object == objects_.end() || !object->second.matches) return io::VI_ERROR_INV_OBJECT;
  auto& matches = *object->second.matches;
  if (matches.empty()) return io::VI_ERROR_RSRC_NFOUND;
  descriptor = std::move(matches.back());
  matches.pop_back();
  return io::VI_SUCCESS;
}

std::unique_ptr<InstrumentSession> BuiltinVisa::openInstrument(std::string_view descriptor,
                                                               std::uint32_t openTimeout,
                                                               io::ViStatus& status) const {
  if (const auto address = parseSocketAddress(descriptor)) {
    return SocketSession::connect(*address, openTimeout, status);
  }
  if (descriptor.find("::") == std::string_view::npos) {
    status = io::VI_ERROR_INV_RSRC_NAME;
    return nullptr;
  }
  if (needsLibrary(descriptor)) {
    status = io::VI_ERROR_LIBRARY_NFOUND;
    return nullptr;
  }
  status = io::VI_ERROR_RSRC_NFOUND;
  return local_ == nullptr ? nullptr : local_->open(descriptor, status);
}

io::ViStatus BuiltinVisa::viOpen(io::ViSession resourceManager, const std::string& descriptor,
                                 std::uint32_t accessMode, std::uint32_t openTimeout,
                                 io::ViSession& instrument) {
  instrument = 0;
  if (!isResourceManager(resourceManager)) return io::VI_ERROR_INV_OBJECT;
  if (accessMode > io::VI_EXCLUSIVE_LOCK) return io::VI_ERROR_INV_ACC_MODE;
  io::ViStatus status = io::VI_SUCCESS;
  auto session = openInstrument(withoutPadding(descriptor), openTimeout, status);
  if (session) {
    instrument =
        add({.owner = resourceManager, .instrument = std::move(session), .matches = nullptr});
  }
  return status;
}

io::ViStatus BuiltinVisa::viClose(io::ViObject object) {
  if (object == 0) return io::VI_WARN_NULL_OBJECT;
  if (objects_.erase(object) == 0) return io::VI_ERROR_INV_OBJECT;
  std::erase_if(objects_, [object](const auto& entry) { return entry.second.owner == object; });
  return io::VI_SUCCESS;
}

io::ViStatus BuiltinVisa::viGetAttribute(io::ViObject object, io::ViAttr attribute,
                                         std::string& value) {
  const auto* session = sessionOf(object);
  return session == nullptr ? io::VI_ERROR_INV_OBJECT : session->getAttribute(attribute, value);
}

io::ViStatus BuiltinVisa::viSetAttribute(io::ViObject object, io::ViAttr attribute,
                                         std::uint32_t value) {
  auto* session = sessionOf(object);
  return session == nullptr ? io::VI_ERROR_INV_OBJECT : session->setAttribute(attribute, value);
}

io::ViStatus BuiltinVisa::viRead(io::ViSession instrument, std::span<char> buffer,
                                 std::uint32_t& count) {
  count = 0;
  auto* session = sessionOf(instrument);
  return session == nullptr ? io::VI_ERROR_INV_OBJECT : session->read(buffer, count);
}

io::ViStatus BuiltinVisa::viWrite(io::ViSession instrument, std::string_view data,
                                  std::uint32_t& count) {
  count = 0;
  auto* session = sessionOf(instrument);
  return session == nullptr ? io::VI_ERROR_INV_OBJECT : session->write(data, count);
}

std::string BuiltinVisa::discardUnread(io::ViSession instrument) {
  auto* session = sessionOf(instrument);
  return session == nullptr ? std::string() : session->discardUnread();
}

}  // namespace lumodevice::platform
