/// A shared library that exports what VISA programs need to find, open, use and close a
/// message-based resource, over one simulated instrument in real time, so that any of them can be
/// pointed at it. The environment variable ZANSIM_FAULTS holds faults, parted by ";";
/// ZANSIM_TRANSCRIPT names a file to which what is written and read is appended.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <stdexcept>
#include <string>
#include <string_view>

#include "platform/system_clock.hpp"
#include "simulator/links/simulated_visa.hpp"
#include "simulator/links/visa_statuses.hpp"

#define ZANSIM_EXPORT extern "C" __attribute__((visibility("default")))

namespace {

using namespace lumodevice::io;
/// As wide as a pointer on every platform.
using ViAttrState = std::uintptr_t;

/// The machine that the process sees. VISA may be called from several threads; the mutex lets one
/// in.
struct Machine {
  lumodevice::platform::SystemClock clock;
  zansim::Instrument instrument;
  zansim::VisaBench bench{clock};
  zansim::SimulatedVisa visa{bench};
  std::mutex mutex;

  Machine() {
    bench.addUsual(instrument);
    const char* const variable = std::getenv("ZANSIM_FAULTS");
    std::string_view faults = variable == nullptr ? "" : variable;
    while (!faults.empty()) {
      const std::size_t stop = std::min(faults.find(';'), faults.size());
      add(faults.substr(0, stop));
      faults.remove_prefix(std::min(stop + 1, faults.size()));
    }
  }

 private:
  void add(std::string_view fault) {
    try {
      instrument.faults.add(fault);
    } catch (const std::invalid_argument& wrong) {
      static_cast<void>(std::fprintf(stderr, "ZANSIM_FAULTS: %s\n", wrong.what()));
    }
  }
};

Machine& machine() {
  static Machine only;
  return only;
}

void copyText(const std::string& text, char* buffer) {
  if (buffer == nullptr) {
    return;
  }
  const std::size_t length = std::min(text.size(), VI_FIND_BUFLEN - 1);
  std::memcpy(buffer, text.data(), length);
  buffer[length] = '\0';
}

template <typename Value>
void store(Value* where, Value value) {
  if (where != nullptr) {
    *where = value;
  }
}

/// A line of the transcript: who sent (">" the program, "<" the instrument), and the bytes, of
/// which those that are no visible characters stand as "\xNN".
void note(char who, std::string_view bytes) {
  const char* const name = std::getenv("ZANSIM_TRANSCRIPT");
  std::FILE* const file = name == nullptr ? nullptr : std::fopen(name, "ab");
  if (file == nullptr) {
    return;
  }
  static_cast<void>(std::fprintf(file, "%c ", who));
  for (const char byte : bytes) {
    const bool visible = byte >= ' ' && byte <= '~' && byte != '\\';
    static_cast<void>(
        std::fprintf(file, visible ? "%c" : "\\x%02X", static_cast<std::uint8_t>(byte)));
  }
  static_cast<void>(std::fprintf(file, "\n"));
  static_cast<void>(std::fclose(file));
}

/// What an operation that does nothing comes to.
ViStatus ofSession(ViSession session, ViStatus status) {
  const std::lock_guard lock(machine().mutex);
  return machine().visa.isSession(session) ? status : VI_ERROR_INV_OBJECT;
}

ViStatus readNumber(ViObject object, ViAttr attribute, void* value) {
  std::uint32_t number = 0;
  int width = 0;
  const ViStatus status = machine().visa.numericAttribute(object, attribute, number, width);
  if (status != VI_SUCCESS) {
    return status;
  }
  const auto narrow = static_cast<std::uint8_t>(number);
  const auto middle = static_cast<std::uint16_t>(number);
  switch (width) {
    case sizeof narrow:
      std::memcpy(value, &narrow, sizeof narrow);
      break;
    case sizeof middle:
      std::memcpy(value, &middle, sizeof middle);
      break;
    default:
      std::memcpy(value, &number, sizeof number);
  }
  return status;
}

}  // namespace

ZANSIM_EXPORT ViStatus viOpenDefaultRM(ViSession* session) {
  const std::lock_guard lock(machine().mutex);
  return machine().visa.viOpenDefaultRM(*session);
}

