#pragma once

#include <cstdint>
#include <string_view>

#include "hosts/zanctl/output/output.hpp"
#include "lumodevice/toolkit/event_loop.hpp"
#include "recordings/wire_tap.hpp"

namespace zanctl {

/// Bytes in quotes, escaped. Of binary data of more than 64 bytes the first 32, "..." and the
/// total, as in "#6122880..." +122889 bytes; of a text of more than 1024 bytes the first 256.
[[nodiscard]] std::string quotedBytes(std::string_view bytes);

/// What goes over the wire as a person reads it, one line an event, each with the milliseconds
/// since the loop was made. A call that failed is no event, but a read of VISA that brought nothing
/// is one: it shows where a time-out passed.
class WireTrace {
 public:
  /// Both must outlive the trace.
  WireTrace(Output& output, const lumodevice::toolkit::EventLoop& loop)
      : output_(output), loop_(loop) {}

  /// What a tap tells.
  void take(const lumodevice::recordings::WireEvent& event);
  void slept(std::int32_t milliseconds) { event("sleep ", std::to_string(milliseconds)); }
  void showedBox(std::string_view text);

 private:
  void event(std::string_view what, std::string_view detail);

  Output& output_;
  const lumodevice::toolkit::EventLoop& loop_;
};

}  // namespace zanctl
