// Commands of the frame itself: windows.
#pragma once

#include "ui/frame/frame_parts.h"

namespace kelvane {

void installFrameCommands(const FrameParts& parts);

}  // namespace kelvane
