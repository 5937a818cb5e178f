// The list of scan roots, cleaned so that nothing is walked twice.
#pragma once

#include <string>
#include <vector>

#include "platform/path_rules.h"
#include "platform/shell_namespace.h"

namespace kelvane {

enum class RootProblem { notFound, notReadable, isProtected, insideOther, containerRoot };

struct DroppedRoot {
    std::string root;
    RootProblem problem = RootProblem::notFound;
    std::string detail;  // the system's text, or the root that covers this one
};

struct RootList {
    std::vector<std::string> roots;    // in walking order
    std::vector<DroppedRoot> dropped;  // in the order given; insideOther is no fault
    std::string joined;                // the roots as PathRules::joinRoots writes them
};

struct RootListInput {
    std::string list;  // as PathRules::joinRoots writes it
    bool protect = true;
    bool subfolders = true;
    bool fromContainer = false;  // one of the roots was expanded from a container: the computer's root is dropped
};

// Never fails as a whole: a root that cannot be used is dropped and named.
[[nodiscard]] RootList normaliseRoots(const RootListInput& input, const PathRules& rules, ShellNamespace& shell);

}  // namespace kelvane
