// The results of a window: its middle, and the commands that work on the list.
#pragma once

#include "ui/frame/frame_parts.h"

namespace kelvane {

void installList(const FrameParts& parts);

}  // namespace kelvane
