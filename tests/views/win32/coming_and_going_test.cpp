#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "lumodevice/form/controls.hpp"
#include "lumodevice/toolkit/handling.hpp"
#include "tests/views/win32/form_window.hpp"

namespace lumodevice::win32 {
namespace {

using support::differences;
using support::FormWindow;
using support::WindowHand;
using toolkit::CheckBox;
using toolkit::CommandButton;
using toolkit::TextBox;

/// A form of the test's own.
struct SmallForm {
  SmallForm() {
    form.setPlace({0, 0, 6000, 3000});
    int top = 0;
    for (toolkit::Control* control :
         std::initializer_list<toolkit::Control*>{&box, &button, &field, &whole}) {
      control->setPlace({0, top, 3000, 400});
      top += 500;
    }
    whole.setLook({.typedWhole = true});
  }
  toolkit::Surface surface;
  toolkit::Form& form = surface.add<toolkit::Form>("form");
  CheckBox& box = surface.add<CheckBox>("box", {}, &form);
  CommandButton& button = surface.add<CommandButton>("button", {}, &form);
  TextBox& field = surface.add<TextBox>("field", {}, &form);
  TextBox& whole = surface.add<TextBox>("whole", {}, &form);
};

class AView : public testing::Test {
 protected:
  std::unique_ptr<SmallForm> model = std::make_unique<SmallForm>();
  CheckBox& box = model->box;
  CommandButton& button = model->button;
  TextBox& field = model->field;
  std::unique_ptr<FormWindow> window = std::make_unique<FormWindow>(model->surface);

