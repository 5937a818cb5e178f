// One item into the recycle bin, by the shell.
#pragma once

#include "platform/windows/recycle_listener.h"

namespace kelvane::windows_os {

// Whether this system's shell does what recycle() asks of it. For a thread with COM.
[[nodiscard]] bool shellRecycles();

struct Recycled {
    RemovalOutcome item;
    BatchOutcome operation;
};

// Leaves the item alone when the bin would not take it. For a thread with COM.
[[nodiscard]] Recycled recycle(const RemovalItem& item);

}  // namespace kelvane::windows_os
