// One item into the recycle bin, by the shell.
#pragma once

#include "platform/windows/recycle_listener.h"

namespace kelvane::windows_os {

// Whether this system's shell does what recycle() asks of it. For a thread with COM.
[[nodiscard]] bool shellRecycles();

// Leaves the item alone when the bin would not take it. Passes on every answer of the shell about it, and tells what
// became of it where the shell does not. For a thread with COM.
[[nodiscard]] BatchOutcome recycle(const RemovalItem& item, const ToldOutcome& tell);

}  // namespace kelvane::windows_os
