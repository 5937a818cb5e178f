// Names beside an item that nothing has yet.
#pragma once

#include <cstdint>

#include "platform/held_files.h"

namespace kelvane {

// The item's name with a number behind it, in lower-case hexadecimal: `ticks`, or the next one whose name is free, and
// free as asideName() too. Where the file system does not take so long a name, the item's part of it is shortened.
[[nodiscard]] Result<NativeString> freeTemporaryName(const HeldFolder& folder, NativeView item, std::uint64_t ticks);

}  // namespace kelvane
