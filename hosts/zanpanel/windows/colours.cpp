#include "hosts/zanpanel/windows/colours.hpp"

#include <array>

namespace zanpanel {

namespace {

constexpr int kMiddle = 128;

struct Shades {
  const char* window;
  const char* base;
  const char* alternate;
  const char* button;
  const char* text;
  const char* disabled;
  const char* highlight;
  const char* highlighted;
  const char* link;
};

QPalette paletteOf(const Shades& shades) {
  QPalette palette{QColor(shades.button), QColor(shades.window)};
  palette.setColor(QPalette::Base, shades.base);
  palette.setColor(QPalette::AlternateBase, shades.alternate);
  palette.setColor(QPalette::ToolTipBase, shades.alternate);
  for (const auto role :
       {QPalette::Text, QPalette::WindowText, QPalette::ButtonText, QPalette::ToolTipText}) {
    palette.setColor(role, shades.text);
    palette.setColor(QPalette::Disabled, role, shades.disabled);
  }
  palette.setColor(QPalette::PlaceholderText, shades.disabled);
  palette.setColor(QPalette::Highlight, shades.highlight);
  palette.setColor(QPalette::HighlightedText, shades.highlighted);
  palette.setColor(QPalette::Link, shades.link);
  return palette;
}

}  // namespace

Colours::Colours(const QPalette& palette)
    : dark(palette.color(QPalette::Window).lightness() < kMiddle),
      volts(dark ? "#6cb6ff" : "#0b5cad"),
      amperes(dark ? "#ffa657" : "#b34700"),
      watts(dark ? "#56d4a0" : "#00704a"),
      on(dark ? "#e8a317" : "#d97c00"),
      alarm(dark ? "#ff6b6b" : "#c01c28"),
      onAlarm(dark ? "#101418" : "#ffffff"),
      faint(dark ? "#6e7681" : "#8c959f") {}

QColor Colours::ofChannel(std::size_t index) const {
  static constexpr std::array kOnLight{"#0072b2", "#d55e00", "#00845f", "#a83e86",
                                       "#9a6a00", "#2f8fc7", "#6a4fa3", "#56606a"};
  static constexpr std::array kOnDark{"#4aa8e0", "#ff8c42", "#3ecf9e", "#e59ac4",
                                      "#f0c04a", "#9ad4f5", "#b49be8", "#b4bcc4"};
  const char* const name =
      dark ? kOnDark.at(index % kOnDark.size()) : kOnLight.at(index % kOnLight.size());
  return {name};
}

QPalette lightPalette() {
  return paletteOf({.window = "#f3f4f6",
                    .base = "#ffffff",
                    .alternate = "#eef1f5",
                    .button = "#e6e9ee",
                    .text = "#1b1f24",
                    .disabled = "#848d97",
                    .highlight = "#0b5cad",
                    .highlighted = "#ffffff",
                    .link = "#0b5cad"});
}

QPalette darkPalette() {
  return paletteOf({.window = "#2b3038",
                    .base = "#1b1f24",
                    .alternate = "#333941",
                    .button = "#3d444d",
                    .text = "#e6edf3",
                    .disabled = "#7d8590",
                    .highlight = "#388bfd",
                    .highlighted = "#0d1117",
                    .link = "#6cb6ff"});
}

}  // namespace zanpanel
