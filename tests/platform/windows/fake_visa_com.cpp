// A VISA COM server whose objects are tables of functions, filled by their places in the tables of
// the interfaces and not by anything of the project, which writes down every call.

#include <windows.h>

// Stand on <windows.h>.
#include <algorithm>
#include <array>
#include <oleauto.h>
#include <string>
#include <unknwn.h>

namespace {

std::string record;

void note(const std::string& line) {
  record += line + "\n";
}

constexpr GUID guid(unsigned char number) {
  return {0xDB8CBF00UL | number, 0xD6D3, 0x11D4, {0xAA, 0x51, 0x00, 0xA0, 0x24, 0xEE, 0x30, 0xBD}};
}

std::string bytes(BSTR text) {
  std::string made;
  for (UINT i = 0; i < ::SysStringLen(text); ++i) made += static_cast<char>(text[i]);
  return made;
}

constexpr std::size_t kMostFunctions = 55;
using Table = std::array<void*, kMostFunctions>;

struct Object {
  const Table* functions;
  const char* name;
};

extern const Table kFactoryOfManagers;
extern const Table kFactoryOfDevices;
extern const Table kManager;
extern const Table kSession;
extern const Table kSerial;
extern const Table kDevice;

// One of each is enough; they live as long as the library.
Object factoryOfManagers{&kFactoryOfManagers, "factory"};
Object factoryOfDevices{&kFactoryOfDevices, "factory"};
Object manager{&kManager, "manager"};
Object session{&kSession, "session"};
Object serial{&kSerial, "serial"};
Object device{&kDevice, "device"};
Object* io = nullptr;
HRESULT failing = S_OK;

HRESULT STDMETHODCALLTYPE query(Object* self, const GUID& iid, void** out) {
  *out = nullptr;
  const bool ofSession = self == &session || self == &serial;
  if (iid == IID_IUnknown) {
    *out = self;
  } else if (self == &manager && iid == guid(0x02)) {
    *out = &manager;
  } else if (ofSession && (iid == guid(0x03) || iid == guid(0x05))) {
    *out = &session;
  } else if (ofSession && iid == guid(0x0C)) {
    *out = &serial;
  } else if (self == &device && iid == guid(0x1A)) {
    *out = &device;
  } else if ((self == &factoryOfManagers || self == &factoryOfDevices) &&
             iid == IID_IClassFactory) {
    *out = self;
  }
  return *out == nullptr ? E_NOINTERFACE : S_OK;
}
ULONG STDMETHODCALLTYPE addRef(Object* /*self*/) {
  return 2;
}
ULONG STDMETHODCALLTYPE release(Object* /*self*/) {
  return 1;
}

HRESULT STDMETHODCALLTYPE createManager(Object*, IUnknown*, const GUID& iid, void** out) {
  return query(&manager, iid, out);
}
HRESULT STDMETHODCALLTYPE createDevice(Object*, IUnknown*, const GUID& iid, void** out) {
  return query(&device, iid, out);
}
HRESULT STDMETHODCALLTYPE lockServer(Object*, BOOL) {
  return S_OK;
}

HRESULT STDMETHODCALLTYPE open(Object*, BSTR name, int mode, int timeout, BSTR options,
                               Object** opened) {
  note("Open " + bytes(name) + " " + std::to_string(mode) + " " + std::to_string(timeout) + " '" +
       bytes(options) + "'");
  *opened = &session;
  return failing;
}
HRESULT STDMETHODCALLTYPE putTimeout(Object*, int milliseconds) {
  note("Timeout " + std::to_string(milliseconds));
  return S_OK;
}
HRESULT STDMETHODCALLTYPE putTerminationEnabled(Object*, VARIANT_BOOL enabled) {
  note("TerminationCharacterEnabled " + std::to_string(enabled));
  return S_OK;
}
HRESULT STDMETHODCALLTYPE putEndIn(Object*, int mode) {
  note("EndIn " + std::to_string(mode));
  return S_OK;
}
HRESULT STDMETHODCALLTYPE putEndOut(Object*, int mode) {
  note("EndOut " + std::to_string(mode));
  return S_OK;
}

HRESULT STDMETHODCALLTYPE getIo(Object*, Object** given) {
  *given = io;
  return S_OK;
}
HRESULT STDMETHODCALLTYPE putIo(Object*, Object* taken) {
  note(taken == &session ? "IO session" : taken == nullptr ? "IO nothing" : "IO other");
  io = taken;
  return S_OK;
}
HRESULT STDMETHODCALLTYPE writeString(Object*, BSTR data, VARIANT_BOOL flush) {
  note("WriteString " + bytes(data) + " " + std::to_string(flush));
  return failing;
}
HRESULT STDMETHODCALLTYPE writeBlock(Object*, BSTR command, VARIANT data, VARIANT_BOOL flush) {
  void* place = nullptr;
  LONG last = -1;
  ::SafeArrayGetUBound(data.parray, 1, &last);
  ::SafeArrayAccessData(data.parray, &place);
  const std::string block(static_cast<const char*>(place), static_cast<std::size_t>(last) + 1);
  ::SafeArrayUnaccessData(data.parray);
  note("WriteIEEEBlock " + bytes(command) + block + " " + std::to_string(data.vt) + " " +
       std::to_string(flush));
  return S_OK;
}
HRESULT STDMETHODCALLTYPE readString(Object*, BSTR* text) {
  note("ReadString");
  constexpr wchar_t kAnswer[] = L"MAKER,ZAN63200,SIM1,1.2\x00B5\n";
  *text = ::SysAllocString(kAnswer);
  return failing;
}
HRESULT STDMETHODCALLTYPE readBlock(Object*, int type, VARIANT_BOOL seek, VARIANT_BOOL flush,
                                    VARIANT* block) {
  note("ReadIEEEBlock " + std::to_string(type) + " " + std::to_string(seek) + " " +
       std::to_string(flush));
  block->vt = VT_ARRAY | VT_UI1;
  block->parray = ::SafeArrayCreateVector(VT_UI1, 0, 3);
  void* place = nullptr;
  ::SafeArrayAccessData(block->parray, &place);
  std::copy_n("\x01\x00\xFF", 3, static_cast<char*>(place));
  ::SafeArrayUnaccessData(block->parray);
  return S_OK;
}
HRESULT STDMETHODCALLTYPE flushWrite(Object*, VARIANT_BOOL end) {
  note("FlushWrite " + std::to_string(end));
  return S_OK;
}
HRESULT STDMETHODCALLTYPE setBufferSize(Object*, int mask, int size) {
  note("SetBufferSize " + std::to_string(mask) + " " + std::to_string(size));
  return S_OK;
}
void unexpected() {
  note("a function that was not to be called");
}

struct Place {
  std::size_t slot;
  void* function;
};

Table table(std::initializer_list<Place> places) {
  Table made;
  made.fill(reinterpret_cast<void*>(&unexpected));
  made[0] = reinterpret_cast<void*>(&query);
  made[1] = reinterpret_cast<void*>(&addRef);
  made[2] = reinterpret_cast<void*>(&release);
  for (const Place& place : places) made[place.slot] = place.function;
  return made;
}

template <typename Function>
void* at(Function* function) {
  return reinterpret_cast<void*>(function);
}

const Table kFactoryOfManagers = table({{3, at(&createManager)}, {4, at(&lockServer)}});
const Table kFactoryOfDevices = table({{3, at(&createDevice)}, {4, at(&lockServer)}});
const Table kManager = table({{10, at(&open)}});
const Table kSession = table({{16, at(&putTimeout)}, {31, at(&putTerminationEnabled)}});
const Table kSerial = table({{35, at(&putEndIn)}, {37, at(&putEndOut)}});
const Table kDevice = table({{3, at(&getIo)},
                             {4, at(&putIo)},
                             {7, at(&writeString)},
                             {10, at(&writeBlock)},
                             {11, at(&readString)},
                             {14, at(&readBlock)},
                             {15, at(&flushWrite)},
                             {17, at(&setBufferSize)}});

}  // namespace

extern "C" {

const char* recordedCalls() {
  return record.c_str();
}
void forgetCalls() {
  record.clear();
}
void failCalls(HRESULT result) {
  failing = result;
}

HRESULT __stdcall FakeGetClassObject(const GUID& kind, const GUID& iid, void** out) {
  if (kind == guid(0x1C)) return query(&factoryOfManagers, iid, out);
  if (kind == guid(0x1D)) return query(&factoryOfDevices, iid, out);
  return CLASS_E_CLASSNOTAVAILABLE;
}
}
