// What one room of a window asks of another.
#pragma once

#include "ui/frame/frame_parts.h"

namespace kelvane {

// After all rooms are in: the list goes where a summary points, and the scan's pane takes the folder that the program
// was started with or that was dropped on the window.
void linkRooms(const FrameParts& parts);

}  // namespace kelvane