ZANSIM_EXPORT ViStatus viFindRsrc(ViSession session, const char* expression, ViFindList* findList,
                                  std::uint32_t* count, char* descriptor) {
  const std::lock_guard lock(machine().mutex);
  ViFindList list = 0;
  std::uint32_t found = 0;
  std::string first;
  const ViStatus status = machine().visa.viFindRsrc(session, expression, list, found, first);
  if (status >= 0) {
    copyText(first, descriptor);
    store(findList, list);
    store(count, found);
    if (findList == nullptr) {
      machine().visa.viClose(list);
    }
  }
  return status;
}

ZANSIM_EXPORT ViStatus viFindNext(ViFindList findList, char* descriptor) {
  const std::lock_guard lock(machine().mutex);
  std::string next;
  const ViStatus status = machine().visa.viFindNext(findList, next);
  if (status >= 0) {
    copyText(next, descriptor);
  }
  return status;
}

ZANSIM_EXPORT ViStatus viOpen(ViSession session, const char* name, std::uint32_t accessMode,
                              std::uint32_t openTimeout, ViSession* instrument) {
  const std::lock_guard lock(machine().mutex);
  return machine().visa.viOpen(session, name, accessMode, openTimeout, *instrument);
}

ZANSIM_EXPORT ViStatus viClose(ViObject object) {
  const std::lock_guard lock(machine().mutex);
  return machine().visa.viClose(object);
}

ZANSIM_EXPORT ViStatus viGetAttribute(ViObject object, ViAttr attribute, void* value) {
  const std::lock_guard lock(machine().mutex);
  std::string text;
  const ViStatus status = machine().visa.viGetAttribute(object, attribute, text);
  if (status < 0) {
    return readNumber(object, attribute, value);
  }
  copyText(text, static_cast<char*>(value));
  return status;
}

ZANSIM_EXPORT ViStatus viSetAttribute(ViObject object, ViAttr attribute, ViAttrState value) {
  const std::lock_guard lock(machine().mutex);
  return machine().visa.viSetAttribute(object, attribute, static_cast<std::uint32_t>(value));
}

ZANSIM_EXPORT ViStatus viRead(ViSession session, unsigned char* buffer, std::uint32_t size,
                              std::uint32_t* count) {
  const std::lock_guard lock(machine().mutex);
  std::uint32_t read = 0;
  const ViStatus status =
      machine().visa.viRead(session, {reinterpret_cast<char*>(buffer), size}, read);
  store(count, read);
  note('<', {reinterpret_cast<const char*>(buffer), read});
  return status;
}

ZANSIM_EXPORT ViStatus viWrite(ViSession session, const unsigned char* buffer, std::uint32_t size,
                               std::uint32_t* count) {
  const std::lock_guard lock(machine().mutex);
  std::uint32_t written = 0;
  const ViStatus status =
      machine().visa.viWrite(session, {reinterpret_cast<const char*>(buffer), size}, written);
  store(count, written);
  note('>', {reinterpret_cast<const char*>(buffer), written});
  return status;
}

ZANSIM_EXPORT ViStatus viParseRsrcEx(ViSession session, const char* name, std::uint16_t* interface,
                                     std::uint16_t* board, char* resourceClass, char* expanded,
                                     char* alias) {
  if (name == nullptr) {
    return zansim::VI_ERROR_USER_BUF;
  }
  const std::lock_guard lock(machine().mutex);
  zansim::VisaName parsed;
  const ViStatus status = machine().visa.viParseRsrc(session, name, parsed);
  if (status == VI_SUCCESS) {
    store(interface, zansim::interfaceType(parsed.interface));
    store(board, parsed.board);
    copyText("INSTR", resourceClass);
    copyText(parsed.full, expanded);
    copyText("", alias);
  }
  return status;
}

ZANSIM_EXPORT ViStatus viParseRsrc(ViSession session, const char* name, std::uint16_t* interface,
                                   std::uint16_t* board) {
  return viParseRsrcEx(session, name, interface, board, nullptr, nullptr, nullptr);
}

