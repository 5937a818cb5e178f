// Marking, clean-up and taking back in a window.
#pragma once

#include "ui/frame/frame_parts.h"

namespace kelvane {

// Behind the rooms whose mark commands the pane has buttons for.
void installClean(const FrameParts& parts);

}  // namespace kelvane
