// Symbolic links made by the elevated helper, which polkit starts after it asked the person.
#pragma once

#include <filesystem>
#include <memory>

#include "platform/symbolic_link_service.h"

namespace kelvane {

// The two programs that it takes.
struct PolkitPrograms {
    std::filesystem::path pkexec;
    std::filesystem::path helper;  // kelvane-link-helper
};

// Links below `folder` only: the person is asked for that folder, once, when the first link is asked for. Links and
// targets must be in plain form ("/a/b": no links, "." or ".." on the way). The helper ends with the service.
[[nodiscard]] std::unique_ptr<SymbolicLinkService> makePolkitLinks(std::filesystem::path folder,
                                                                   PolkitPrograms programs);

// As installed: pkexec in the system's folder of programs, the helper beside the running program or in ../libexec/.
[[nodiscard]] PolkitPrograms installedPolkitPrograms(const std::filesystem::path& programFolder);

}  // namespace kelvane
