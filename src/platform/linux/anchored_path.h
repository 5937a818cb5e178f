// Paths of any length for system calls that take at most PATH_MAX bytes.
#pragma once

#include <filesystem>

#include "base/result.h"
#include "platform/linux/file_handle.h"

namespace kelvane::linux_os {

// A path as the pair that the *at() calls take: an open folder and the path from there. A path that is short enough
// costs nothing; a longer one is opened piece by piece up to where the rest fits. The path must outlive the object.
class AnchoredPath {
public:
    [[nodiscard]] static Result<AnchoredPath> make(const std::filesystem::path& path);

    [[nodiscard]] int folder() const;
    [[nodiscard]] const char* rest() const { return rest_; }
    // For calls without an *at() form; names the same file through the process's table of open files.
    [[nodiscard]] std::filesystem::path standIn() const;

private:
    AnchoredPath(FileHandle folder, const char* rest) : folder_(std::move(folder)), rest_(rest) {}

    FileHandle folder_;
    const char* rest_;
};

}  // namespace kelvane::linux_os
