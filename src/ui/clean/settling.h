// What earlier clean-ups left half done.
#pragma once

namespace kelvane {

class Workbench;

// On the thread of the window: brings what a crash left half done to an end, and tells about it. A job of the window
// when there is any.
void settleEarlierRuns(Workbench& bench);

}  // namespace kelvane
