#include "lumodevice/panel/command_prefixes.hpp"

#include "lumodevice/form/command_texts.hpp"

namespace lumodevice::panel {

void BuildCmdTable(link::CommandTable& commands) {
  static_assert(form::kCommandTexts.size() <= link::CommandTable::kCapacity);
  commands.clear();
  for (const std::string_view text : form::kCommandTexts) {
    commands.AddCmd(text);
  }
}

}  // namespace lumodevice::panel
