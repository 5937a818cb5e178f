// What a crash left of earlier clean-ups is settled before a verb works on files, and the person is told.
#pragma once

#include "cli/console.h"
#include "platform/platform.h"

namespace kelvane {

// Settles every run that did not come to its end, and says on the error stream what became of it. Silent when there is
// none. A journal that cannot be read is complained of and stops nothing.
void settleRuns(Platform& platform, const Console& console);

}  // namespace kelvane
