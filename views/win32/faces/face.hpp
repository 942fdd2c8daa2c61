#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "lumodevice/toolkit/controls.hpp"
#include "views/win32/dress.hpp"
#include "views/win32/scale.hpp"
#include "views/win32/window.hpp"

namespace lumodevice::win32 {

class Face;
class Dragging;

/// What the faces of one view share.
class Stage : public Keeper {
 public:
  using Deed = std::function<void()>;

  [[nodiscard]] const Scale& scale() const { return scale_; }
  [[nodiscard]] Wardrobe& wardrobe() const { return *wardrobe_; }

  /// Has `deed` done for the control when the system's control has returned, unless the form or the
  /// view has gone by then.
  virtual void act(const toolkit::Control& control, Deed deed) = 0;
  /// A key that went to the view: true when it was one of the form's (Tab, a marked letter, ...).
  virtual bool key(UINT message, WPARAM key) = 0;
  /// The focus has come to a window of the view, or is about to leave it for another one.
  virtual void focusArrived() = 0;
  virtual void focusLeft(HWND toward) = 0;
  /// The face whose window, or a part of it, that is; null for none.
  [[nodiscard]] static Face* faceOf(HWND window);
  /// The drag from a list that the mouse is at.
  [[nodiscard]] virtual std::unique_ptr<Dragging>& dragging() = 0;

 protected:
  void setScale(const Scale& scale);

 private:
  Scale scale_;
  std::unique_ptr<Wardrobe> wardrobe_;
  /// The one before, until no window uses its fonts any more.
  std::unique_ptr<Wardrobe> wornOut_;
};

/// A control as a window of the system.
class Face : public Window {
 public:
  [[nodiscard]] const toolkit::Control& control() const { return control_; }

  /// Makes its window; again, when its look wants one of another style.
  void make(HWND parent);
  [[nodiscard]] bool isAsMade() const { return made_ == shape(); }

  /// Gives it the font of its look.
  void dress();
  virtual void place(const RECT& place);
  /// Draws what this kind of control alone has.
  virtual void draw(toolkit::Property property, int item) = 0;
  /// Draws all of that, in this size and look.
  virtual void drawAll() = 0;

  /// Whether the focus can be given to it at all, and whether the Tab key stops here now.
  [[nodiscard]] virtual bool takesKeyboard() const { return false; }
  [[nodiscard]] virtual bool isStop() const { return takesKeyboard() && isWithinReach(); }
  /// It is seen and can be used.
  [[nodiscard]] bool isWithinReach() const;
  /// The focus comes by a key.
  virtual void arrive() { SetFocus(handle()); }
  /// The letter of its caption is pressed; false where that goes to the next face.
  virtual bool useMnemonic() { return false; }

  // What the window above it is told of its window.
  virtual void notified(UINT /*code*/) {}
  virtual void drawItem(const DRAWITEMSTRUCT& /*item*/) {}
  /// Sets the colours of a device that its window, or a part of it, is painted on; the ground.
  virtual HBRUSH paint(HDC device);

 protected:
  Face(Stage& stage, const toolkit::Control& control)
      : Window(stage), stage_(stage), control_(control) {}

  [[nodiscard]] Stage& stage() const { return stage_; }
  [[nodiscard]] virtual Shape shape() const = 0;
  /// Its window is new.
  virtual void made() {}
  [[nodiscard]] HFONT font() const;
  /// The colour that the container is painted in here.
  [[nodiscard]] COLORREF ground() const;
  LRESULT message(UINT message, WPARAM first, LPARAM second) override;

  /// For a window that `paintOn(device)` paints all over: takes the messages that ask for it.
  template <typename PaintOn>
  [[nodiscard]] std::optional<LRESULT> painted(UINT message, WPARAM first, PaintOn paintOn) const {
    switch (message) {
      case WM_ERASEBKGND:
        return TRUE;
      case WM_PAINT: {
        PAINTSTRUCT painting;
        paintOn(BeginPaint(handle(), &painting));
        EndPaint(handle(), &painting);
        return 0;
      }
      case WM_PRINTCLIENT:
        paintOn(reinterpret_cast<HDC>(first));
        return 0;
      default:
        return std::nullopt;
    }
  }

 private:
  Stage& stage_;
  const toolkit::Control& control_;
  std::optional<Shape> made_;
};

/// What windows that others sit in do with what these tell them: nothing when it is no such
/// message.
[[nodiscard]] std::optional<LRESULT> handOn(Stage& stage, UINT message, WPARAM first,
                                            LPARAM second);

/// What all parts of a face do with keys and the focus.
[[nodiscard]] std::optional<LRESULT> inputTo(Stage& stage, UINT message, WPARAM first);

/// The key that fields know, if it is one and pressed by itself.
[[nodiscard]] std::optional<toolkit::Key> fieldKey(WPARAM key);
/// The Enter key in a field clicks the button that its look names; false where it names none.
bool clickEntered(Stage& stage, const toolkit::Control& field);

/// The frame's ground, which its own window shows.
[[nodiscard]] COLORREF groundWithin(const Stage& stage, const toolkit::Container& container);

std::unique_ptr<Face> makeFrame(Stage& stage, toolkit::Frame& frame);
std::unique_ptr<Face> makeLabel(Stage& stage, toolkit::Label& label);
std::unique_ptr<Face> makeButton(Stage& stage, toolkit::CommandButton& button);
std::unique_ptr<Face> makeCheckBox(Stage& stage, toolkit::CheckBox& box);
std::unique_ptr<Face> makeOption(Stage& stage, toolkit::OptionButton& option);
std::unique_ptr<Face> makeTextBox(Stage& stage, toolkit::TextBox& box);
std::unique_ptr<Face> makeComboBox(Stage& stage, toolkit::ComboBox& box);
std::unique_ptr<Face> makeListBox(Stage& stage, toolkit::ListBox& list);
std::unique_ptr<Face> makePicture(Stage& stage, toolkit::Pictured& picture);

/// The face of a control of whatever kind, without a window as yet; null for one that is not seen.
/// The form has none: it is the view.
std::unique_ptr<Face> makeFace(Stage& stage, toolkit::Control& control);

}  // namespace lumodevice::win32
