/// What registering writes, and that unregistering takes all of it back.
#include <map>
#include <string>

#include "tests/bindings/automation/windows/control_bench.hpp"

namespace lumodevice::automation {
namespace {

using Values = std::map<std::wstring, std::wstring>;

std::wstring lower(std::wstring text) {
  CharLowerBuffW(text.data(), static_cast<DWORD>(text.size()));
  return text;
}

/// Every key and value below, by its path in small letters; a key ends in a backslash.
void addAll(HKEY key, const std::wstring& path, Values& values) {
  wchar_t name[1024];
  BYTE data[4096];
  for (DWORD i = 0;; ++i) {
    DWORD length = std::size(name);
    DWORD size = sizeof data;
    DWORD type = 0;
    const LSTATUS status = RegEnumValueW(key, i, name, &length, nullptr, &type, data, &size);
    if (status == ERROR_NO_MORE_ITEMS) {
      break;
    }
    const auto* const text = reinterpret_cast<const wchar_t*>(data);
    values[lower(path + L"|" + name)] = status == ERROR_SUCCESS && type == REG_SZ
                                            ? std::wstring(text)
                                            : std::to_wstring(type) + L"," + std::to_wstring(size);
  }
  for (DWORD i = 0;; ++i) {
    DWORD length = std::size(name);
    if (RegEnumKeyExW(key, i, name, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) {
      break;
    }
    values[lower(path + L"\\" + name + L"\\")] = L"";
    HKEY below = nullptr;
    if (RegOpenKeyExW(key, name, 0, KEY_READ, &below) == ERROR_SUCCESS) {
      addAll(below, path + L"\\" + name, values);
      RegCloseKey(below);
    }
  }
}

Values classesOf(HKEY root) {
  Values values;
  HKEY key = nullptr;
  if (RegOpenKeyExW(root, L"Software\\Classes", 0, KEY_READ, &key) == ERROR_SUCCESS) {
    addAll(key, L"", values);
    RegCloseKey(key);
  }
  return values;
}

struct Registry {
  Values machine = classesOf(HKEY_LOCAL_MACHINE);
  Values user = classesOf(HKEY_CURRENT_USER);
};

bool has(const Values& values, const std::wstring& key) {
  return values.contains(lower(key));
}

class Registration : public ControlBench {
 protected:
  Registration() { unregister(); }
  ~Registration() override { unregister(); }

  using Install = HRESULT(STDAPICALLTYPE*)(BOOL, const wchar_t*);
  [[nodiscard]] HRESULT install(bool in, const wchar_t* forWhom) const {
    return exported<Install>("DllInstall")(in ? TRUE : FALSE, forWhom);
  }
  void unregister() const {
    EXPECT_EQ(install(false, L"user"), S_OK);
    EXPECT_EQ(exported<Plain>("DllUnregisterServer")(), S_OK);
  }
};

void expectControlByName() {
  CLSID id{};
  ASSERT_EQ(CLSIDFromProgID(L"LumoDevice.ZANCtrl", &id), S_OK);
  EXPECT_TRUE(id == guidOf(kClassId));
  ComPointer<IDispatch> load;
  ASSERT_EQ(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, load.untypedOut()),
            S_OK);
  std::int32_t channels = -1;
  EXPECT_EQ(getNumber(*load.get(), L"ChCount", channels), S_OK);
  EXPECT_EQ(channels, 0);
  ComPointer<ITypeLib> library;
  EXPECT_EQ(LoadRegTypeLib(guidOf(kLibraryId), 1, 0, LOCALE_NEUTRAL, library.out()), S_OK);
}

void expectNoControlByName() {
  CLSID id{};
  EXPECT_EQ(CLSIDFromProgID(L"LumoDevice.ZANCtrl", &id), CO_E_CLASSSTRING);
  ComPointer<IUnknown> none;
  EXPECT_EQ(CoCreateInstance(guidOf(kClassId), nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown,
                             none.untypedOut()),
            REGDB_E_CLASSNOTREG);
}

TEST_F(Registration, forAllIsTakenBackWithoutATrace) {
  const Registry before;
  ASSERT_EQ(exported<Plain>("DllRegisterServer")(), S_OK);
  const Registry registered;
  expectControlByName();
  EXPECT_GT(registered.machine.size(), before.machine.size() + 20);
  EXPECT_TRUE(registered.user == before.user);
  ASSERT_EQ(exported<Plain>("DllRegisterServer")(), S_OK) << "a second time";
  const Registry again;
  EXPECT_TRUE(again.machine == registered.machine);

  ASSERT_EQ(exported<Plain>("DllUnregisterServer")(), S_OK);
  const Registry after;
  EXPECT_TRUE(after.machine == before.machine);
  EXPECT_TRUE(after.user == before.user);
  expectNoControlByName();
}

/// Wine looks for classes of the machine alone, so none is made here.
TEST_F(Registration, forAUserIsTakenBackWithoutATrace) {
  const Registry before;
  ASSERT_EQ(install(true, L"user"), S_OK);
  const Registry registered;
  EXPECT_TRUE(has(registered.user, L"\\LumoDevice.ZANCtrl\\CLSID\\"));
  EXPECT_GT(registered.user.size(), before.user.size() + 20);
  EXPECT_TRUE(registered.machine == before.machine);

  ASSERT_EQ(install(false, L"USER"), S_OK);
  const Registry after;
  EXPECT_TRUE(after.machine == before.machine);
  EXPECT_TRUE(after.user == before.user);
}

TEST_F(Registration, tellsContainersWhatTheyLookFor) {
  ASSERT_EQ(exported<Plain>("DllRegisterServer")(), S_OK);
  const Values values = classesOf(HKEY_LOCAL_MACHINE);
  const std::wstring control = L"\\CLSID\\{52EF8624-A203-4183-BE58-95F882C3B1A9}";
  const auto value = [&values](const std::wstring& path) {
    const auto found = values.find(lower(path));
    return found == values.end() ? L"(none)" : found->second;
  };
  EXPECT_EQ(value(control + L"\\InprocServer32|ThreadingModel"), L"Apartment");
  EXPECT_NE(value(control + L"\\InprocServer32|").find(L"LumoDevice.ocx"), std::wstring::npos);
  EXPECT_EQ(value(control + L"\\ProgID|"), L"LumoDevice.ZANCtrl");
  EXPECT_EQ(value(control + L"\\MiscStatus\\1|"), L"131473");
  EXPECT_TRUE(has(values, control + L"\\Control\\"));
  EXPECT_FALSE(has(values, control + L"\\Insertable\\"));
  EXPECT_TRUE(
      has(values, control + L"\\Implemented Categories\\{40FC6ED4-2438-11CF-A3DB-080036F12502}\\"));
  EXPECT_EQ(value(L"\\Interface\\{729E150A-25D4-4AC7-BE35-4B68B413E93A}\\ProxyStubClsid32|"),
            L"{00020424-0000-0000-C000-000000000046}");
  EXPECT_EQ(value(L"\\TypeLib\\{266CFC78-265A-4DDD-8113-041E2FDC4E24}\\1.0\\FLAGS|"), L"2");
  // The interface of VISA COM is the business of VISA COM.
  EXPECT_FALSE(has(values, L"\\Interface\\{DB8CBF1A-D6D3-11D4-AA51-00A024EE30BD}\\"));
}

/// The keys that both word widths share stay as long as one of them is there.
TEST_F(Registration, theControlOfTheOtherWordWidthStays) {
  ASSERT_EQ(exported<Plain>("DllRegisterServer")(), S_OK);
  const wchar_t* const platform = sizeof(void*) == 8 ? L"win32" : L"win64";
  const REGSAM view = sizeof(void*) == 8 ? KEY_WOW64_32KEY : KEY_WOW64_64KEY;
  const std::wstring library =
      L"Software\\Classes\\TypeLib\\{266CFC78-265A-4DDD-8113-041E2FDC4E24}";
  const std::wstring file = library + L"\\1.0\\0\\" + platform;
  const std::wstring control = L"Software\\Classes\\CLSID\\{52EF8624-A203-4183-BE58-95F882C3B1A9}";
  HKEY key = nullptr;
  ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, file.c_str(), 0, nullptr, 0, KEY_SET_VALUE, nullptr,
                            &key, nullptr),
            ERROR_SUCCESS);
  RegCloseKey(key);
  ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, control.c_str(), 0, nullptr, 0,
                            KEY_SET_VALUE | view, nullptr, &key, nullptr),
            ERROR_SUCCESS);
  RegCloseKey(key);

  EXPECT_EQ(exported<Plain>("DllUnregisterServer")(), S_OK);
  const Values values = classesOf(HKEY_LOCAL_MACHINE);
  EXPECT_TRUE(has(values, L"\\LumoDevice.ZANCtrl\\CLSID\\"));
  EXPECT_TRUE(has(values, L"\\TypeLib\\{266CFC78-265A-4DDD-8113-041E2FDC4E24}\\1.0\\FLAGS\\"));

  ASSERT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"Software\\Classes\\CLSID", 0,
                          KEY_READ | KEY_WRITE | DELETE | view, &key),
            ERROR_SUCCESS);
  EXPECT_EQ(RegDeleteTreeW(key, L"{52EF8624-A203-4183-BE58-95F882C3B1A9}"), ERROR_SUCCESS);
  RegCloseKey(key);
  EXPECT_EQ(RegDeleteTreeW(HKEY_LOCAL_MACHINE, file.c_str()), ERROR_SUCCESS);
}

TEST_F(Registration, isRefusedForAnybodyElse) {
  EXPECT_EQ(install(true, L"nobody"), E_INVALIDARG);
}

}  // namespace
}  // namespace lumodevice::automation
