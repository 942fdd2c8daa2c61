#include "lumodevice/monitor/front_panel_keys.hpp"

#include <algorithm>
#include <stdexcept>
#include <string_view>

#include "lumodevice/text/text.hpp"

namespace lumodevice::monitor {

namespace {

struct KeyCommand {
  std::string_view key;
  std::string_view command;
};
constexpr auto kKeyCommands = std::to_array<KeyCommand>({{"CHAN", ":KEYBoard:CODE 112,1"},
                                                         {"LOAD", ":KEYBoard:CODE 111,1"},
                                                         {"F1", ":KEYBoard:CODE 113,1"}});

bool holds(const devButton& key, double x, double y) {
  return key.x1 < x && x < key.x2 && key.y1 < y && y < key.y2;
}

}  // namespace

void FrontPanelKeys::setKeys(std::span<const devButton> keys) {
  if (keys.size() > kMostKeys) {
    throw std::length_error("more key areas than the table of the front panel has places");
  }
  std::ranges::copy(keys, keys_.begin());
  keyCount_ = static_cast<std::int16_t>(keys.size());
}

void FrontPanelKeys::PressKeyAt(std::int16_t /*button*/, std::int16_t /*shift*/, float x, float y) {
  attempt([&] { form_.lblKeyX.setCaption(text::singleText(x)); });
  attempt([&] { form_.lblKeyY.setCaption(text::singleText(y)); });
  const devButton* key = keyAt(x, y);
  if (key == nullptr) {
    return;
  }
  const auto* const known = std::ranges::find(kKeyCommands, key->btnTitle, &KeyCommand::key);
  if (known != kKeyCommands.end()) {
    exchange_.runCommand(known->command);
  }
}

const devButton* FrontPanelKeys::keyAt(float x, float y) const {
  const std::span<const devButton> keys(keys_.data(), static_cast<std::size_t>(keyCount_));
  const auto key =
      std::ranges::find_if(keys, [&](const devButton& area) { return holds(area, x, y); });
  return key == keys.end() ? nullptr : &*key;
}

}  // namespace lumodevice::monitor
