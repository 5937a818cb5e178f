// The physical files of one group, to tell further names of them.
#pragma once

#include <string>
#include <unordered_set>
#include <vector>

#include "platform/path_rules.h"
#include "platform/shell_item.h"

namespace kelvane {

struct FileIdentityHash {
    [[nodiscard]] std::size_t operator()(FileIdentity identity) const noexcept
    {
        return static_cast<std::size_t>((identity.index ^ identity.volume << 48) * 0x9E3779B97F4A7C15u >> 7);
    }
};

// Every member is looked up by its identity (by its path where the file system has no identities), so that a look costs
// the same in a group of a million, and no further name of a member is ever taken for a copy. Looking at a random
// sample of the members instead would let some through.
class KnownFiles {
public:
    explicit KnownFiles(const PathRules& rules) : rules_(rules) {}

    // False when the group has the file already.
    [[nodiscard]] bool insert(const ShellItem& item);
    void clear();

private:
    static constexpr std::size_t fewFiles = 16;
    [[nodiscard]] bool insertIdentity(FileIdentity identity);

    const PathRules& rules_;
    std::vector<FileIdentity> few_;  // most groups are small: looked through one by one, without allocations
    std::unordered_set<FileIdentity, FileIdentityHash> many_;
    std::unordered_set<std::string> paths_;
};

}  // namespace kelvane
