#pragma once

#include "lumodevice/link/command_table.hpp"

namespace lumodevice::panel {

/// Fills the table with the panel's command prefixes and queries (form::kCommandTexts), in their
/// fixed order: the controls of the form name their prefix by its position.
void BuildCmdTable(link::CommandTable& commands);

}  // namespace lumodevice::panel
