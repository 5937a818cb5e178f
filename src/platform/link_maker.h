// Port: making symbolic links with the rights that this process has.
#pragma once

#include <filesystem>

#include "base/result.h"

namespace kelvane {

class LinkMaker {
public:
    virtual ~LinkMaker() = default;

    // A link at `link` that leads to `target`, which is stored as it is written. Something that is at `link` already
    // stays untouched (`exists`). A system that tells links to folders from others makes one when `toFolder` is set.
    // Thread-safe.
    [[nodiscard]] virtual Status makeSymbolicLink(const std::filesystem::path& link,
                                                  const std::filesystem::path& target, bool toFolder) = 0;
};

}  // namespace kelvane
