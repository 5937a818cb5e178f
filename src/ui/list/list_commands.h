// Commands for marks, for the selection and for what is in view.
#pragma once

#include "ui/frame/frame_parts.h"
#include "ui/list/results_view.h"

namespace kelvane {

void installMarkCommands(const FrameParts& parts);
// "Tick all but the newest" and its like.
void installQuickRules(const FrameParts& parts);
void installEditCommands(const FrameParts& parts, ResultsView& view);

}  // namespace kelvane
