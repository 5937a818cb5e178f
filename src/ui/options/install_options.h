// The room of options and help in a window.
#pragma once

#include "ui/frame/frame_parts.h"

namespace kelvane {

void installOptions(const FrameParts& parts);

}  // namespace kelvane
