#pragma once

// The system's headers as this folder uses them; behind all others, in this order.
// clang-format off
#include <windows.h>
#include <windowsx.h>
#include <commctrl.h>
// clang-format on
