// The preview pane and the comparison of copies, put into a window.
#pragma once

#include "ui/frame/frame_parts.h"

namespace kelvane {

void installPreview(const FrameParts& parts);

}  // namespace kelvane