  [[nodiscard]] HWND windowOf(const toolkit::Control& control) const {
    return window->view.windowOf(control);
  }
};

TEST_F(AView, staysInStepWithAnother) {
  FormWindow second(model->surface);
  EXPECT_TRUE(window->hand.type(field, "1.5"));
  EXPECT_TRUE(second.hand.click(box));
  for (const FormWindow* each : {window.get(), &second}) {
    EXPECT_EQ(differences(each->view, model->surface), "");
  }
  EXPECT_EQ(field.text(), "1.5");
  EXPECT_EQ(box.value(), CheckBox::kTicked);
}

TEST_F(AView, goesAndTheFormStays) {
  FormWindow second(model->surface);
  window.reset();
  EXPECT_TRUE(second.hand.click(box));
  EXPECT_EQ(differences(second.view, model->surface), "");
}

TEST_F(AView, goesInTheMiddleOfAnActOfItsOwn) {
  bool done = false;
  toolkit::handle(button.click, [&] {
    window.reset();
    WindowHand::flush();
    field.setText("after");
    done = true;
  });
  WindowHand(window->view).click(button);
  EXPECT_TRUE(done);
  EXPECT_EQ(window, nullptr);
}

TEST_F(AView, goesWithTheWindowAboveIt) {
  DestroyWindow(window->top());
  EXPECT_EQ(window->view.window(), nullptr);
  EXPECT_EQ(windowOf(box), nullptr);
  field.setText("nobody sees it");
  box.setEnabled(false);
  box.setLook({.bold = true});
}

TEST_F(AView, comesInTheMiddleOfAnAct) {
  std::unique_ptr<FormWindow> late;
  toolkit::handle(button.click, [&] { late = std::make_unique<FormWindow>(model->surface); });
  EXPECT_TRUE(window->hand.click(button));
  ASSERT_NE(late, nullptr);
  EXPECT_EQ(differences(late->view, model->surface), "");
}

TEST_F(AView, isLeftWithoutUseWhenTheFormGoes) {
  const HWND before = windowOf(field);
  const toolkit::Control* const control = &field;
  model->surface.retire();
  model.reset();
  EXPECT_EQ(IsWindow(before), FALSE) << "what it showed is true no longer";
  EXPECT_EQ(window->view.windowOf(*control), nullptr);
  EXPECT_FALSE(window->view.focusEnd(true));
  RedrawWindow(window->top(), nullptr, nullptr,
               RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW | RDW_ALLCHILDREN);
  SendMessageW(window->view.window(), WM_SETTINGCHANGE, 0, 0);
  WindowHand::flush();
}

TEST_F(AView, forgetsAnActOnItsWayWhenTheFormGoes) {
  SendMessageW(windowOf(box), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(8, 8));
  SendMessageW(windowOf(box), WM_LBUTTONUP, 0, MAKELPARAM(8, 8));
  model->surface.retire();
  model.reset();
  WindowHand::flush();
}

TEST_F(AView, runsActsWhenTheWindowHasReturned) {
  bool within = false;
  bool clickedWithin = false;
  toolkit::handle(button.click, [&] { clickedWithin = within; });
  within = true;
  SendMessageW(windowOf(button), BM_CLICK, 0, 0);
  within = false;
  WindowHand::flush();
  EXPECT_FALSE(clickedWithin);
}

TEST_F(AView, showsWhatTheControlHoldsAfterAnActThatIsRefused) {
  int clicks = 0;
  const auto watching = box.click.observe([&] { ++clicks; });
  SendMessageW(windowOf(box), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(8, 8));
  SendMessageW(windowOf(box), WM_LBUTTONUP, 0, MAKELPARAM(8, 8));
  box.setEnabled(false);  // before it comes to that
  WindowHand::flush();
  EXPECT_EQ(clicks, 0);
  EXPECT_EQ(differences(window->view, model->surface), "");
  // What is typed into a field that was disabled meanwhile.
  SetFocus(windowOf(field));
  SendMessageW(windowOf(field), WM_CHAR, L'7', 1);
  field.setEnabled(false);
  WindowHand::flush();
  EXPECT_EQ(field.text(), "");
  EXPECT_EQ(differences(window->view, model->surface), "");
}

TEST_F(AView, showsWhatTheControlHoldsWhenItsHandlerTakesTheActBack) {
  toolkit::handle(box.click, [this] { box.setValue(CheckBox::kClear); });
  EXPECT_TRUE(window->hand.click(box));
  toolkit::handle(field.change, [this] { field.setText("mine"); });
  EXPECT_TRUE(window->hand.type(field, "yours"));
  EXPECT_EQ(differences(window->view, model->surface), "");
}

TEST_F(AView, handsOverWhatAHandlerThrows) {
  toolkit::handle(button.click, [] { throw std::runtime_error("of the host's own"); });
  EXPECT_TRUE(window->hand.click(button));
  EXPECT_EQ(window->failures, "of the host's own");
  EXPECT_TRUE(window->hand.click(box));
  EXPECT_EQ(box.value(), CheckBox::kTicked) << "the form goes on";
}

TEST_F(AView, losesNoLetterTypedWhileAnActIsOnItsWay) {
  SetFocus(windowOf(field));
  for (const wchar_t letter : {L'1', L'.', L'5'}) {
    SendMessageW(windowOf(field), WM_CHAR, static_cast<WPARAM>(letter), 1);
  }
  WindowHand::flush();
  EXPECT_EQ(field.text(), "1.5");
  DWORD end = 0;
  SendMessageW(windowOf(field), EM_GETSEL, 0, reinterpret_cast<LPARAM>(&end));
  EXPECT_EQ(end, 3U) << "where the next letter goes";
}

TEST_F(AView, takesWhatIsTypedAsAWholeWhenItIsComplete) {
  std::vector<std::string> texts;
  const auto watching = model->whole.change.observe([&] { texts.push_back(model->whole.text()); });
  EXPECT_TRUE(window->hand.type(model->whole, "*IDN?"));
  EXPECT_TRUE(texts.empty());
  EXPECT_TRUE(window->hand.press(model->whole, VK_RETURN));
  EXPECT_TRUE(window->hand.type(model->whole, "*RST"));
  SetFocus(windowOf(field));
  WindowHand::flush();
  EXPECT_EQ(texts, (std::vector<std::string>{"*IDN?", "*RST"}));
  EXPECT_TRUE(window->hand.type(model->whole, "not meant"));
  EXPECT_TRUE(window->hand.press(model->whole, VK_ESCAPE));
  EXPECT_EQ(differences(window->view, model->surface), "");
}

TEST_F(AView, tellsTheFormThatItCameIntoView) {
  int shows = 0;
  const auto watching = model->form.show.observe([&] { ++shows; });
  ShowWindow(window->view.window(), SW_HIDE);
  ShowWindow(window->view.window(), SW_SHOW);
  WindowHand::flush();
  EXPECT_EQ(shows, 1);
}

TEST_F(AView, showsTheHourglassOverAllOfItself) {
  const auto cursor = [this](HWND over) {
    SetCursor(nullptr);
    SendMessageW(over, WM_SETCURSOR, reinterpret_cast<WPARAM>(over),
                 MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
    return GetCursor();
  };
  const HCURSOR wait = LoadCursorW(nullptr, IDC_WAIT);
  model->form.setMousePointer(11);
  EXPECT_EQ(cursor(windowOf(field)), wait);
  EXPECT_EQ(cursor(windowOf(button)), wait);
  model->form.setMousePointer(1);
  EXPECT_NE(cursor(windowOf(field)), wait);
}

TEST_F(AView, canBeScrolledWhereItHasLessRoom) {
  const auto size = window->view.size();
  SetFocus(windowOf(box));
  MoveWindow(window->view.window(), 0, 0, size.width / 2, size.height / 2, FALSE);
  RECT place{};
  const auto top = [&] {
    GetWindowRect(windowOf(model->whole), &place);
    MapWindowPoints(nullptr, window->view.window(), reinterpret_cast<POINT*>(&place), 2);
    return place.top;
  };
  const LONG before = top();
  SendMessageW(window->view.window(), WM_VSCROLL, SB_LINEDOWN, 0);
  EXPECT_LT(top(), before);
  SendMessageW(window->view.window(), WM_VSCROLL, SB_TOP, 0);
  EXPECT_EQ(top(), before);
  SetFocus(windowOf(model->whole));
  EXPECT_LT(top(), before) << "the focus brings it into view";
  MoveWindow(window->view.window(), 0, 0, size.width, size.height, FALSE);
  EXPECT_EQ(top(), before);
}

TEST_F(AView, showsTextsAsTheyCome) {
  for (const std::string& text :
       {std::string("a&b"), std::string("12.5 \xCE\xA9"), std::string(40000, '7')}) {
    field.setText(text);
    box.setCaption(text.substr(0, 8));
    EXPECT_EQ(differences(window->view, model->surface), "");
  }
  field.setText("\xFF\xFE");  // no UTF-8: each byte is a character
  wchar_t shown[8] = {};
  GetWindowTextW(windowOf(field), shown, 8);
  EXPECT_EQ(std::wstring(shown), L"\x00FF\x00FE");
}

TEST_F(AView, leavesNothingBehind) {
  const auto handles = [] {
    return GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS) +
           GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
  };
  { const FormWindow warm(model->surface); }
  const DWORD before = handles();
  for (int i = 0; i < 20; ++i) {
    const FormWindow another(model->surface);
  }
  EXPECT_LE(handles(), before + 2);
}

TEST_F(AView, drawsItselfIntoADevice) {
  const HDC screen = GetDC(nullptr);
  const HDC memory = CreateCompatibleDC(screen);
  const HBITMAP bitmap = CreateCompatibleBitmap(screen, 200, 100);
  const HGDIOBJ before = SelectObject(memory, bitmap);
  const RECT whole{0, 0, 200, 100};
  FillRect(memory, &whole, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
  window->view.print(memory, whole);
  EXPECT_NE(GetPixel(memory, 190, 95), COLORREF{0});
  EXPECT_NE(GetPixel(memory, 5, 5), CLR_INVALID);
  SelectObject(memory, before);
  DeleteObject(bitmap);
  DeleteDC(memory);
  ReleaseDC(nullptr, screen);
}

}  // namespace
}  // namespace lumodevice::win32
