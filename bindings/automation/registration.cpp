#include "bindings/automation/registration.hpp"

#include <new>
#include <ole2.h>
#include <string>
#include <string_view>
#include <vector>

#include "bindings/automation/failure.hpp"
#include "bindings/automation/identity.hpp"
#include "bindings/automation/module.hpp"

namespace lumodevice::automation {

namespace {

#ifdef _WIN64
constexpr std::wstring_view kPlatform = L"win64";
constexpr REGSAM kOtherView = KEY_WOW64_32KEY;
#else
constexpr std::wstring_view kPlatform = L"win32";
constexpr REGSAM kOtherView = KEY_WOW64_64KEY;
#endif

/// The system's own, which carry calls between apartments by what the type library says.
constexpr std::wstring_view kDualMarshaller = L"{00020424-0000-0000-C000-000000000046}";
constexpr std::wstring_view kDispatchMarshaller = L"{00020420-0000-0000-C000-000000000046}";

/// What the control can do, in the system's numbers: it is a control, it has members for programs,
/// and it keeps its properties in a stream or in a property bag.
constexpr std::wstring_view kCategories[] = {
    L"{40FC6ED4-2438-11CF-A3DB-080036F12502}", L"{40FC6ED5-2438-11CF-A3DB-080036F12502}",
    L"{0DE86A53-2BAA-11CF-A229-00AA003D7352}", L"{0DE86A57-2BAA-11CF-A229-00AA003D7352}"};

std::wstring wide(std::string_view ascii) {
  return {ascii.begin(), ascii.end()};
}

std::wstring braced(std::string_view id) {
  return L"{" + wide(id) + L"}";
}

struct Value {
  std::wstring key;
  std::wstring name;  ///< "": the key's own value
  std::wstring text;
};

const std::wstring& classKey() {
  static const std::wstring key = L"CLSID\\" + braced(kClassId);
  return key;
}

std::wstring libraryKey() {
  return L"TypeLib\\" + braced(kLibraryId);
}

std::wstring versionKey() {
  return libraryKey() + L"\\" + wide(kVersion);
}

void addInterface(std::vector<Value>& values, std::wstring_view name, std::string_view id,
                  std::wstring_view marshaller) {
  const std::wstring key = L"Interface\\" + braced(id);
  values.push_back({key, L"", std::wstring(name)});
  values.push_back({key + L"\\ProxyStubClsid32", L"", std::wstring(marshaller)});
  values.push_back({key + L"\\TypeLib", L"", braced(kLibraryId)});
  values.push_back({key + L"\\TypeLib", L"Version", wide(kVersion)});
}

std::vector<Value> registration() {
  const std::wstring file = module::path();
  const std::wstring folder = file.substr(0, file.find_last_of(L'\\'));
  const std::wstring name = wide(kClassName);
  std::vector<Value> values = {
      {classKey(), L"", wide(kTitle)},
      {classKey() + L"\\InprocServer32", L"", file},
      {classKey() + L"\\InprocServer32", L"ThreadingModel", L"Apartment"},
      {classKey() + L"\\ProgID", L"", wide(kProgId)},
      {classKey() + L"\\TypeLib", L"", braced(kLibraryId)},
      {classKey() + L"\\Version", L"", wide(kVersion)},
      {classKey() + L"\\Control", L"", L""},
      {classKey() + L"\\Programmable", L"", L""},
      {classKey() + L"\\MiscStatus", L"", L"0"},
      {classKey() + L"\\MiscStatus\\1", L"", std::to_wstring(kMiscStatus)},
      {wide(kProgId), L"", wide(kTitle)},
      {wide(kProgId) + L"\\CLSID", L"", braced(kClassId)},
      {versionKey(), L"", wide(kTitle) + L" " + wide(kVersion)},
      {versionKey() + L"\\0\\" + std::wstring(kPlatform), L"", file},
      {versionKey() + L"\\FLAGS", L"", std::to_wstring(LIBFLAG_FCONTROL)},
      {versionKey() + L"\\HELPDIR", L"", folder},
  };
  for (const std::wstring_view category : kCategories) {
    values.push_back(
        {classKey() + L"\\Implemented Categories\\" + std::wstring(category), L"", L""});
  }
  addInterface(values, L"_" + name, kInterfaceId, kDualMarshaller);
  addInterface(values, L"__" + name, kEventsId, kDispatchMarshaller);
  return values;
}

/// A key of the registry, open until its end.
class Key {
 public:
  explicit Key(HKEY key) : key_(key) {}
  ~Key() {
    if (key_ != nullptr) {
      RegCloseKey(key_);
    }
  }
  Key(const Key&) = delete;
  Key& operator=(const Key&) = delete;

