// The last archives that were listed, kept since a walk asks for the folders of an archive one after the other.
#pragma once

#include <cstdint>
#include <filesystem>
#include <list>
#include <memory>
#include <mutex>

#include "platform/archive_listing.h"
#include "platform/file_system.h"

namespace kelvane {

// Thread-safe; an archive that several threads ask for at once is read once. The ports must outlive it.
class ArchiveListings {
public:
    ArchiveListings(FileSystem& files, ArchiveFolders& archives) : files_(files), archives_(archives) {}

    // Read anew when the file has changed since. Fails when the archive is not there; damage inside it is part of the
    // listing.
    [[nodiscard]] Result<std::shared_ptr<const ArchiveListing>> of(const std::filesystem::path& archive);

private:
    struct Kept {
        std::filesystem::path path;
        FileIdentity identity;
        FileSize size;
        FileTime modified;
        std::mutex reading;
        std::shared_ptr<const ArchiveListing> listing;  // null until read
        std::size_t weight = 0;                         // of the listing; guarded by mutex_
    };

    std::shared_ptr<Kept> keep(const std::filesystem::path& archive, const FileInfo& info);
    void weigh(Kept& kept);
    void dropOldest();

    // Walks go through archives one by one on a few threads. A huge listing is kept only as the last one used.
    static constexpr std::size_t mostKept = 8;
    static constexpr std::size_t mostWeight = ArchiveListing::mostEntries / 4;

    FileSystem& files_;
    ArchiveFolders& archives_;
    std::mutex mutex_;
    std::list<std::shared_ptr<Kept>> kept_;  // last used first
};

}  // namespace kelvane
