// A VISA library that writes down every call with every argument as it arrives over the C
// interface. Its variants lack a function, fail every call, or do what no library should.

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

#if defined(_WIN32) && !defined(_WIN64)
#define VISA_CALL __stdcall
#else
#define VISA_CALL
#endif

namespace {

std::string record;

template <typename... Arguments>
void note(const char* format, Arguments... arguments) {
  char line[512];
  (void)std::snprintf(line, sizeof line, format, arguments...);
  record += line;
  record += '\n';
}

std::string quoted(const unsigned char* bytes, std::uint32_t count) {
  std::string text;
  for (std::uint32_t i = 0; i < count; ++i) {
    char hex[8];
    (void)std::snprintf(hex, sizeof hex, "%02X", bytes[i]);
    text += hex;
  }
  return text;
}

/// A buffer for a text must be zeroed for all of its 256 bytes, and take every one of them.
void fillText(void* buffer, const char* text) {
  auto* bytes = static_cast<unsigned char*>(buffer);
  for (int i = 0; i < 256; ++i) {
    if (bytes[i] != 0) note("buffer not clean at %d", i);
  }
#ifdef WILD
  (void)text;
  std::memset(bytes, 'w', 300);
#else
  std::memset(bytes, 0xEE, 256);
  std::memcpy(bytes, text, std::strlen(text) + 1);
#endif
}

constexpr auto kSystemError = static_cast<std::int32_t>(0xBFFF0000U);
constexpr auto kInvalidObject = static_cast<std::int32_t>(0xBFFF000EU);
constexpr auto kTimeOut = static_cast<std::int32_t>(0xBFFF0015U);

std::string failing;   // the function that fails ...
int callsBefore = 0;   // ... once this many calls of it have worked
std::string answered;  // the only message that is answered; "" when all are
std::string lastWrite;
int remaining = 0;

/// What a call of the function returns.
std::int32_t result(const char* function) {
#ifdef FAILING
  (void)function;
  return kSystemError;
#else
  return failing == function && callsBefore-- <= 0 ? kSystemError : 0;
#endif
}

}  // namespace

extern "C" {

const char* recordedCalls() {
  return record.c_str();
}
void forgetCalls() {
  record.clear();
}
/// From its call number `before` (counted from 0, from now on) the function fails; "" is none.
void failCalls(const char* function, int before) {
  failing = function;
  callsBefore = before;
}
/// Reads after any other message time out; "" is none.
void answerOnly(const char* message) {
  answered = message;
}

std::int32_t VISA_CALL viOpenDefaultRM(std::uint32_t* session) {
  note("viOpenDefaultRM");
  const std::int32_t status = result("viOpenDefaultRM");
  if (status == 0) *session = 0xF0000001;
  return status;
}

std::int32_t VISA_CALL viFindRsrc(std::uint32_t session, const char* expression,
                                  std::uint32_t* list, std::uint32_t* count, char* descriptor) {
  note("viFindRsrc %08X %s", session, expression);
  if (const std::int32_t status = result("viFindRsrc")) return status;
  fillText(descriptor, "USB0::0x1::0x2::ZAN1::INSTR");
  *list = 0xF0000002;
#ifdef WILD
  *count = 0xFFFFFFFF;
#else
  *count = 2;
  remaining = 1;
#endif
  return 0;
}

std::int32_t VISA_CALL viFindNext(std::uint32_t list, char* descriptor) {
  note("viFindNext %08X", list);
  if (const std::int32_t status = result("viFindNext")) return status;
  if (remaining-- <= 0) return static_cast<std::int32_t>(0xBFFF0011U);
  fillText(descriptor, "GPIB0::5::INSTR");
  return 0;
}

std::int32_t VISA_CALL viOpen(std::uint32_t session, const char* name, std::uint32_t mode,
                              std::uint32_t timeout, std::uint32_t* instrument) {
  note("viOpen %08X %s %u %u", session, name, mode, timeout);
  const std::int32_t status = result("viOpen");
  if (status == 0) *instrument = 0xF0000003;
  return status;
}

std::int32_t VISA_CALL viClose(std::uint32_t object) {
  note("viClose %08X", object);
  return result("viClose");
}

std::int32_t VISA_CALL viGetAttribute(std::uint32_t object, std::uint32_t attribute, void* value) {
  note("viGetAttribute %08X %08X", object, attribute);
  const std::int32_t status = result("viGetAttribute");
  if (status == 0) fillText(value, "USB0 (ZAN 6000)");
  return status;
}

std::int32_t VISA_CALL viSetAttribute(std::uint32_t object, std::uint32_t attribute,
                                      std::uintptr_t value) {
  note("viSetAttribute %08X %08X %016llX", object, attribute,
       static_cast<unsigned long long>(value));
  return result("viSetAttribute");
}

#ifndef WITHOUT_VIREAD
std::int32_t VISA_CALL viRead(std::uint32_t session, unsigned char* buffer, std::uint32_t count,
                              std::uint32_t* read) {
  note("viRead %08X %u", session, count);
  if (const std::int32_t status = result("viRead")) return status;
  if (session == 0) return kInvalidObject;
  if (!answered.empty() && lastWrite != answered) return kTimeOut;
#ifdef WILD
  std::memset(buffer, 'w', count < 1000 ? count + 1000 : count);
  *read = 0xFFFFFFFF;
  return 0;
#else
  *read = count < 7 ? count : 7;
  std::memcpy(buffer, "ZAN,1\r\n", *read);
  return static_cast<std::int32_t>(count < 7 ? 0x3FFF0006 : 0);
#endif
}
#endif

std::int32_t VISA_CALL viWrite(std::uint32_t session, const unsigned char* buffer,
                               std::uint32_t count, std::uint32_t* written) {
  note("viWrite %08X %s %u", session, quoted(buffer, count).c_str(), count);
  lastWrite.clear();
  if (const std::int32_t status = result("viWrite")) return status;
  if (session == 0) return kInvalidObject;
  lastWrite.assign(buffer, buffer + count);
#ifdef WILD
  *written = 0xFFFFFFFF;
#else
  *written = count;
#endif
  return 0;
}
}
