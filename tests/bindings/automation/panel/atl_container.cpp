// Shows the control in the window that the system's own ATL library has for controls, and does what
// is clicked in the strip beside it: makes a control, lets it go (also in the midst of a wait), and
// tells what it knows. Everything is a line on standard output, for the script that works the
// mouse.
#include <cstdio>
#include <functional>
#include <ole2.h>
#include <olectl.h>
#include <string>
#include <windows.h>

namespace {

constexpr int kPanelWidth = 760;
constexpr int kPanelHeight = 528;
constexpr int kStripWidth = 120;
constexpr int kButtonHeight = 40;

HWND panel = nullptr;

/// A function of atl100.dll, which has no import library here.
template <typename Function>
Function* atl(const char* name) {
  static const HMODULE library = LoadLibraryW(L"atl100.dll");
  const FARPROC found = library == nullptr ? nullptr : GetProcAddress(library, name);
  if (found == nullptr) {
    std::printf("no %s\n", name);
    std::exit(1);
  }
  return reinterpret_cast<Function*>(reinterpret_cast<void*>(found));
}

IDispatch* control() {
  IUnknown* object = nullptr;
  void* found = nullptr;
  if (panel != nullptr &&
      SUCCEEDED(atl<HRESULT WINAPI(HWND, IUnknown**)>("AtlAxGetControl")(panel, &object)) &&
      object != nullptr) {
    object->QueryInterface(IID_IDispatch, &found);
    object->Release();
  }
  return static_cast<IDispatch*>(found);
}

std::string call(IDispatch* object, const wchar_t* name, WORD kind, const wchar_t* text = nullptr) {
  auto* member = const_cast<wchar_t*>(name);
  DISPID id = 0;
  VARIANT argument;
  VARIANT result;
  VariantInit(&argument);
  VariantInit(&result);
  DISPPARAMS given{};
  if (text != nullptr) {
    argument.vt = VT_BSTR;
    argument.bstrVal = SysAllocString(text);
    given = {&argument, nullptr, 1, 0};
  }
  std::string answer;
  if (SUCCEEDED(object->GetIDsOfNames(IID_NULL, &member, 1, 0, &id)) &&
      SUCCEEDED(object->Invoke(id, IID_NULL, 0, kind, &given, &result, nullptr, nullptr)) &&
      SUCCEEDED(VariantChangeType(&result, &result, 0, VT_BSTR)) && result.bstrVal != nullptr) {
    for (const wchar_t* letter = result.bstrVal; *letter != 0; ++letter) {
      answer += static_cast<char>(*letter);
    }
  }
  VariantClear(&argument);
  VariantClear(&result);
  return answer.substr(0, answer.find_last_not_of("\r\n") + 1);
}

void put(IDispatch* object, const wchar_t* name, VARIANT_BOOL value) {
  auto* member = const_cast<wchar_t*>(name);
  DISPID id = 0;
  DISPID kind = DISPID_PROPERTYPUT;
  VARIANT argument;
  VariantInit(&argument);
  argument.vt = VT_BOOL;
  argument.boolVal = value;
  DISPPARAMS given{&argument, &kind, 1, 1};
  object->GetIDsOfNames(IID_NULL, &member, 1, 0, &id);
  object->Invoke(id, IID_NULL, 0, DISPATCH_PROPERTYPUT, &given, nullptr, nullptr, nullptr);
}

/// What a form has kept of the control.
class Kept final : public IPropertyBag {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
    *out = iid == IID_IUnknown || iid == IID_IPropertyBag ? this : nullptr;
    return *out != nullptr ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE Read(LPCOLESTR name, VARIANT* value, IErrorLog* /*log*/) override {
    if (lstrcmpW(name, L"Exchanges") != 0) {
      return E_INVALIDARG;
    }
    value->vt = VT_BSTR;
    value->bstrVal = SysAllocString(L"InTurn");
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Write(LPCOLESTR /*name*/, VARIANT* /*value*/) override {
    return E_NOTIMPL;
  }
};

/// In turn: from a form that has it so. Else by its name, as a new form has it.
void make(HWND window, bool inTurn) {
  panel = CreateWindowExW(0, inTurn ? L"Static" : L"AtlAxWin100", L"LumoDevice.ZANCtrl",
                          WS_CHILD | WS_VISIBLE, 0, 0, kPanelWidth, kPanelHeight, window, nullptr,
                          nullptr, nullptr);
  if (inTurn) {
    CLSID id{};
    void* object = nullptr;
    CLSIDFromProgID(L"LumoDevice.ZANCtrl", &id);
    if (SUCCEEDED(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IPersistPropertyBag,
                                   &object))) {
      auto* const control = static_cast<IPersistPropertyBag*>(object);
      Kept kept;
      control->Load(&kept, nullptr);
      IUnknown* container = nullptr;
      atl<HRESULT WINAPI(IUnknown*, HWND, IUnknown**)>("AtlAxAttachControl")(control, panel,
                                                                             &container);
      if (container != nullptr) {
        container->Release();
      }
      control->Release();
    }
  }
  IDispatch* const made = control();
  std::printf("made %d\n", made != nullptr);
  if (made != nullptr) {
    made->Release();
  }
}

void release() {
  DestroyWindow(panel);
  panel = nullptr;
  std::printf("released\n");
}

/// What the instrument says. The periodic query, which would answer in between, is switched off.
void tell() {
  constexpr WORD kEither = DISPATCH_METHOD | DISPATCH_PROPERTYGET;
  if (IDispatch* const object = control()) {
    put(object, L"AutoQuery", VARIANT_FALSE);
    std::printf("connected %s\n", call(object, L"isConnected", kEither).c_str());
    for (const wchar_t* query : {L":CHAN?", L":CURR:STAT:L1?", L":LOAD?", L":CONF:PAR:UNIT?"}) {
      call(object, L"SendCmd", DISPATCH_METHOD, query);
      std::printf("%ls %s\n", query, call(object, L"ResultStr", kEither).c_str());
    }
    object->Release();
  }
  std::printf("told\n");
}

std::string narrow(const wchar_t* text) {
  char bytes[512] = {};
  WideCharToMultiByte(CP_UTF8, 0, text, -1, bytes, sizeof(bytes), nullptr, nullptr);
  return bytes;
}

BOOL CALLBACK list(HWND window, LPARAM /*none*/) {
  wchar_t kind[64] = {};
  wchar_t text[256] = {};
  RECT place{};
  GetClassNameW(window, kind, 64);
  GetWindowTextW(window, text, 256);
  GetWindowRect(window, &place);
  if (IsWindowVisible(window) != FALSE) {
    std::printf("window\t%s\t%d\t%ld\t%ld\t%ld\t%ld\t%s\n", narrow(kind).c_str(),
                IsWindowEnabled(window), place.left, place.top, place.right, place.bottom,
                narrow(text).c_str());
    const LRESULT items =
        lstrcmpiW(kind, L"ListBox") == 0 ? SendMessageW(window, LB_GETCOUNT, 0, 0) : 0;
    for (LRESULT i = 0; i < items; ++i) {
      RECT item{};
      SendMessageW(window, LB_GETTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text));
      SendMessageW(window, LB_GETITEMRECT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&item));
      MapWindowPoints(window, nullptr, reinterpret_cast<POINT*>(&item), 2);
      std::printf("window\titem\t1\t%ld\t%ld\t%ld\t%ld\t%s\n", item.left, item.top, item.right,
                  item.bottom, narrow(text).c_str());
    }
  }
  return TRUE;
}

LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM first, LPARAM second) {
  if (message == WM_LBUTTONDOWN && LOWORD(second) > kPanelWidth) {
    switch (HIWORD(second) / kButtonHeight) {
      case 0:
        make(window, true);
        break;
      case 1:
        release();
        break;
      case 2:
        tell();
        break;
      case 3:
        EnumChildWindows(window, list, 0);
        std::printf("listed\n");
        break;
      case 4:
        make(window, false);
        break;
      default:
        PostQuitMessage(0);
        break;
    }
    std::fflush(stdout);
    return 0;
  }
  return DefWindowProcW(window, message, first, second);
}

}  // namespace

int main() {
  SetProcessDPIAware();
  OleInitialize(nullptr);
  atl<BOOL WINAPI()>("AtlAxWinInit")();
  WNDCLASSW kind{};
  kind.lpfnWndProc = procedure;
  kind.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  kind.hbrBackground = static_cast<HBRUSH>(GetStockObject(GRAY_BRUSH));
  kind.lpszClassName = L"AtlContainer";
  RegisterClassW(&kind);
  const HWND window = CreateWindowExW(
      0, kind.lpszClassName, L"container", WS_POPUP | WS_VISIBLE | WS_CLIPCHILDREN, 0, 0,
      kPanelWidth + kStripWidth, kPanelHeight, nullptr, nullptr, nullptr, nullptr);
  std::printf("ready\n");
  std::fflush(stdout);
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  DestroyWindow(window);
  OleUninitialize();
  std::printf("over\n");
  return 0;
}
