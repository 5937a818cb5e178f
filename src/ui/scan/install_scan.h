// The room of scans: its pane and commands.
#pragma once

#include "ui/frame/frame_parts.h"

namespace kelvane {

void installScan(const FrameParts& parts);

}  // namespace kelvane
