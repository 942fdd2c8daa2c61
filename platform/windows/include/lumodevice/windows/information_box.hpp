#pragma once

#include <functional>
#include <string_view>
#include <utility>
#include <windows.h>

namespace lumodevice::windows {

/// Shows information boxes over the host's window, which cannot be used while one stands there.
///
///     lumodevice::windows::MessageLoop loop;
///     const lumodevice::Host host = lumodevice::systemHost(
///         {.loop = &loop,
///          .informationBox = lumodevice::windows::InformationBoxes([] { return HWND{}; })});
class InformationBoxes {
 public:
  /// Called for each box; a window that is gone, or null, is none: the box then stands over all
  /// windows of the thread.
  using Owner = std::function<HWND()>;

  explicit InformationBoxes(Owner owner) : owner_(std::move(owner)) {}
  void operator()(std::string_view text) const;

 private:
  Owner owner_;
};

}  // namespace lumodevice::windows
