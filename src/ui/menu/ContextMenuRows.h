#pragma once

#include "ui/menu/ContextMenuCommands.h"
#include "ui/menu/ContextMenuState.h"
#include "ui/menu/PellarMenuItem.h"

/// The rows of the context menu, from top to bottom, for both styles. The rows hold copies of what they need
/// of the state and the commands.
std::vector<PellarMenuItem> contextMenuRows(const ContextMenuState& state,
                                            const ContextMenuCommands& commands);
