#pragma once

#include <cstdint>
#include <functional>

#include "hosts/zanctl/output/progress.hpp"
#include "lumodevice/toolkit/controls.hpp"
#include "lumodevice/toolkit/event_loop.hpp"
#include "lumodevice/toolkit/surface.hpp"

namespace zanctl {

/// While it lives, the line of progress names each attempt of the serial search as it begins:
/// "trying COM3 at 19200 baud". The search sets the port and the baud rate in two boxes of the
/// panel, one after the other. An attempt is named when both are set, which is when the component
/// begins to wait for the answer.
class SearchReport : private lumodevice::toolkit::View {
 public:
  /// All three must outlive it.
  SearchReport(lumodevice::toolkit::Surface& surface, lumodevice::toolkit::EventLoop& loop,
               Progress& progress);
  ~SearchReport() override;
  SearchReport(const SearchReport&) = delete;
  SearchReport& operator=(const SearchReport&) = delete;

 private:
  void changed(const lumodevice::toolkit::Control& control, lumodevice::toolkit::Property property,
               int item) override;
  void tell();

  lumodevice::toolkit::Surface& surface_;
  lumodevice::toolkit::EventLoop& loop_;
  Progress& progress_;
  const lumodevice::toolkit::ComboBox& port_;
  const lumodevice::toolkit::ComboBox& baud_;
  /// The handler that the loop had for its sleeps; it is still called.
  std::function<void(std::int32_t)> onSleep_;
  bool due_ = false;
};

}  // namespace zanctl
