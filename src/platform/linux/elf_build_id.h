// The build id of a program or library: the name that its linker gave to exactly this build.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/linux/process_reader.h"

namespace kelvane::linux_os {

// Of the file whose first byte lies at `base` in the memory of the process. Empty when it has none or is no 64-bit ELF
// file.
[[nodiscard]] std::vector<std::byte> elfBuildId(const ProcessReader& reader, std::uint64_t base);

}  // namespace kelvane::linux_os