  [[nodiscard]] HKEY get() const { return key_; }
  [[nodiscard]] bool isOpen() const { return key_ != nullptr; }

 private:
  HKEY key_;
};

/// Throws ComFailure for a result of the registry that is a failure.
void demandWin32(LSTATUS status) {
  demand(HRESULT_FROM_WIN32(static_cast<DWORD>(status)));
}

Key opened(HKEY parent, const std::wstring& name, REGSAM rights) {
  HKEY key = nullptr;
  const LSTATUS status = RegOpenKeyExW(parent, name.c_str(), 0, rights, &key);
  if (status != ERROR_FILE_NOT_FOUND) {
    demandWin32(status);
  }
  return Key(key);
}

constexpr const wchar_t* kClasses = L"Software\\Classes";

HKEY root(Scope scope) {
  return scope == Scope::Machine ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
}

void write(HKEY classes, const Value& value) {
  HKEY made = nullptr;
  demandWin32(RegCreateKeyExW(classes, value.key.c_str(), 0, nullptr, 0, KEY_SET_VALUE, nullptr,
                              &made, nullptr));
  const Key key(made);
  demandWin32(RegSetValueExW(key.get(), value.name.empty() ? nullptr : value.name.c_str(), 0,
                             REG_SZ, reinterpret_cast<const BYTE*>(value.text.c_str()),
                             static_cast<DWORD>((value.text.size() + 1) * sizeof(wchar_t))));
}

void removeTree(HKEY classes, const std::wstring& name) {
  const LSTATUS status = RegDeleteTreeW(classes, name.c_str());
  if (status != ERROR_FILE_NOT_FOUND) {
    demandWin32(status);
  }
}

/// Whether there is anything below the key.
bool isEmpty(HKEY classes, const std::wstring& name) {
  const Key key = opened(classes, name, KEY_QUERY_VALUE);
  DWORD keys = 0;
  DWORD values = 0;
  if (key.isOpen()) {
    demandWin32(RegQueryInfoKeyW(key.get(), nullptr, nullptr, nullptr, &keys, nullptr, nullptr,
                                 &values, nullptr, nullptr, nullptr, nullptr));
  }
  return keys == 0 && values == 0;
}

/// The type library's keys are the same for both word widths: each takes its own file out, the last
/// one the rest.
void removeTypeLibrary(HKEY classes) {
  const std::wstring files = versionKey() + L"\\0";
  removeTree(classes, files + L"\\" + std::wstring(kPlatform));
  if (isEmpty(classes, files)) {
    removeTree(classes, versionKey());
    if (isEmpty(classes, libraryKey())) {
      removeTree(classes, libraryKey());
    }
  }
}

/// The programmatic name, too, belongs to both.
void removeProgId(HKEY classes, Scope scope) {
  const Key other = opened(root(scope), std::wstring(kClasses) + L"\\" + classKey(),
                           KEY_QUERY_VALUE | kOtherView);
  if (!other.isOpen()) {
    removeTree(classes, wide(kProgId));
  }
}

template <typename Act>
HRESULT guarded(Act act) {
  try {
    act();
    return S_OK;
  } catch (const ComFailure& failure) {
    return failure.result;
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  }
}

}  // namespace

HRESULT registerControl(Scope scope) {
  return guarded([scope] {
    HKEY made = nullptr;
    demandWin32(RegCreateKeyExW(root(scope), kClasses, 0, nullptr, 0, KEY_CREATE_SUB_KEY, nullptr,
                                &made, nullptr));
    const Key classes(made);
    for (const Value& value : registration()) {
      write(classes.get(), value);
    }
  });
}

HRESULT unregisterControl(Scope scope) {
  return guarded([scope] {
    const Key classes = opened(root(scope), kClasses, KEY_READ | KEY_WRITE | DELETE);
    if (classes.isOpen()) {
      removeTree(classes.get(), classKey());
      removeTree(classes.get(), L"Interface\\" + braced(kInterfaceId));
      removeTree(classes.get(), L"Interface\\" + braced(kEventsId));
      removeTypeLibrary(classes.get());
      removeProgId(classes.get(), scope);
      // A user may have had none of his own before.
      for (const wchar_t* const shared : {L"CLSID", L"Interface", L"TypeLib"}) {
        if (isEmpty(classes.get(), shared)) {
          removeTree(classes.get(), shared);
        }
      }
    }
  });
}

}  // namespace lumodevice::automation
