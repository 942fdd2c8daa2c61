// A VISA library that writes down every call with every argument as it arrives over the C
// interface. Its variants lack a function, fail every call, or do what no library should.

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

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
  std::strcpy(static_cast<char*>(buffer), text);
#endif
}

#ifdef FAILING
constexpr std::int32_t kResult = static_cast<std::int32_t>(0xBFFF0000U);
#else
constexpr std::int32_t kResult = 0;
#endif

int remaining = 0;

}  // namespace

extern "C" {

const char* recordedCalls() {
  return record.c_str();
}
void forgetCalls() {
  record.clear();
}

std::int32_t viOpenDefaultRM(std::uint32_t* session) {
  note("viOpenDefaultRM");
  if (kResult == 0) *session = 0xF0000001;
  return kResult;
}

std::int32_t viFindRsrc(std::uint32_t session, const char* expression, std::uint32_t* list,
                        std::uint32_t* count, char* descriptor) {
  note("viFindRsrc %08X %s", session, expression);
  if (kResult != 0) return kResult;
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

std::int32_t viFindNext(std::uint32_t list, char* descriptor) {
  note("viFindNext %08X", list);
  if (kResult != 0) return kResult;
  if (remaining-- <= 0) return static_cast<std::int32_t>(0xBFFF0011U);
  fillText(descriptor, "GPIB0::5::INSTR");
  return 0;
}

std::int32_t viOpen(std::uint32_t session, const char* name, std::uint32_t mode,
                    std::uint32_t timeout, std::uint32_t* instrument) {
  note("viOpen %08X %s %u %u", session, name, mode, timeout);
  if (kResult == 0) *instrument = 0xF0000003;
  return kResult;
}

std::int32_t viClose(std::uint32_t object) {
  note("viClose %08X", object);
  return kResult;
}

std::int32_t viGetAttribute(std::uint32_t object, std::uint32_t attribute, void* value) {
  note("viGetAttribute %08X %08X", object, attribute);
  if (kResult == 0) fillText(value, "USB0 (ZAN 6000)");
  return kResult;
}

std::int32_t viSetAttribute(std::uint32_t object, std::uint32_t attribute, std::uintptr_t value) {
  note("viSetAttribute %08X %08X %016llX", object, attribute,
       static_cast<unsigned long long>(value));
  return kResult;
}

#ifndef WITHOUT_VIREAD
std::int32_t viRead(std::uint32_t session, unsigned char* buffer, std::uint32_t count,
                    std::uint32_t* read) {
  note("viRead %08X %u", session, count);
  if (kResult != 0) return kResult;
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

std::int32_t viWrite(std::uint32_t session, const unsigned char* buffer, std::uint32_t count,
                     std::uint32_t* written) {
  note("viWrite %08X %s %u", session, quoted(buffer, count).c_str(), count);
  if (kResult != 0) return kResult;
#ifdef WILD
  *written = 0xFFFFFFFF;
#else
  *written = count;
#endif
  return 0;
}
}
