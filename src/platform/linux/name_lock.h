// A name that at most one process holds at a time: a locked file.
#pragma once

#include <filesystem>

#include "base/result.h"
#include "platform/linux/file_handle.h"

namespace kelvane::linux_os {

// Held until destroyed, also by the end of the process. The file stays: removing it would let two processes lock two
// files of one name.
class NameLock {
public:
    // `changed` when another process holds it, or this one does already; `accessDenied` for somebody else's file.
    [[nodiscard]] static Result<NameLock> take(const std::filesystem::path& file);

    NameLock(NameLock&&) = default;
    ~NameLock();

private:
    explicit NameLock(FileHandle file) : file_(std::move(file)) {}

    FileHandle file_;
};

// Without taking it, not even for an instant.
[[nodiscard]] bool isLocked(const std::filesystem::path& file);

[[nodiscard]] Error heldByOthers();

}  // namespace kelvane::linux_os
