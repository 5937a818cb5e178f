// Commands for the files that the person is at: opened, looked at, declared, tagged, copied.
#pragma once

#include "ui/frame/frame_parts.h"
#include "ui/list/results_view.h"

namespace kelvane {

void installItemCommands(const FrameParts& parts, ResultsView& view);
void installDeclaration(const FrameParts& parts);
void installTags(const FrameParts& parts);
// All that can be done with an item, at a click.
void installContextMenu(const FrameParts& parts, ResultsView& view);

// In a dialog over the window.
void showProperties(WindowLink& link, ItemId item);

}  // namespace kelvane
