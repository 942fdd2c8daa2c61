#pragma once

// The system's headers as this folder uses them; behind all others.
#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef UNICODE
#define UNICODE
#endif
// clang-format off
#include <windows.h>
#include <windowsx.h>
#include <commctrl.h>
// clang-format on
