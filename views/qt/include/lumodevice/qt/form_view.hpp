#pragma once

#include <QtWidgets/QScrollArea>
#include <memory>

#include "lumodevice/export.hpp"
#include "lumodevice/qt/failure.hpp"
#include "lumodevice/toolkit/surface.hpp"

namespace lumodevice::qt {

/// Draws a form and lets an operator use it: a widget for each control, in the places and with the
/// look that the controls have, whatever form it is. A program puts it on a window of its own:
///
///     lumodevice::qt::FormView* const view = new lumodevice::qt::FormView(load.surface());
///     view->show();
///
/// Both sides follow each other: what code changes is shown at once, and what an operator does
/// goes to the control by its hand (lumodevice/toolkit/hand.hpp) when Qt has returned from the
/// widget; an act that is refused brings the widget back. Any number of views may show one form,
/// and a view may come and go at any time, also within an act, while the component waits or when
/// the component has ended, which leaves the view without use.
///
/// Each widget carries the full name of its control as objectName() ("txtInput(3)"). The form is
/// as large as its places say at the resolution of the screen and in the font of the view; where
/// there is less room it can be scrolled.
class LUMODEVICE_API FormView : public QScrollArea, private toolkit::View {
  Q_OBJECT

 public:
  explicit FormView(toolkit::Surface& surface, QWidget* parent = nullptr);
  ~FormView() override;
  FormView(const FormView&) = delete;
  FormView& operator=(const FormView&) = delete;

  /// The widget of a control of the form; null for one that has none (a timer), and when the
  /// component has ended.
  [[nodiscard]] QWidget* widgetOf(const toolkit::Control& control) const;

  /// Who is handed what the handlers and observers throw when the operator uses the view;
  /// reportFailure() at first.
  void setFailureHandler(FailureHandler onFailure);

  /// The whole form.
  [[nodiscard]] QSize sizeHint() const override;

 protected:
  bool event(QEvent* event) override;
  void changeEvent(QEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  class Body;

  void changed(const toolkit::Control& control, toolkit::Property property, int item) override;
  void ended() noexcept override;

  std::unique_ptr<Body> body_;
};

}  // namespace lumodevice::qt
