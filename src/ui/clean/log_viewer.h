// The log of the last clean-up of a window.
#pragma once

#include "ui/clean/clean_memory.h"

namespace kelvane {

class WindowLink;

// On the main thread. The file is read on the window's.
void openLastLog(WindowLink& link, const CleanMemory& memory);

}  // namespace kelvane
