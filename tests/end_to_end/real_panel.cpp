#include "tests/end_to_end/real_panel.hpp"

#include <utility>

#include "tests/support/script.hpp"

namespace lumodevice::end_to_end {

RealPanel::RealPanel(toolkit::EventLoop& loop, io::Visa& visa, io::SerialDevices& serialDevices)
    : visaCom_(visa),
      component_({.loop = loop,
                  .visa = visa,
                  .visaCom = visaCom_,
                  .serialDevices = serialDevices,
                  .drive = drive_,
                  .wallClock = wallClock_,
                  .informationBox = [this](std::string_view text) { boxes_.emplace_back(text); }}) {
}

std::optional<std::string> RealPanel::file(const std::string& name) const {
  const auto path = folder_.path() / "temp" / name;
  return std::filesystem::exists(path) ? std::optional(folder_.read(path)) : std::nullopt;
}

void RealPanel::putFile(const std::string& name, std::string_view bytes) const {
  (void)folder_.write(folder_.path() / "temp" / name, bytes);
}

std::string RealPanel::boxes() {
  return support::lines(std::exchange(boxes_, {}));
}

std::string RealPanel::state() {
  switch (zan().ConnStyle()) {
    case LinkKind::Serial:
      return "serial, " + std::to_string(zan().ChCount()) + " channels";
    case LinkKind::Visa:
      return "VISA, " + std::to_string(zan().ChCount()) + " channels";
    case LinkKind::NotConnected:
      break;
  }
  return "not connected";
}

}  // namespace lumodevice::end_to_end
