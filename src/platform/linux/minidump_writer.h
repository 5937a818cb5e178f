// Puts a minidump together: the structures that Microsoft publishes (minidumpapiset.h), with the stream types and the
// build-id records that the known crash tools use for Linux.
#pragma once

#include "platform/linux/minidump_buffer.h"
#include "platform/linux/minidump_content.h"

namespace kelvane::linux_os {

[[nodiscard]] MinidumpBuffer minidumpOf(const DumpedProcess& process);

// The registers as Windows lays them out for this processor (CONTEXT, 1232 bytes).
DumpLocation putContext(MinidumpBuffer& out, const DumpedThread& thread);

}  // namespace kelvane::linux_os
