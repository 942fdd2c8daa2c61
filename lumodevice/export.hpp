#pragma once

/// Stands before every class and function of the installed headers:
///
///     class LUMODEVICE_API ZANCtrl {};
///     [[nodiscard]] LUMODEVICE_API Host systemHost(const SystemOptions& options = {});
///
/// A shared library exports what is marked, and nothing else. Where the libraries are static alone
/// (Windows), there is nothing to mark.
#if defined(_WIN32)
#define LUMODEVICE_API
#else
#define LUMODEVICE_API __attribute__((visibility("default")))
#endif
