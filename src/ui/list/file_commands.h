// The commands of the menu File that open, save and write results.
#pragma once

#include "ui/frame/frame_parts.h"

namespace kelvane {

void installFileCommands(const FrameParts& parts);

}  // namespace kelvane
