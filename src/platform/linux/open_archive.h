// One archive file, read forward entry by entry.
#pragma once

#include <archive.h>
#include <archive_entry.h>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>

#include "base/result.h"
#include "platform/archive_folders.h"
#include "platform/linux/file_handle.h"

namespace kelvane::linux_os {

// Which state of which file an archive was opened in.
struct ArchiveStamp {
    FileIdentity identity;
    FileSize size;
    FileTime modified;
    friend bool operator==(const ArchiveStamp&, const ArchiveStamp&) = default;
};

// Used by one thread at a time. Only formats and filters that work inside this process are read: none that starts
// another program, and none whose entries name files outside the archive.
class OpenArchive {
public:
    [[nodiscard]] static Result<std::unique_ptr<OpenArchive>> open(const std::filesystem::path& path);
    OpenArchive(const OpenArchive&) = delete;
    OpenArchive& operator=(const OpenArchive&) = delete;

    [[nodiscard]] const ArchiveStamp& stamp() const { return stamp_; }

    // Moves to the next entry; false at the end. Damage is an error, and then nothing more can be read.
    [[nodiscard]] Result<bool> next();

    // Of the entry that next() moved to.
    [[nodiscard]] std::uint64_t ordinal() const { return nextOrdinal_ - 1; }
    [[nodiscard]] std::uint64_t nextOrdinal() const { return nextOrdinal_; }
    // The bytes of its path as stored, empty when they cannot be told; valid until the next call.
    [[nodiscard]] std::string_view storedPath() const;
    // Regular or folder; nothing for links, devices and the like.
    [[nodiscard]] std::optional<FileKind> kind() const;
    [[nodiscard]] FileTime modified() const;
    [[nodiscard]] bool encrypted() const;
    // Reads the entry through where only its contents tell.
    [[nodiscard]] Result<FileSize> size();

    // Fills the buffer as ContentReader::read does.
    [[nodiscard]] Result<std::size_t> read(std::span<std::byte> buffer);

private:
    struct Free {
        void operator()(archive* handle) const { archive_read_free(handle); }
    };

    OpenArchive(FileHandle file, ArchiveStamp stamp);
    [[nodiscard]] Error lastError() const;

    FileHandle file_;  // outlives the handle that reads from it
    ArchiveStamp stamp_;
    std::unique_ptr<archive, Free> handle_;
    archive_entry* entry_ = nullptr;  // owned by the handle
    std::uint64_t nextOrdinal_ = 0;
    std::optional<Error> damage_;
};

}  // namespace kelvane::linux_os
