#pragma once

#include "lumodevice/io/serial_port.hpp"

namespace lumodevice::posix {

/// Makes the terminal device a raw line with these settings: bytes pass unchanged both ways, modem
/// lines are ignored, closing leaves DTR on. Throws SerialFault: 380 for settings that the system
/// or the device does not have, 68 when the device is gone.
void applySerialSettings(int device, const io::SerialSettings& settings);

}  // namespace lumodevice::posix
