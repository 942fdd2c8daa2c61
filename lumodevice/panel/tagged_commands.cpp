#include "lumodevice/panel/tagged_commands.hpp"

#include "lumodevice/text/text.hpp"

namespace lumodevice::panel {

const std::string& TaggedCommands::prefix(const toolkit::Control& control) const {
  return commands_.entry(text::toWhole32(text::Val(control.tag()) - 1));
}

std::string TaggedCommands::query(const toolkit::Control& control) const {
  return text::Trim(prefix(control)) + "?";
}

void TaggedCommands::readBack(toolkit::TextBox& box) const {
  if (const auto answer = exchange_.ask(query(box))) {
    box.setText(*answer);
  }
}

}  // namespace lumodevice::panel
