#pragma once

#include <string_view>

#include "lumodevice/io/visa.hpp"

namespace zansim {

// Statuses that no component looks at, but other programs of a VISA library do.
inline constexpr auto VI_WARN_UNKNOWN_STATUS = lumodevice::io::viStatus(0x3FFF0085);
inline constexpr auto VI_SUCCESS_NESTED_EXCLUSIVE = lumodevice::io::viStatus(0x3FFF009A);
inline constexpr auto VI_ERROR_INV_LOCK_TYPE = lumodevice::io::viStatus(0xBFFF0020);
inline constexpr auto VI_ERROR_INV_EVENT = lumodevice::io::viStatus(0xBFFF0026);
inline constexpr auto VI_ERROR_HNDLR_NINSTALLED = lumodevice::io::viStatus(0xBFFF0028);
inline constexpr auto VI_ERROR_NENABLED = lumodevice::io::viStatus(0xBFFF002F);
inline constexpr auto VI_ERROR_NSUP_OPER = lumodevice::io::viStatus(0xBFFF0067);
inline constexpr auto VI_ERROR_USER_BUF = lumodevice::io::viStatus(0xBFFF0071);
inline constexpr auto VI_ERROR_SESN_NLOCKED = lumodevice::io::viStatus(0xBFFF009C);

/// What a status means, in a sentence; empty for one that this library never returns.
[[nodiscard]] std::string_view statusText(lumodevice::io::ViStatus status);

}  // namespace zansim
