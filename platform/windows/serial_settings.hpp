#pragma once

#include <windows.h>

#include "lumodevice/io/serial_port.hpp"

namespace lumodevice::windows {

/// Makes the serial device a raw line with these settings: bytes pass unchanged both ways, the
/// lines of the modem are ignored, DTR and RTS are on. Throws SerialFault: 380 for settings that
/// the system or the device does not have, 68 when the device is gone.
void applySerialSettings(HANDLE device, const io::SerialSettings& settings);

}  // namespace lumodevice::windows
