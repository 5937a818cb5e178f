// Port: symbolic links for a process whose own rights may not suffice.
#pragma once

#include <filesystem>

#include "base/result.h"

namespace kelvane {

// Asks the elevated helper, and starts it (which asks the person) when it is not running yet. The helper ends with its
// service at the latest. Thread-safe; a call waits for the person and the helper.
class SymbolicLinkService {
public:
    virtual ~SymbolicLinkService() = default;

    // Both paths are absolute. `cancelled` when the person refuses the rights, `notSupported` where the system has no
    // such helper, `invalid` for paths that cannot be asked for.
    [[nodiscard]] virtual Status make(const std::filesystem::path& link, const std::filesystem::path& target) = 0;
};

}  // namespace kelvane
