#pragma once

#include <cstdint>

#include "lumodevice/io/visa.hpp"
#include "simulator/links/visa_bench.hpp"

namespace zansim {

/// A numeric attribute of a session.
struct VisaAttribute {
  lumodevice::io::ViAttr id;
  int width;  ///< bytes
  std::uint32_t most;
  std::uint32_t initial;
  enum class On : std::uint8_t { EverySession, SerialEnds, Serial, Usb } on;
  bool readOnly = false;
};

/// Attributes of which a session or its resource has a value of its own.
inline constexpr lumodevice::io::ViAttr kLockState = 0x3FFF0004;
inline constexpr lumodevice::io::ViAttr kAvailable = 0x3FFF00AC;  ///< bytes that wait to be read
inline constexpr lumodevice::io::ViAttr kManagerSession = 0x3FFF00C4;
inline constexpr lumodevice::io::ViAttr kMakerNumber = 0x3FFF00D9;
inline constexpr lumodevice::io::ViAttr kModelNumber = 0x3FFF00DF;
inline constexpr lumodevice::io::ViAttr kInterfaceType = 0x3FFF0171;
inline constexpr lumodevice::io::ViAttr kInterfaceNumber = 0x3FFF0176;

// Texts.
inline constexpr lumodevice::io::ViAttr kResourceClass = 0xBFFF0001;
inline constexpr lumodevice::io::ViAttr kResourceName = 0xBFFF0002;
inline constexpr lumodevice::io::ViAttr kMakerName = 0xBFFF0072;
inline constexpr lumodevice::io::ViAttr kModelName = 0xBFFF0077;
inline constexpr lumodevice::io::ViAttr kLibraryMaker = 0xBFFF0174;
inline constexpr lumodevice::io::ViAttr kUsbSerialNumber = 0xBFFF01A0;

/// The attribute, or null when `resource` has none of this number.
[[nodiscard]] const VisaAttribute* findAttribute(lumodevice::io::ViAttr id,
                                                 const VisaResource& resource);

/// `value` as the attribute takes it (any number but 0 is true for a Boolean); false when it
/// refuses.
[[nodiscard]] bool takesValue(const VisaAttribute& attribute, std::uint32_t& value);

}  // namespace zansim
