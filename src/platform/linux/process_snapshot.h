// Gathers what a minidump tells, from outside the process.
#pragma once

#include <optional>

#include "base/result.h"
#include "platform/linux/crash_message.h"
#include "platform/linux/minidump_content.h"

namespace kelvane::linux_os {

// `fault` is what the faulting thread sent, if that is the reason. The process stands still until the caller ends,
// which has to be a process of its own for this one task.
[[nodiscard]] Result<DumpedProcess> snapshotOf(pid_t process, const std::optional<CrashMessage>& fault);

}  // namespace kelvane::linux_os