ZANSIM_EXPORT ViStatus viStatusDesc(ViObject /*object*/, ViStatus status, char* description) {
  const std::string_view known = zansim::statusText(status);
  copyText(std::string(known.empty() ? zansim::statusText(zansim::VI_WARN_UNKNOWN_STATUS) : known),
           description);
  return known.empty() ? zansim::VI_WARN_UNKNOWN_STATUS : VI_SUCCESS;
}

ZANSIM_EXPORT ViStatus viClear(ViSession session) {
  const std::lock_guard lock(machine().mutex);
  return machine().visa.viClear(session);
}

ZANSIM_EXPORT ViStatus viReadSTB(ViSession session, std::uint16_t* status) {
  const std::lock_guard lock(machine().mutex);
  std::uint16_t byte = 0;
  const ViStatus polled = machine().visa.viReadSTB(session, byte);
  store(status, byte);
  return polled;
}

ZANSIM_EXPORT ViStatus viLock(ViSession session, std::uint32_t type, std::uint32_t timeout,
                              const char* /*requestedKey*/, char* /*accessKey*/) {
  const std::lock_guard lock(machine().mutex);
  return type == VI_EXCLUSIVE_LOCK ? machine().visa.viLock(session, timeout)
                                   : zansim::VI_ERROR_INV_LOCK_TYPE;
}

ZANSIM_EXPORT ViStatus viUnlock(ViSession session) {
  const std::lock_guard lock(machine().mutex);
  return machine().visa.viUnlock(session);
}

// A session keeps no bytes between its operations, so nothing is to be flushed and no buffer has a
// size.

ZANSIM_EXPORT ViStatus viFlush(ViSession session, std::uint16_t /*mask*/) {
  return ofSession(session, VI_SUCCESS);
}

ZANSIM_EXPORT ViStatus viSetBuf(ViSession session, std::uint16_t /*mask*/, std::uint32_t /*size*/) {
  return ofSession(session, VI_SUCCESS);
}

// The resources have no events. To switch them all off, as programs do before they close a session,
// is no mistake.

ZANSIM_EXPORT ViStatus viEnableEvent(ViSession session, std::uint32_t /*type*/,
                                     std::uint16_t /*mechanism*/, std::uint32_t /*context*/) {
  return ofSession(session, zansim::VI_ERROR_INV_EVENT);
}

ZANSIM_EXPORT ViStatus viDisableEvent(ViSession session, std::uint32_t /*type*/,
                                      std::uint16_t /*mechanism*/) {
  return ofSession(session, VI_SUCCESS);
}

ZANSIM_EXPORT ViStatus viDiscardEvents(ViSession session, std::uint32_t /*type*/,
                                       std::uint16_t /*mechanism*/) {
  return ofSession(session, VI_SUCCESS);
}

ZANSIM_EXPORT ViStatus viWaitOnEvent(ViSession session, std::uint32_t /*type*/,
                                     std::uint32_t /*timeout*/, std::uint32_t* /*outType*/,
                                     std::uint32_t* /*context*/) {
  return ofSession(session, zansim::VI_ERROR_NENABLED);
}

ZANSIM_EXPORT ViStatus viInstallHandler(ViSession session, std::uint32_t /*type*/,
                                        void* /*handler*/, void* /*userHandle*/) {
  return ofSession(session, zansim::VI_ERROR_INV_EVENT);
}

ZANSIM_EXPORT ViStatus viUninstallHandler(ViSession session, std::uint32_t /*type*/,
                                          void* /*handler*/, void* /*userHandle*/) {
  return ofSession(session, zansim::VI_ERROR_HNDLR_NINSTALLED);
}

ZANSIM_EXPORT ViStatus viTerminate(ViSession session, std::uint16_t /*degree*/,
                                   std::uint32_t /*job*/) {
  return ofSession(session, zansim::VI_ERROR_NSUP_OPER);
}

ZANSIM_EXPORT ViStatus viAssertTrigger(ViSession session, std::uint16_t /*protocol*/) {
  return ofSession(session, zansim::VI_ERROR_NSUP_OPER);
}
