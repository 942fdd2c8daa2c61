#include "lumodevice/monitor/interval_fields.hpp"

#include <string>

#include "lumodevice/text/text.hpp"
#include "lumodevice/toolkit/handling.hpp"

namespace lumodevice::monitor {

IntervalFields::IntervalFields(form::Controls& form) : form_(form) {
  const auto onEnter = [](toolkit::TextBox& field, toolkit::Timer& timer) {
    toolkit::handle(field.keyDown, [&field, &timer](toolkit::Key key) {
      if (key == toolkit::Key::Enter) {
        change(field, timer);
      }
    });
  };
  onEnter(form_.Text5, form_.Timer1);
  onEnter(form_.Text6, form_.Timer2);
}

void IntervalFields::apply() {
  form_.Timer1.setInterval(text::toWhole32(text::Val(form_.Text5.text())));
  form_.Timer2.setInterval(text::toWhole32(text::Val(form_.Text6.text())));
}

void IntervalFields::change(toolkit::TextBox& field, toolkit::Timer& timer) {
  bool accepted = false;
  attempt([&] {
    const double typed = text::Val(field.text());
    if (typed > 0) {
      timer.setInterval(text::toWhole32(typed));
      accepted = true;
    }
  });
  if (!accepted) {
    field.setText(std::to_string(timer.interval()));
  }
}

}  // namespace lumodevice::monitor
