/// The control on the form of a container.
#include <algorithm>
#include <array>
#include <memory>
#include <ocidl.h>
#include <ole2.h>
#include <olectl.h>
#include <string>
#include <utility>
#include <vector>
#include <windows.h>

#include "tests/bindings/automation/windows/control_bench.hpp"

namespace lumodevice::automation {
namespace {

/// A place on a form: a window, and what the control tells. It outlives the control.
class Form final : public IOleClientSite,
                   public IOleInPlaceSite,
                   public IOleControlSite,
                   public IDispatch,
                   public IOleInPlaceFrame {
 public:
  Form()
      : window(CreateWindowExW(0, L"#32770", L"form", WS_OVERLAPPEDWINDOW, 0, 0, 900, 700, nullptr,
                               nullptr, nullptr, nullptr)) {
    ShowWindow(window, SW_SHOW);
    SetForegroundWindow(window);
  }
  ~Form() { DestroyWindow(window); }
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;

  HWND window;
  bool runs = true;
  RECT place{10, 20, 410, 320};
  std::vector<std::string> told;
  IOleInPlaceActiveObject* active = nullptr;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
    *out = nullptr;
    if (iid == IID_IUnknown || iid == IID_IOleClientSite) {
      *out = static_cast<IOleClientSite*>(this);
    } else if (iid == IID_IOleInPlaceSite || iid == IID_IOleWindow) {
      *out = static_cast<IOleInPlaceSite*>(this);
    } else if (iid == IID_IOleControlSite) {
      *out = static_cast<IOleControlSite*>(this);
    } else if (iid == IID_IDispatch) {
      *out = static_cast<IDispatch*>(this);
    }
    return *out == nullptr ? E_NOINTERFACE : S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }

