#pragma once

#include <functional>
#include <memory>
#include <string>

#include "lumodevice/export.hpp"
#include "lumodevice/toolkit/surface.hpp"
#include "lumodevice/win32/failure.hpp"

// As <windows.h> has them.
struct HWND__;
struct HDC__;
struct tagMSG;
struct tagRECT;

namespace lumodevice::win32 {

/// Draws a form with the system's own controls and lets an operator use it: a window for each
/// control, in the places and with the look that the controls have, whatever form it is. A program
/// puts it on a window of its own:
///
///     lumodevice::win32::FormView view(load.surface(), mainWindow);
///     MoveWindow(view.window(), 0, 0, view.size().width, view.size().height, TRUE);
///     ShowWindow(view.window(), SW_SHOW);
///     while (GetMessageW(&message, nullptr, 0, 0) > 0) {
///       if (!view.translate(message)) {
///         TranslateMessage(&message);
///         DispatchMessageW(&message);
///       }
///     }
///
/// Both sides follow each other: what code changes is shown at once, and what an operator does
/// goes to the control by its hand (lumodevice/toolkit/hand.hpp) by a message of its own, when the
/// system's control has returned; an act that is refused brings the control back. Any number of
/// views may show one form, and a view may come and go at any time, also within an act, while the
/// component waits or when the component has ended, which leaves the view without use. When the
/// window above it is destroyed, the view's windows go with it.
///
/// The form is as large as its places say at the resolution of the window's screen and in the
/// system's message font, which it follows; where there is less room it can be scrolled. The keys
/// of dialogs (Tab, the letters of captions, arrows among options) work where messages are
/// dispatched without translate(), too.
///
/// Made, used and ended on one thread, which dispatches its messages.
class LUMODEVICE_API FormView : private toolkit::View {
 public:
  using Window = HWND__*;

  /// `parent` null: a window of its own that has no frame. Throws std::runtime_error where there
  /// can be no windows.
  FormView(toolkit::Surface& surface, Window parent, FailureHandler onFailure = reportFailure);
  ~FormView() override;
  FormView(const FormView&) = delete;
  FormView& operator=(const FormView&) = delete;

  /// A child of the parent, hidden at first, to be placed and shown by the program. Null when it
  /// has been destroyed.
  [[nodiscard]] Window window() const;
  /// The window of a control of the form; null for one that has none (a timer), and when the
  /// component has ended.
  [[nodiscard]] Window windowOf(const toolkit::Control& control) const;

  /// The whole form, in pixels.
  struct Size {
    int width = 0;
    int height = 0;
  };
  [[nodiscard]] Size size() const;

  /// Takes a key of a dialog that goes to the view; true when it must not be dispatched any more.
  bool translate(const tagMSG& message);
  /// Where Tab goes behind the last control, and Shift+Tab before the first: to the other end of
  /// the form (at first), or nowhere, so that translate() is false and the program goes on from
  /// here.
  void setTabLeaves(bool leaves);
  /// Gives the focus to the first or last control that takes it; false when there is none.
  bool focusEnd(bool first);
  /// The operator presses Alt with a letter elsewhere; true when a control here has it.
  bool pressMnemonic(wchar_t letter);
  /// The lower-case letters that pressMnemonic knows at this moment.
  [[nodiscard]] std::wstring mnemonics() const;

  /// Told when the focus comes to a control of the view (true), and when it leaves the view.
  void setFocusHandler(std::function<void(bool inside)> onFocus);

  /// Draws all of the form as it is, in that rectangle of a device; the view need not be visible.
  void print(HDC__* device, const tagRECT& place);

 private:
  class Body;

  void changed(const toolkit::Control& control, toolkit::Property property, int item) override;
  void ended() noexcept override;

  std::shared_ptr<Body> body_;
};

}  // namespace lumodevice::win32
