#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "lumodevice/export.hpp"

/// The nine operations of a VISA library (VPP-4.3.2) that the component uses. Names, argument order
/// and numbers are VISA's own; handles are 32-bit numbers on every platform.
///
///     io::ViSession manager = 0;
///     io::ViSession session = 0;
///     host.visa.viOpenDefaultRM(manager);
///     if (host.visa.viOpen(manager, "GPIB0::7::INSTR", io::VI_NO_LOCK, 2000, session) < 0) {
///       std::cerr << "nothing answers there\n";
///     }
namespace lumodevice::io {

/// Negative is an error; 0 and positive numbers are success and warnings.
using ViStatus = std::int32_t;
using ViObject = std::uint32_t;
using ViSession = ViObject;
using ViFindList = ViObject;
using ViAttr = std::uint32_t;

/// A status as VISA writes it in hexadecimal.
[[nodiscard]] constexpr ViStatus viStatus(std::uint32_t code) {
  return static_cast<ViStatus>(code);
}

inline constexpr ViStatus VI_SUCCESS = 0;
inline constexpr ViStatus VI_SUCCESS_TERM_CHAR = viStatus(0x3FFF0005);
inline constexpr ViStatus VI_SUCCESS_MAX_CNT = viStatus(0x3FFF0006);
inline constexpr ViStatus VI_WARN_NULL_OBJECT = viStatus(0x3FFF0082);
inline constexpr ViStatus VI_ERROR_SYSTEM_ERROR = viStatus(0xBFFF0000);
inline constexpr ViStatus VI_ERROR_INV_OBJECT = viStatus(0xBFFF000E);
inline constexpr ViStatus VI_ERROR_RSRC_LOCKED = viStatus(0xBFFF000F);
inline constexpr ViStatus VI_ERROR_INV_EXPR = viStatus(0xBFFF0010);
inline constexpr ViStatus VI_ERROR_RSRC_NFOUND = viStatus(0xBFFF0011);
inline constexpr ViStatus VI_ERROR_INV_RSRC_NAME = viStatus(0xBFFF0012);
inline constexpr ViStatus VI_ERROR_INV_ACC_MODE = viStatus(0xBFFF0013);
inline constexpr ViStatus VI_ERROR_TMO = viStatus(0xBFFF0015);
inline constexpr ViStatus VI_ERROR_NSUP_ATTR = viStatus(0xBFFF001D);
inline constexpr ViStatus VI_ERROR_NSUP_ATTR_STATE = viStatus(0xBFFF001E);
inline constexpr ViStatus VI_ERROR_ATTR_READONLY = viStatus(0xBFFF001F);
inline constexpr ViStatus VI_ERROR_ALLOC = viStatus(0xBFFF003C);
inline constexpr ViStatus VI_ERROR_IO = viStatus(0xBFFF003E);
inline constexpr ViStatus VI_ERROR_NLISTENERS = viStatus(0xBFFF005F);
inline constexpr ViStatus VI_ERROR_RSRC_BUSY = viStatus(0xBFFF0072);
inline constexpr ViStatus VI_ERROR_LIBRARY_NFOUND = viStatus(0xBFFF009E);
inline constexpr ViStatus VI_ERROR_CONN_LOST = viStatus(0xBFFF00A6);
inline constexpr ViStatus VI_ERROR_MACHINE_NAVAIL = viStatus(0xBFFF00A7);
inline constexpr ViStatus VI_ERROR_NPERMISSION = viStatus(0xBFFF00A8);

/// Access modes of viOpen.
inline constexpr std::uint32_t VI_NO_LOCK = 0;
inline constexpr std::uint32_t VI_EXCLUSIVE_LOCK = 1;

/// Attributes: id, width, unit.
inline constexpr ViAttr VI_ATTR_SEND_END_EN =
    0x3FFF0016;  ///< Boolean: END with the last byte of a write
inline constexpr ViAttr VI_ATTR_TERMCHAR = 0x3FFF0018;   ///< 8 bits: the termination character
inline constexpr ViAttr VI_ATTR_TMO_VALUE = 0x3FFF001A;  ///< 32 bits: I/O time-out in milliseconds
inline constexpr ViAttr VI_ATTR_TERMCHAR_EN = 0x3FFF0038;  ///< Boolean: reads end at the character
inline constexpr ViAttr VI_ATTR_ASRL_END_IN =
    0x3FFF00B3;  ///< 16 bits: 0 none, 2 termination character
inline constexpr ViAttr VI_ATTR_ASRL_END_OUT =
    0x3FFF00B4;  ///< 16 bits: 0 none, 2 termination character
inline constexpr ViAttr VI_ATTR_INTF_INST_NAME =
    0xBFFF00E9;  ///< text, read only: the interface's name

inline constexpr std::uint32_t VI_TMO_INFINITE = 0xFFFFFFFF;

/// Bytes of a buffer that a VISA library fills with a descriptor or a name, terminating NUL
/// included.
inline constexpr std::size_t VI_FIND_BUFLEN = 256;

class LUMODEVICE_API Visa {
 public:
  virtual ~Visa() = default;

  virtual ViStatus viOpenDefaultRM(ViSession& resourceManager) = 0;

  /// `descriptor` receives the first match, without padding; `count` the number of matches.
  virtual ViStatus viFindRsrc(ViSession resourceManager, const std::string& expression,
                              ViFindList& findList, std::uint32_t& count,
                              std::string& descriptor) = 0;

  /// The next match; VI_ERROR_RSRC_NFOUND and an unchanged `descriptor` when there is none left.
  virtual ViStatus viFindNext(ViFindList findList, std::string& descriptor) = 0;

  /// `openTimeout` in milliseconds bounds the wait for a lock, not the I/O.
  virtual ViStatus viOpen(ViSession resourceManager, const std::string& descriptor,
                          std::uint32_t accessMode, std::uint32_t openTimeout,
                          ViSession& instrument) = 0;

  /// Any object: an instrument, a find list, a resource manager (which closes all that it opened).
  virtual ViStatus viClose(ViObject object) = 0;

  /// A text attribute.
  virtual ViStatus viGetAttribute(ViObject object, ViAttr attribute, std::string& value) = 0;

  /// A numeric attribute; the 32 bits are zero-extended to the width of the platform's attribute
  /// state.
  virtual ViStatus viSetAttribute(ViObject object, ViAttr attribute, std::uint32_t value) = 0;

  /// At most buffer.size() bytes. `count` tells how many arrived, on a time-out too.
  virtual ViStatus viRead(ViSession instrument, std::span<char> buffer, std::uint32_t& count) = 0;

  virtual ViStatus viWrite(ViSession instrument, std::string_view data, std::uint32_t& count) = 0;

  /// Drops what the instrument has sent and nobody has read, where that can be done without asking
  /// the instrument, and tells what it was. No operation of VISA: a maker's library drops nothing.
  virtual std::string discardUnread(ViSession /*instrument*/) { return {}; }
};

}  // namespace lumodevice::io
