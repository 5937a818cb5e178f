// The three streams that a program is started with.
#pragma once

namespace kelvane {

// A program may be started with standard input, output or errors closed; the next file that it opens would then take
// the stream's place, and results would be written into that file. This puts something harmless there, on which every
// read and write fails. To be called first in main; defined by the adapter that the program is linked with.
void reserveStandardStreams() noexcept;

}  // namespace kelvane
