#pragma once

#include <string>
#include <string_view>

#include "lumodevice/export.hpp"
#include "lumodevice/toolkit/control.hpp"

/// The properties of controls by name and as text, for scripts, tables and tests.
///
///     toolkit::Control& box = *load.surface().find("Text5");
///     toolkit::writeProperty(box, "Text", "100");
///     std::cout << toolkit::readProperty(box, "Text");
namespace lumodevice::toolkit {

/// "TextBox", "CheckBox", ...
[[nodiscard]] LUMODEVICE_API std::string_view kindName(Kind kind);

/// The value of a property as text: Booleans as "True" or "False", `List(i)` for an item. Throws
/// PropertyFault(438) when the control has no such property.
[[nodiscard]] LUMODEVICE_API std::string readProperty(const Control& control,
                                                      std::string_view property);

/// Sets a property as program code does, raising what program code raises. Throws
/// PropertyFault(438) when the control has no such property or does not let it be set, 380 for a
/// value that it does not take.
LUMODEVICE_API void writeProperty(Control& control, std::string_view property,
                                  std::string_view value);

/// "Caption" or "Text", whichever the control shows; "" for a control that shows neither.
[[nodiscard]] LUMODEVICE_API std::string_view shownProperty(const Control& control);

}  // namespace lumodevice::toolkit
