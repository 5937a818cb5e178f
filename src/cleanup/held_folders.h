// Folders that are held open while a batch lasts; each is opened once.
#pragma once

#include <filesystem>
#include <unordered_map>

#include "cleanup/guards.h"

namespace kelvane {

class HeldFolders {
public:
    explicit HeldFolders(HeldFiles& held) : held_(held) {}

    [[nodiscard]] Result<SharedFolder> open(const std::filesystem::path& folder);
    void release() { open_.clear(); }

private:
    HeldFiles& held_;
    std::unordered_map<NativeString, SharedFolder> open_;
};

}  // namespace kelvane
