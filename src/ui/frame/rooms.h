// Which rooms a window has.
#pragma once

#include "ui/frame/frame_parts.h"

namespace kelvane {

// Puts panes and commands of all rooms into a new frame, in the order of menus.
void installRooms(const FrameParts& parts);

}  // namespace kelvane
