// Writing that takes no half measures.
#pragma once

#include <cerrno>
#include <cstddef>
#include <span>
#include <unistd.h>

#include "base/result.h"
#include "platform/linux/file_handle.h"
#include "platform/linux/os_error.h"

namespace kelvane::linux_os {

// The kernel may take less than it is given.
[[nodiscard]] inline Status writeAll(int file, std::span<const std::byte> bytes)
{
    while (!bytes.empty()) {
        const ssize_t count = uninterrupted([&] { return ::write(file, bytes.data(), bytes.size()); });
        if (count < 0)
            return osError(errno);
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
    return {};
}

}  // namespace kelvane::linux_os