  HRESULT STDMETHODCALLTYPE SaveObject() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE GetMoniker(DWORD, DWORD, IMoniker**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetContainer(IOleContainer**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE ShowObject() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnShowWindow(BOOL) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE RequestNewObjectLayout() override { return E_NOTIMPL; }

  HRESULT STDMETHODCALLTYPE GetWindow(HWND* out) override {
    *out = window;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE CanInPlaceActivate() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnInPlaceActivate() override { return tell("active"); }
  HRESULT STDMETHODCALLTYPE OnUIActivate() override { return tell("ui active"); }
  HRESULT STDMETHODCALLTYPE GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** other,
                                             RECT* at, RECT* clip,
                                             OLEINPLACEFRAMEINFO* info) override {
    *frame = this;
    *other = nullptr;
    *at = place;
    *clip = place;
    info->fMDIApp = FALSE;
    info->hwndFrame = window;
    info->haccel = nullptr;
    info->cAccelEntries = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Scroll(SIZE) override { return S_FALSE; }
  HRESULT STDMETHODCALLTYPE OnUIDeactivate(BOOL) override { return tell("ui over"); }
  HRESULT STDMETHODCALLTYPE OnInPlaceDeactivate() override { return tell("over"); }
  HRESULT STDMETHODCALLTYPE DiscardUndoState() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE DeactivateAndUndo() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnPosRectChange(const RECT*) override { return S_OK; }

  HRESULT STDMETHODCALLTYPE OnControlInfoChanged() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE LockInPlaceActive(BOOL) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE GetExtendedControl(IDispatch**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE TransformCoords(POINTL*, POINTF*, DWORD) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE TranslateAccelerator(MSG*, DWORD) override {
    tell("key");
    return S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE OnFocus(BOOL) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE ShowPropertyFrame() override { return E_NOTIMPL; }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result,
                                   EXCEPINFO*, UINT*) override {
    if (id != DISPID_AMBIENT_USERMODE) {
      return DISP_E_MEMBERNOTFOUND;
    }
    *result = boolVariant(runs);
    return S_OK;
  }

  HRESULT STDMETHODCALLTYPE GetBorder(RECT*) override { return INPLACE_E_NOTOOLSPACE; }
  HRESULT STDMETHODCALLTYPE RequestBorderSpace(const BORDERWIDTHS*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetBorderSpace(const BORDERWIDTHS*) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE SetActiveObject(IOleInPlaceActiveObject* object,
                                            const wchar_t*) override {
    active = object;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE InsertMenus(HMENU, OLEMENUGROUPWIDTHS*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetMenu(HMENU, HOLEMENU, HWND) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE RemoveMenus(HMENU) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE SetStatusText(const wchar_t*) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE EnableModeless(BOOL) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE TranslateAccelerator(MSG*, WORD) override { return S_FALSE; }

 private:
  HRESULT tell(const char* what) {
    told.emplace_back(what);
    return S_OK;
  }
};

void flush() {
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != FALSE) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

class OnAForm : public ControlBench {
 protected:
  ~OnAForm() override {
    // The control goes before its file.
    inPlace = {};
    object = {};
    load = {};
  }
  HRESULT verb(LONG verb) {
    return object->DoVerb(verb, nullptr, &form, 0, form.window, &form.place);
  }
  void show() {
    ASSERT_EQ(object->SetClientSite(&form), S_OK);
    ASSERT_EQ(verb(OLEIVERB_INPLACEACTIVATE), S_OK);
  }
  [[nodiscard]] HWND panel() const {
    HWND window = nullptr;
    inPlace->GetWindow(&window);
    return window;
  }
  [[nodiscard]] static HWND child(HWND above, const wchar_t* text) {
    for (HWND each = GetWindow(above, GW_CHILD); each != nullptr;
         each = GetWindow(each, GW_HWNDNEXT)) {
      std::array<wchar_t, 64> caption{};
      GetWindowTextW(each, caption.data(), static_cast<int>(caption.size()));
      const HWND found = IsWindowVisible(each) == FALSE         ? nullptr
                         : std::wstring(caption.data()) == text ? each
                                                                : child(each, text);
      if (found != nullptr) {
        return found;
      }
    }
    return nullptr;
  }

  Form form;
  ComPointer<IDispatch> load = control();
  ComPointer<IOleObject> object = as<IOleObject>(load);
  ComPointer<IOleInPlaceObject> inPlace = as<IOleInPlaceObject>(load);
};

TEST_F(OnAForm, isShownInItsPlaceAndGoesAgain) {
  HWND none = nullptr;
  EXPECT_EQ(inPlace->GetWindow(&none), E_FAIL);
  show();
  const HWND window = panel();
  EXPECT_EQ(GetParent(window), form.window);
  EXPECT_NE(IsWindowVisible(window), FALSE);
  RECT place{};
  GetWindowRect(window, &place);
  MapWindowPoints(nullptr, form.window, reinterpret_cast<POINT*>(&place), 2);
  EXPECT_NE(EqualRect(&place, &form.place), FALSE);
  EXPECT_EQ(verb(OLEIVERB_HIDE), S_OK);
  EXPECT_EQ(IsWindowVisible(window), FALSE);
  EXPECT_EQ(verb(OLEIVERB_SHOW), S_OK);
  EXPECT_NE(IsWindowVisible(window), FALSE);
  EXPECT_EQ(inPlace->InPlaceDeactivate(), S_OK);
  EXPECT_EQ(IsWindow(window), FALSE);
  EXPECT_EQ(form.told, (std::vector<std::string>{"active", "over"}));
  EXPECT_EQ(verb(OLEIVERB_SHOW), S_OK) << "and once more";
  EXPECT_NE(panel(), nullptr);
}

TEST_F(OnAForm, hasTheSizeOfItsFormUntilItIsGivenAnother) {
  SIZEL extent{};
  EXPECT_EQ(object->GetExtent(DVASPECT_CONTENT, &extent), S_OK);
  EXPECT_EQ(extent.cx, 20108);  // 11400 by 7920 twips, in hundredths of a millimetre
  EXPECT_EQ(extent.cy, 13970);
  EXPECT_EQ(object->GetExtent(DVASPECT_ICON, &extent), DV_E_DVASPECT);
  SIZEL wanted{5000, 4000};
  EXPECT_EQ(object->SetExtent(DVASPECT_CONTENT, &wanted), S_OK);
  EXPECT_EQ(as<IViewObject2>(load)->GetExtent(DVASPECT_CONTENT, -1, nullptr, &extent), S_OK);
  EXPECT_EQ(extent.cx, 5000);
}

TEST_F(OnAForm, movesWithTheForm) {
  show();
  const RECT place{50, 60, 250, 160};
  const RECT clip{50, 60, 100, 100};
  EXPECT_EQ(inPlace->SetObjectRects(&place, &clip), S_OK);
  RECT now{};
  GetWindowRect(panel(), &now);
  MapWindowPoints(nullptr, form.window, reinterpret_cast<POINT*>(&now), 2);
  EXPECT_NE(EqualRect(&now, &place), FALSE);
  const HRGN seen = CreateRectRgn(0, 0, 0, 0);
  EXPECT_NE(GetWindowRgn(panel(), seen), ERROR);
  RECT box{};
  GetRgnBox(seen, &box);
  EXPECT_EQ(box.right, 50);
  EXPECT_EQ(box.bottom, 40);
  DeleteObject(seen);
  EXPECT_EQ(inPlace->SetObjectRects(nullptr, nullptr), E_POINTER);
}

TEST_F(OnAForm, thatIsBeingDesignedThereIsNoComponentAndNothingToUse) {
  form.runs = false;
  show();
  EXPECT_EQ(IsWindowEnabled(panel()), FALSE);
  EXPECT_NE(child(panel(), L"&Auto Connect"), nullptr) << "it is seen";
  // What a form keeps can be read still, which it cannot when there is a component.
  class InTurn final : public IPropertyBag {
   public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE Read(LPCOLESTR, VARIANT* value, IErrorLog*) override {
      value->vt = VT_BSTR;
      value->bstrVal = SysAllocString(L"InTurn");
      return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Write(LPCOLESTR, VARIANT*) override { return S_OK; }
  } bag;
  EXPECT_EQ(as<IPersistPropertyBag>(load)->Load(&bag, nullptr), S_OK);
  form.runs = true;
  EXPECT_EQ(as<IOleControl>(load)->OnAmbientPropertyChange(DISPID_AMBIENT_USERMODE), S_OK);
  EXPECT_NE(IsWindowEnabled(panel()), FALSE) << "now it runs";
}

TEST_F(OnAForm, takesKeysAndLeavesTheOthersToTheContainer) {
  show();
  EXPECT_EQ(verb(OLEIVERB_UIACTIVATE), S_OK);
  EXPECT_NE(IsChild(panel(), GetFocus()), FALSE);
  EXPECT_NE(form.active, nullptr);
  const auto active = as<IOleInPlaceActiveObject>(load);
  MSG tab{};
  tab.message = WM_KEYDOWN;
  tab.wParam = VK_TAB;
  int stops = 0;
  HRESULT result = S_OK;
  while (result == S_OK && stops < 100) {
    tab.hwnd = GetFocus();
    result = active->TranslateAccelerator(&tab);
    ++stops;
  }
  EXPECT_EQ(result, S_FALSE);
  EXPECT_GT(stops, 10) << "the stops of the connection panel";
  EXPECT_EQ(form.told.back(), "key") << "the container was asked first";
  MSG other = tab;
  other.wParam = VK_F5;
  EXPECT_EQ(active->TranslateAccelerator(&other), S_FALSE);
  EXPECT_EQ(active->TranslateAccelerator(nullptr), E_POINTER);
}

TEST_F(OnAForm, tellsItsLettersAndTakesThem) {
  show();
  CONTROLINFO info{};
  info.cb = sizeof(info);
  const auto letters = as<IOleControl>(load);
  ASSERT_EQ(letters->GetControlInfo(&info), S_OK);
  ASSERT_GT(info.cAccel, 0);
  std::vector<ACCEL> table(info.cAccel);
  CopyAcceleratorTableW(info.hAccel, table.data(), info.cAccel);
  EXPECT_NE(std::find_if(table.begin(), table.end(),
                         [](const ACCEL& each) { return each.key == L'r' && (each.fVirt & FALT); }),
            table.end())
      << "Return";
  EXPECT_NE(child(panel(), L"&Return"), nullptr);
  MSG pressed{};
  pressed.message = WM_SYSCHAR;
  pressed.wParam = L'r';
  EXPECT_EQ(letters->OnMnemonic(&pressed), S_OK);
  flush();
  EXPECT_EQ(child(panel(), L"&Return"), nullptr) << "the connection panel is left";
  pressed.wParam = L'#';
  EXPECT_EQ(letters->OnMnemonic(&pressed), S_FALSE);
}

TEST_F(OnAForm, aClickInItMakesItTheActiveOne) {
  show();
  EXPECT_EQ(form.active, nullptr);
  SetFocus(child(panel(), L"&Return"));
  EXPECT_NE(form.active, nullptr);
  EXPECT_EQ(form.told, (std::vector<std::string>{"active", "ui active"}));
  EXPECT_EQ(inPlace->UIDeactivate(), S_OK);
  EXPECT_EQ(form.active, nullptr);
}

TEST_F(OnAForm, isDrawnWithoutAWindow) {
  const HDC screen = GetDC(nullptr);
  const HDC memory = CreateCompatibleDC(screen);
  const HBITMAP bitmap = CreateCompatibleBitmap(screen, 380, 264);
  const HGDIOBJ before = SelectObject(memory, bitmap);
  const RECTL place{0, 0, 380, 264};
  const auto view = as<IViewObject2>(load);
  EXPECT_EQ(view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, memory, &place, nullptr,
                       nullptr, 0),
            S_OK);
  EXPECT_NE(GetPixel(memory, 200, 130), COLORREF{0});
  EXPECT_EQ(
      view->Draw(DVASPECT_ICON, -1, nullptr, nullptr, nullptr, memory, &place, nullptr, nullptr, 0),
      DV_E_DVASPECT);
  SelectObject(memory, before);
  DeleteObject(bitmap);
  DeleteDC(memory);
  ReleaseDC(nullptr, screen);
}

TEST_F(OnAForm, isToldAllInOneCall) {
  QACONTAINER container{};
  container.cbSize = sizeof(container);
  container.pClientSite = &form;
  QACONTROL answer{};
  answer.cbSize = sizeof(answer);
  ASSERT_EQ(as<IQuickActivate>(load)->QuickActivate(&container, &answer), S_OK);
  EXPECT_EQ(answer.dwMiscStatus, kMiscStatus);
  DWORD status = 0;
  EXPECT_EQ(object->GetMiscStatus(DVASPECT_CONTENT, &status), S_OK);
  EXPECT_EQ(status, kMiscStatus);
  ComPointer<IOleClientSite> site;
  EXPECT_EQ(object->GetClientSite(site.out()), S_OK);
  EXPECT_EQ(site.get(), &form);
}

TEST_F(OnAForm, isOverWhenTheContainerClosesIt) {
  show();
  const HWND window = panel();
  EXPECT_EQ(object->Close(OLECLOSE_NOSAVE), S_OK);
  EXPECT_EQ(IsWindow(window), FALSE);
  std::int32_t channels = -1;
  EXPECT_EQ(getNumber(*load.get(), L"ChCount", channels), CO_E_OBJNOTCONNECTED);
  EXPECT_EQ(verb(OLEIVERB_SHOW), CO_E_OBJNOTCONNECTED);
}

TEST_F(OnAForm, goesWithTheWindowThatItIsIn) {
  show();
  DestroyWindow(std::exchange(form.window, nullptr));
  EXPECT_EQ(panel(), nullptr);
  EXPECT_EQ(object->Close(OLECLOSE_NOSAVE), S_OK);
}

TEST_F(OnAForm, leavesNothingBehindHoweverOftenItIsShown) {
  const auto held = [] {
    return GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS) +
           GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
  };
  const auto cycle = [this] {
    show();
    EXPECT_EQ(inPlace->InPlaceDeactivate(), S_OK);
  };
  cycle();
  const DWORD before = held();
  for (int i = 0; i < 5; ++i) {
    cycle();
  }
  EXPECT_LE(held(), before + 2);
}

}  // namespace
}  // namespace lumodevice::automation
