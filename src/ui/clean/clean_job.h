// The clean-up of a window's list.
#pragma once

#include "ui/clean/clean_memory.h"

namespace kelvane {

class Workbench;

// On the thread of the window; returns when all is done and told. Nothing while another job runs.
void cleanUpMarked(Workbench& bench, CleanupMemory& memory);

// "Delete" for the selected rows: to the trash, without questions, for experts only.
void deleteSelected(Workbench& bench, CleanupMemory& memory);

}  // namespace kelvane
