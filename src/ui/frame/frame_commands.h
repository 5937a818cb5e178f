// What the frame itself brings: commands for windows, panes and colours, and its own panes.
#pragma once

#include "ui/frame/frame_parts.h"

namespace kelvane {

// First of all.
void installFrameCommands(const FrameParts& parts);
// After the panes of the rooms, which come before them in tabs.
void installFramePanes(const FrameParts& parts);
// The last command of the file menu.
void installClosing(const FrameParts& parts);

}  // namespace kelvane
