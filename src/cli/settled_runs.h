// What a crash left of earlier clean-ups is settled before a verb works on files, and the person is told.
#pragma once

#include "cleanup/cleanup_pass.h"
#include "cli/console.h"

namespace kelvane {

// The ports of a clean-up on this computer, for a console program: nobody could be asked for an administrator's rights.
[[nodiscard]] PassPorts passPorts(Platform& platform);

// Settles every run that did not come to its end, and says on the error stream what became of it. Silent when there is
// none. A journal that cannot be read is complained of and stops nothing.
void settleRuns(Platform& platform, const Console& console);

}  // namespace kelvane
