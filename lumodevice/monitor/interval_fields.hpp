#pragma once

#include "lumodevice/form/controls.hpp"

namespace lumodevice::monitor {

/// The console's two fields of milliseconds: Text5 is the interval of the auto query (Timer1),
/// Text6 that of the receive poll (Timer2).
class IntervalFields {
 public:
  /// Takes over the keys of Text5 and Text6: Enter makes a timer run at what its field says, or
  /// shows the interval in force again where no timer can run at that.
  explicit IntervalFields(form::Controls& form);

  /// Makes both timers run at what the fields say. Throws text::NumberFault and
  /// toolkit::PropertyFault for intervals that no timer can run at.
  void apply();

 private:
  static void change(toolkit::TextBox& field, toolkit::Timer& timer);

  form::Controls& form_;
};

}  // namespace lumodevice::monitor
