// A file system of its own in an image file, for tests of what file systems differ in.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "support/temp_tree.h"

namespace kelvane::testing {

// Mounted for this process alone and gone with it, however it ends. Needs the rights of root.
class LoopVolume {
public:
    // A type that the system has a "mkfs" for, or "tmpfs". reason() tells why there is none.
    LoopVolume(const std::string& type, unsigned megabytes);
    ~LoopVolume();
    LoopVolume(const LoopVolume&) = delete;
    LoopVolume& operator=(const LoopVolume&) = delete;

    [[nodiscard]] bool isMounted() const { return reason_.empty(); }
    [[nodiscard]] const std::string& reason() const { return reason_; }
    [[nodiscard]] std::filesystem::path path() const { return tree_.path("mounted"); }
    [[nodiscard]] bool makeReadOnly(bool on) const;

private:
    TempTree tree_;
    std::string reason_;
};

}  // namespace kelvane::testing
