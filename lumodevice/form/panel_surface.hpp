#pragma once

#include "lumodevice/toolkit/surface.hpp"

namespace lumodevice::form {

/// A surface with every control of the form's tables on it, in its starting state and with its
/// look. Making it raises no event.
class PanelSurface : public toolkit::Surface {
 public:
  PanelSurface();
};

}  // namespace lumodevice::form
