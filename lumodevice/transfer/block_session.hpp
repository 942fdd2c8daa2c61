#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

#include "lumodevice/link/turns.hpp"
#include "lumodevice/link/visa_com_link.hpp"
#include "lumodevice/transfer/working_files.hpp"

namespace lumodevice::transfer {

/// Block transfer over the VISA COM object. A resource that is no GPIB one has its serial end modes
/// switched for the transfer, because a terminator inside the data would end it; they are switched
/// back only where an operation says so. Every call throws io::VisaComFault, and text::NumberFault
/// for a chosen time-out that does not fit.
///
/// In turn the session is as text needs it again whatever becomes of the transfer, and a block that
/// did not come may be late.
class BlockSession {
 public:
  /// Which of the end modes a transfer switches.
  enum class End { Reading, Writing };

  /// Fetches the session of a resource that needs it.
  /// `resource` is the text of cmbVISARes.
  BlockSession(link::VisaComLink& link, link::Turns& turns, std::string_view resource, End end);
  ~BlockSession();
  BlockSession(const BlockSession&) = delete;
  BlockSession& operator=(const BlockSession&) = delete;

  /// Switches the termination character and the serial end mode off.
  void begin();

  /// Asks and reads the data bytes of the answer, switched for the transfer. What arrives is the
  /// caller's to judge.
  [[nodiscard]] io::Bytes read(std::string_view query);

  void write(std::string_view command, std::span<const std::uint8_t> data);

  /// Puts the chosen time-out and the end mode back; the termination character stays off.
  void restore();

 private:
  void setEndMode(int mode);

  link::VisaComLink& link_;
  link::Turns& turns_;
  End end_;
  bool switched_ = false;
  std::shared_ptr<io::MessageSession> session_;  ///< null for a GPIB resource
};

/// An answer of fewer bytes is none: nothing is written, and the session stays as it is.
inline constexpr std::size_t kLeastBlock = 2;

}  // namespace lumodevice::transfer
