#include "tests/support/scripted_visa.hpp"

#include <algorithm>
#include <chrono>
#include <string_view>

namespace lumodevice::support {

namespace {

std::string attributeText(io::ViAttr attribute) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text;
  for (int shift = 28; shift >= 0; shift -= 4) {
    text += kDigits[(attribute >> shift) & 0xF];
  }
  return text;
}

std::string callText(const char* name, std::uint32_t handle) {
  return std::string(name) + ' ' + std::to_string(handle);
}

}  // namespace

std::string ScriptedVisa::openHandles() const {
  std::string handles;
  for (const auto& [handle, object] : objects_) {
    handles += ' ' + std::to_string(handle);
  }
  return handles;
}

io::ViStatus ScriptedVisa::viOpenDefaultRM(io::ViSession& resourceManager) {
  if (const int status = script_.call("viOpenDefaultRM"); status < 0) {
    return status;
  }
  resourceManager = make({});
  return io::VI_SUCCESS;
}

io::ViStatus ScriptedVisa::viFindRsrc(io::ViSession resourceManager, const std::string& expression,
                                      io::ViFindList& findList, std::uint32_t& count,
                                      std::string& descriptor) {
  const int status =
      script_.call(callText("viFindRsrc", resourceManager) + ' ' + escaped(expression));
  if (status < 0) {
    return status;
  }
  if (resources.empty()) {
    return io::VI_ERROR_RSRC_NFOUND;
  }
  findList = make({});
  count = claimedCount.value_or(static_cast<std::uint32_t>(resources.size()));
  descriptor = resources.front().descriptor;
  return io::VI_SUCCESS;
}

io::ViStatus ScriptedVisa::viFindNext(io::ViFindList findList, std::string& descriptor) {
  if (const int status = script_.call(callText("viFindNext", findList)); status < 0) {
    return status;
  }
  const auto object = objects_.find(findList);
  if (object == objects_.end()) {
    return io::VI_ERROR_INV_OBJECT;
  }
  const std::size_t next = ++object->second.found;
  if (next >= resources.size()) {
    return io::VI_ERROR_RSRC_NFOUND;
  }
  descriptor = resources[next].descriptor;
  return io::VI_SUCCESS;
}

io::ViStatus ScriptedVisa::viOpen(io::ViSession resourceManager, const std::string& descriptor,
                                  std::uint32_t accessMode, std::uint32_t openTimeout,
                                  io::ViSession& instrument) {
  const int status =
      script_.call(callText("viOpen", resourceManager) + ' ' + escaped(descriptor) + ' ' +
                   std::to_string(accessMode) + ' ' + std::to_string(openTimeout));
  if (status < 0) {
    return status;
  }
  const auto resource =
      std::find_if(resources.begin(), resources.end(),
                   [&](const VisaResource& each) { return each.descriptor == descriptor; });
  if (resource == resources.end()) {
    return io::VI_ERROR_RSRC_NFOUND;
  }
  instrument = make({.resource = &*resource});
  return io::VI_SUCCESS;
}

io::ViStatus ScriptedVisa::viClose(io::ViObject object) {
  if (const int status = script_.call(callText("viClose", object)); status < 0) {
    return status;
  }
  if (object == 0) {
    return io::VI_WARN_NULL_OBJECT;
  }
  return objects_.erase(object) > 0 ? io::VI_SUCCESS : io::VI_ERROR_INV_OBJECT;
}

io::ViStatus ScriptedVisa::viGetAttribute(io::ViObject object, io::ViAttr attribute,
                                          std::string& value) {
  const int status =
      script_.call(callText("viGetAttribute", object) + ' ' + attributeText(attribute));
  if (status < 0) {
    return status;
  }
  const Object* opened = session(object);
  if (opened == nullptr) {
    return io::VI_ERROR_INV_OBJECT;
  }
  value = opened->resource->interfaceName;
  return io::VI_SUCCESS;
}

io::ViStatus ScriptedVisa::viSetAttribute(io::ViObject object, io::ViAttr attribute,
                                          std::uint32_t value) {
  const int status = script_.call(callText("viSetAttribute", object) + ' ' +
                                  attributeText(attribute) + ' ' + std::to_string(value));
  if (status < 0) {
    return status;
  }
  Object* opened = session(object);
  if (opened == nullptr) {
    return io::VI_ERROR_INV_OBJECT;
  }
  if (attribute == io::VI_ATTR_TMO_VALUE) {
    opened->timeout = value;
  }
  return io::VI_SUCCESS;
}

io::ViStatus ScriptedVisa::viRead(io::ViSession instrument, std::span<char> buffer,
                                  std::uint32_t& count) {
  const int status =
      script_.call(callText("viRead", instrument) + ' ' + std::to_string(buffer.size()));
  if (status < 0) {
    return status;
  }
  Object* opened = session(instrument);
  if (opened == nullptr) {
    return io::VI_ERROR_INV_OBJECT;
  }
  const auto timeOut = clock_.now() + std::chrono::milliseconds(opened->timeout);
  const bool timedOut = opened->inbox.empty() || opened->inbox.complete() > timeOut;
  const auto until = timedOut ? timeOut : std::max(clock_.now(), opened->inbox.complete());
  clock_.idle(until - clock_.now());
  const std::string bytes = opened->inbox.take(clock_.now(), buffer.size());
  std::copy(bytes.begin(), bytes.end(), buffer.begin());
  count = static_cast<std::uint32_t>(bytes.size());
  if (opened->readStatus) {
    return *opened->readStatus;
  }
  if (timedOut) {
    return io::VI_ERROR_TMO;
  }
  return opened->inbox.empty() ? io::VI_SUCCESS : io::VI_SUCCESS_MAX_CNT;
}

io::ViStatus ScriptedVisa::viWrite(io::ViSession instrument, std::string_view data,
                                   std::uint32_t& count) {
  const int status = script_.call(callText("viWrite", instrument) + ' ' + escaped(data));
  if (status < 0) {
    return status;
  }
  Object* opened = session(instrument);
  if (opened == nullptr) {
    return io::VI_ERROR_INV_OBJECT;
  }
  count = static_cast<std::uint32_t>(data.size());
  opened->inbox.drop();
  if (opened->resource->instrument != nullptr) {
    const Reply reply = opened->resource->instrument->hear(data);
    opened->readStatus = reply.readStatus;
    opened->inbox.put(reply, clock_.now());
  }
  return io::VI_SUCCESS;
}

io::ViObject ScriptedVisa::make(Object object) {
  objects_.emplace(++lastHandle_, std::move(object));
  return lastHandle_;
}

ScriptedVisa::Object* ScriptedVisa::session(io::ViObject handle) {
  const auto object = objects_.find(handle);
  const bool isSession = object != objects_.end() && object->second.resource != nullptr;
  return isSession ? &object->second : nullptr;
}

}  // namespace lumodevice::support
