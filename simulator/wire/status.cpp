#include "simulator/wire/status.hpp"

#include <algorithm>
#include <string_view>
#include <utility>

namespace zansim {
namespace {

constexpr std::pair<Error, std::string_view> kTexts[] = {
    {Error::None, "No error"},
    {Error::DataType, "Data type error"},
    {Error::ParameterNotAllowed, "Parameter not allowed"},
    {Error::MissingParameter, "Missing parameter"},
    {Error::UndefinedHeader, "Undefined header"},
    {Error::InvalidNumber, "Invalid character in number"},
    {Error::InvalidSuffix, "Invalid suffix"},
    {Error::InvalidBlock, "Invalid block data"},
    {Error::SettingsConflict, "Settings conflict"},
    {Error::OutOfRange, "Data out of range"},
    {Error::TooMuchData, "Too much data"},
    {Error::IllegalParameter, "Illegal parameter value"},
    {Error::HardwareMissing, "Hardware missing"},
    {Error::DeviceSpecific, "Device-specific error"},
    {Error::QueueOverflow, "Queue overflow"},
    {Error::InputOverrun, "Input buffer overrun"},
    {Error::QueryInterrupted, "Query INTERRUPTED"},
    {Error::QueryUnterminated, "Query UNTERMINATED"},
    {Error::QueryDeadlocked, "Query DEADLOCKED"},
};

unsigned eventOf(Error error) {
  if (isCommandError(error)) {
    return kCommandError;
  }
  const int number = static_cast<int>(error);
  if (number > -300) {
    return kExecutionError;
  }
  return number > -400 ? kDeviceError : kQueryError;
}

}  // namespace

void Status::report(Error error) {
  set(eventOf(error));
  if (count_ == kDepth) {
    queue_[(first_ + kDepth - 1) % kDepth] = Error::QueueOverflow;
    set(kDeviceError);
    return;
  }
  queue_[(first_ + count_) % kDepth] = error;
  ++count_;
}

Error Status::take() {
  if (count_ == 0) {
    return Error::None;
  }
  const Error oldest = queue_[first_];
  first_ = (first_ + 1) % kDepth;
  --count_;
  return oldest;
}

unsigned Status::takeEvents() {
  return std::exchange(events_, 0U);
}

void Status::clear() {
  count_ = 0;
  events_ = 0;
}

std::string errorText(Error error) {
  const auto* const found = std::find_if(std::begin(kTexts), std::end(kTexts),
                                         [&](const auto& entry) { return entry.first == error; });
  std::string text = std::to_string(static_cast<int>(error));
  text.append(",\"").append(found->second).append("\"");
  return text;
}

}  // namespace zansim
