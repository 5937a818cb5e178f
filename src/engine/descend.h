// Which folders a scan enters.
#pragma once

#include <cstdint>
#include <unordered_map>
#include <unordered_set>

#include "engine/criteria.h"
#include "platform/path_rules.h"
#include "platform/shell_namespace.h"

namespace kelvane {

// Whether links to folders lead the walk anywhere.
[[nodiscard]] bool followsLinks(const ScanCriteria& criteria) noexcept;

// Decides for every folder met on the way, and remembers the ones entered. What is handed over at construction must
// outlive it. Used by one thread at a time.
class DescendTest {
public:
    DescendTest(const ScanCriteria& criteria, const PathRules& paths, ShellNamespace& shell);

    // For a folder, or an archive seen as one, that has a parent. A folder is entered once a scan: by whatever name it
    // comes again (a followed link, a bind mount, a second name of an archive), the answer is no.
    [[nodiscard]] bool enters(const ShellItem& folder);

    // For a root, which only has to be new.
    [[nodiscard]] bool entersRoot(const ShellItem& root) { return isNew(root); }

    // Whether the item lies on a file system that the kernel makes up: what it shows are not files that anyone stored.
    [[nodiscard]] bool isPseudo(const ShellItem& item);

private:
    [[nodiscard]] bool mayEnterPlain(const ShellItem& folder) const;
    [[nodiscard]] bool mayEnterVirtual(const ShellItem& folder) const;
    [[nodiscard]] bool mayEnterVolume(const ShellItem& folder);
    [[nodiscard]] bool isExcludedVolume(std::uint64_t volume) const;
    [[nodiscard]] bool isNew(const ShellItem& folder);

    struct IdentityHash {
        std::size_t operator()(FileIdentity identity) const noexcept;
    };

    const ScanCriteria& criteria_;
    const PathRules& paths_;
    ShellNamespace& shell_;
    bool followLinks_;
    bool enterVirtual_;
    std::unordered_map<std::uint64_t, bool> pseudoVolumes_;
    std::unordered_set<FileIdentity, IdentityHash> entered_;
};

}  // namespace kelvane
