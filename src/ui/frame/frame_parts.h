// What the rooms of a window are put into.
#pragma once

#include "ui/frame/commands.h"
#include "ui/frame/main_window.h"

namespace kelvane {

// Handed to each room's install function once, when the frame is made; all of it outlives the room's widgets, whose
// parent is the frame.
struct FrameParts {
    WindowLink& link;
    CommandSet& commands;
    MainWindow& window;
};

}  // namespace kelvane
