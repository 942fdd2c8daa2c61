// A window with the control in it, and nothing but the system's interfaces: what a container has to
// offer for a control to show its panel and to have the keyboard.
//
//     regsvr32 LumoDevice.ocx
//     windows_container.exe
#include <cstdio>
#include <ole2.h>
#include <olectl.h>
#include <windows.h>

namespace {

/// The place on the form, the form's window and the frame around it in one. It lives longer than
/// the control, so nobody need count.
class Site final : public IOleClientSite, public IOleInPlaceSite, public IOleInPlaceFrame {
 public:
  HWND window = nullptr;
  IOleInPlaceActiveObject* active = nullptr;  // who has the keyboard

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
    *out = iid == IID_IUnknown || iid == IID_IOleClientSite ? static_cast<IOleClientSite*>(this)
           : iid == IID_IOleWindow || iid == IID_IOleInPlaceSite
               ? static_cast<void*>(static_cast<IOleInPlaceSite*>(this))
               : nullptr;
    return *out != nullptr ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }

  HRESULT STDMETHODCALLTYPE SaveObject() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE GetMoniker(DWORD, DWORD, IMoniker**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetContainer(IOleContainer**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE ShowObject() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnShowWindow(BOOL) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE RequestNewObjectLayout() override { return E_NOTIMPL; }

  HRESULT STDMETHODCALLTYPE GetWindow(HWND* out) override { return *out = window, S_OK; }
  HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE CanInPlaceActivate() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnInPlaceActivate() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnUIActivate() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE GetWindowContext(IOleInPlaceFrame** frame,
                                             IOleInPlaceUIWindow** document, RECT* place,
                                             RECT* clip, OLEINPLACEFRAMEINFO* info) override {
    *frame = this;
    *document = nullptr;
    GetClientRect(window, place);
    *clip = *place;
    *info = {sizeof(*info), FALSE, window, nullptr, 0};
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Scroll(SIZE) override { return S_FALSE; }
  HRESULT STDMETHODCALLTYPE OnUIDeactivate(BOOL) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnInPlaceDeactivate() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE DiscardUndoState() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE DeactivateAndUndo() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnPosRectChange(const RECT*) override { return S_OK; }

  HRESULT STDMETHODCALLTYPE GetBorder(RECT*) override { return INPLACE_E_NOTOOLSPACE; }
  HRESULT STDMETHODCALLTYPE RequestBorderSpace(const BORDERWIDTHS*) override {
    return INPLACE_E_NOTOOLSPACE;
  }
  HRESULT STDMETHODCALLTYPE SetBorderSpace(const BORDERWIDTHS*) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE SetActiveObject(IOleInPlaceActiveObject* object,
                                            const wchar_t*) override {
    if (object != nullptr) object->AddRef();
    if (active != nullptr) active->Release();
    active = object;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE InsertMenus(HMENU, OLEMENUGROUPWIDTHS*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetMenu(HMENU, HOLEMENU, HWND) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE RemoveMenus(HMENU) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE SetStatusText(const wchar_t*) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE EnableModeless(BOOL) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE TranslateAccelerator(MSG*, WORD) override { return S_FALSE; }
};

template <typename Interface>
Interface* interfaceOf(IUnknown* object, REFIID iid) {
  void* found = nullptr;
  return SUCCEEDED(object->QueryInterface(iid, &found)) ? static_cast<Interface*>(found) : nullptr;
}

/// As large as the control wants to be.
void fit(HWND window, IOleObject* control) {
  constexpr int kHimetricPerInch = 2540;
  SIZEL extent{};
  control->GetExtent(DVASPECT_CONTENT, &extent);
  const HDC screen = GetDC(nullptr);
  const int dpi = GetDeviceCaps(screen, LOGPIXELSX);
  ReleaseDC(nullptr, screen);
  RECT place{0, 0, MulDiv(extent.cx, dpi, kHimetricPerInch),
             MulDiv(extent.cy, dpi, kHimetricPerInch)};
  AdjustWindowRect(&place, WS_OVERLAPPEDWINDOW, FALSE);
  SetWindowPos(window, nullptr, 0, 0, place.right - place.left, place.bottom - place.top,
               SWP_NOMOVE | SWP_NOZORDER);
}

LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM first, LPARAM second) {
  if (message == WM_DESTROY) PostQuitMessage(0);
  return DefWindowProcW(window, message, first, second);
}

}  // namespace

int main() {
  SetProcessDPIAware();
  OleInitialize(nullptr);
  CLSID id{};
  IOleObject* control = nullptr;
  if (FAILED(CLSIDFromProgID(L"LumoDevice.ZANCtrl", &id)) ||
      FAILED(CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IOleObject,
                              reinterpret_cast<void**>(&control)))) {
    std::fputs("windows_container: the control is not registered\n", stderr);
    return 1;
  }
  WNDCLASSW kind{};
  kind.lpfnWndProc = procedure;
  kind.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  kind.lpszClassName = L"Container";
  RegisterClassW(&kind);
  Site site;
  site.window = CreateWindowExW(0, kind.lpszClassName, L"LumoDevice", WS_OVERLAPPEDWINDOW, 40, 40,
                                800, 600, nullptr, nullptr, nullptr, nullptr);
  fit(site.window, control);

  control->SetClientSite(&site);
  auto* const kept = interfaceOf<IPersistStreamInit>(control, IID_IPersistStreamInit);
  kept->InitNew();
  kept->Release();
  ShowWindow(site.window, SW_SHOW);
  RECT place{};
  GetClientRect(site.window, &place);
  const HRESULT shown =
      control->DoVerb(OLEIVERB_UIACTIVATE, nullptr, &site, 0, site.window, &place);
  std::printf("shown: %08lx\n", static_cast<unsigned long>(shown));

  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    const bool key = message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST;
    if (!key || site.active == nullptr || site.active->TranslateAccelerator(&message) != S_OK) {
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
  }
  control->Close(OLECLOSE_NOSAVE);
  control->SetClientSite(nullptr);
  control->Release();
  OleUninitialize();
  return 0;
}
