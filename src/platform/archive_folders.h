// Port: archive files (zip, 7z, tar and friends) seen as read-only folders.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string_view>

#include "base/result.h"
#include "platform/file_system.h"

namespace kelvane {

struct ArchiveEntry {
    std::string_view path;  // inside the archive, "/" between components, no leading or trailing "/"; as stored
    FileKind kind = FileKind::regular;  // regular or folder; links and devices are not given
    FileSize size;
    FileTime modified;
    std::uint64_t ordinal = 0;  // position in the archive, from 0: the key for opening
};

// Thread-safe. An archive is trusted in nothing: entries that climb out of it ("..", absolute names) or nest deeper
// than 100 folders are left out, and a damaged one ends the listing with an error after the entries before the damage.
class ArchiveFolders {
public:
    virtual ~ArchiveFolders() = default;

    // By the file's name alone: whether it is worth looking into.
    [[nodiscard]] virtual bool looksLikeArchive(NativeView fileName) const = 0;

    [[nodiscard]] virtual Status list(const std::filesystem::path& archive,
                                      const std::function<bool(const ArchiveEntry&)>& sink) = 0;

    // A forward stream of one entry's contents.
    [[nodiscard]] virtual Result<std::unique_ptr<ContentReader>> open(const std::filesystem::path& archive,
                                                                      std::uint64_t ordinal) = 0;
};

}  // namespace kelvane
