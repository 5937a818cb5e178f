// The folder tree of one archive, put together from its entries.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/archive_folders.h"

namespace kelvane {

// Constant once it is read, and then thread-safe. Folders that no entry names but that entries lie in are there too.
// Where several files have one path the last one counts, as it does when the archive is unpacked.
class ArchiveListing {
public:
    struct Child {
        NativeString name;
        FileInfo info;  // identity.index is the ordinal of a file, identity.volume 0; folders have no identity
    };
    using Children = std::vector<Child>;

    // Lists the archive to its end, to its first damage, or to the most entries that are kept in memory.
    [[nodiscard]] static ArchiveListing read(ArchiveFolders& archives, const std::filesystem::path& archive);

    // The direct children of a folder, "" being the top: folders, then files as they stand in the archive. Null when
    // there is no such folder.
    [[nodiscard]] const Children* children(const NativeString& folder) const;

    // One child by its name, a folder before a file; null when there is none.
    [[nodiscard]] const Child* find(const NativeString& folder, NativeView name) const;

    // Why the listing is not complete, if it is not.
    [[nodiscard]] const std::optional<Error>& fault() const { return fault_; }

    // How many entries of the archive it holds, 1 at least: a measure of the memory it takes.
    [[nodiscard]] std::size_t weight() const { return weight_; }

    static constexpr std::size_t mostEntries = 2'000'000;

private:
    void add(const ArchiveEntry& entry);
    Children& addFolder(const NativeString& path);

    std::unordered_map<NativeString, Children> folders_;
    std::optional<Error> fault_;
    std::size_t weight_ = 1;
};

}  // namespace kelvane
