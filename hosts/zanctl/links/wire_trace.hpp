#pragma once

#include <cstdint>
#include <string_view>

#include "hosts/zanctl/output/output.hpp"
#include "lumodevice/toolkit/event_loop.hpp"

namespace zanctl {

/// Bytes in quotes, escaped. Of binary data of more than 64 bytes the first 32, "..." and the
/// total, as in "#6122880..." +122889 bytes; of a text of more than 1024 bytes the first 256.
[[nodiscard]] std::string quotedBytes(std::string_view bytes);

/// The record of what went over the wire, one line an event, each with the milliseconds since the
/// loop was made.
class WireTrace {
 public:
  /// Both must outlive the trace.
  WireTrace(Output& output, const lumodevice::toolkit::EventLoop& loop)
      : output_(output), loop_(loop) {}

  void sent(std::string_view bytes) { event("send ", quotedBytes(bytes)); }
  void received(std::string_view bytes) { event("recv ", quotedBytes(bytes)); }
  void dropped(std::string_view bytes) { event("drop ", quotedBytes(bytes)); }
  void slept(std::int32_t milliseconds) { event("sleep ", std::to_string(milliseconds)); }
  void opened(std::string_view name);
  void closed(std::string_view name);
  void showedBox(std::string_view text);

 private:
  void event(std::string_view what, std::string_view detail);

  Output& output_;
  const lumodevice::toolkit::EventLoop& loop_;
};

}  // namespace zanctl
