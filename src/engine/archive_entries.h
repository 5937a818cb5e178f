// Entries of one archive, found by their paths.
#pragma once

#include <map>
#include <string>
#include <unordered_map>
#include <utility>

#include "base/cancel.h"
#include "platform/shell_namespace.h"

namespace kelvane {

// Lists a folder of the archive when something in it is first asked for. Used by one thread.
class ArchiveEntries {
public:
    // The archive as a folder (Place::archive).
    ArchiveEntries(Ref<const ShellItem> archive, ShellNamespace& shell, const CancelFlag& cancel)
        : archive_(std::move(archive)), shell_(shell), cancel_(cancel)
    {
    }

    // "/" between the names. Null when there is none of this kind; damage behind what was listed does no harm.
    [[nodiscard]] Ref<const ShellItem> find(const std::string& path, FileKind kind);

private:
    using Children = std::map<std::pair<NativeString, FileKind>, Ref<const ShellItem>>;

    [[nodiscard]] const Children& childrenOf(const Ref<const ShellItem>& folder);

    Ref<const ShellItem> archive_;
    ShellNamespace& shell_;
    const CancelFlag& cancel_;
    std::unordered_map<const ShellItem*, Children> folders_;  // the parents' lists, or archive_, hold the items
};

}  // namespace kelvane
