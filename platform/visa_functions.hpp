#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "lumodevice/io/visa.hpp"

/// How VISA's functions are called.
#if defined(_WIN32) && !defined(_WIN64)
#define LUMODEVICE_VISA_CALL __stdcall
#else
#define LUMODEVICE_VISA_CALL
#endif

/// The functions of a VISA library that was loaded, whatever loaded it.
namespace lumodevice::platform {

/// VISA's ViAttrState: as wide as an address, whatever the headers of a maker say.
using AttributeState = std::uintptr_t;

struct VisaFunctions {
  io::ViStatus(LUMODEVICE_VISA_CALL* viOpenDefaultRM)(io::ViSession*) = nullptr;
  io::ViStatus(LUMODEVICE_VISA_CALL* viFindRsrc)(io::ViSession, const char*, io::ViFindList*,
                                                 std::uint32_t*, char*) = nullptr;
  io::ViStatus(LUMODEVICE_VISA_CALL* viFindNext)(io::ViFindList, char*) = nullptr;
  io::ViStatus(LUMODEVICE_VISA_CALL* viOpen)(io::ViSession, const char*, std::uint32_t,
                                             std::uint32_t, io::ViSession*) = nullptr;
  io::ViStatus(LUMODEVICE_VISA_CALL* viClose)(io::ViObject) = nullptr;
  io::ViStatus(LUMODEVICE_VISA_CALL* viGetAttribute)(io::ViObject, io::ViAttr, void*) = nullptr;
  io::ViStatus(LUMODEVICE_VISA_CALL* viSetAttribute)(io::ViObject, io::ViAttr,
                                                     AttributeState) = nullptr;
  io::ViStatus(LUMODEVICE_VISA_CALL* viRead)(io::ViSession, unsigned char*, std::uint32_t,
                                             std::uint32_t*) = nullptr;
  io::ViStatus(LUMODEVICE_VISA_CALL* viWrite)(io::ViSession, const unsigned char*, std::uint32_t,
                                              std::uint32_t*) = nullptr;
};

/// One of them: what a library exports it as, and where its address is kept.
struct VisaFunction {
  const char* name;
  int ordinal;  ///< in a DLL of Windows
  void (*keep)(VisaFunctions& functions, void* address);
};

/// All nine.
extern const std::array<VisaFunction, 9> kVisaFunctions;

/// Those functions as a VISA layer, which does not trust what they hand over. `library` keeps them
/// loaded.
[[nodiscard]] std::unique_ptr<io::Visa> visaOver(std::shared_ptr<void> library,
                                                 const VisaFunctions& functions);

}  // namespace lumodevice::platform
