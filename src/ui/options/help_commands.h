// The commands of the help menu, and the tip at the start.
#pragma once

#include "ui/frame/frame_parts.h"

namespace kelvane {

void installHelp(const FrameParts& parts);

}  // namespace kelvane
