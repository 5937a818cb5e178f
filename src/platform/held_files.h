// Port: files and folders held open while names around them change, for work that may destroy data.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "base/result.h"
#include "platform/file_info.h"

namespace kelvane {

// What a file has besides its contents and name: what is lost when another file takes its place, and what makes a copy
// the same file again. Names of attributes are the system's own ("user.note", "system.posix_acl_access"); they are
// sorted. Times are in nanoseconds since 1970. On Windows `permissions` holds the attribute bits and the owner is 0.
struct FileMetadata {
    std::uint32_t owner = 0;
    std::uint32_t group = 0;
    std::uint32_t permissions = 0;
    std::int64_t modified = 0;
    std::int64_t accessed = 0;
    std::vector<std::pair<std::string, std::vector<std::byte>>> attributes;
    friend bool operator==(const FileMetadata&, const FileMetadata&) = default;
};

// One open regular file; what it says is of the handle and not of any path. Closed by its destructor. Other programs
// may rename and delete it meanwhile. One thread at a time.
class HeldFile {
public:
    virtual ~HeldFile() = default;

    [[nodiscard]] virtual Result<FileDetails> details() const = 0;
    // Fewer bytes than asked for mean the end.
    [[nodiscard]] virtual Result<std::size_t> readAt(std::uint64_t offset, std::span<std::byte> buffer) = 0;
    [[nodiscard]] virtual Result<FileMetadata> metadata() const = 0;
    // Of the bytes, those that other files share on the disk: 0 where the file system has no such thing.
    [[nodiscard]] virtual Result<std::uint64_t> sharedBytes() const = 0;
    // Whether another program has it open for writing, as far as the system tells: what such a program writes later
    // would go to a file without a name.
    [[nodiscard]] virtual bool isBeingWritten() const = 0;
    // Makes this file's bytes share the blocks of `source`. The file system compares the bytes itself: `changed` when
    // they differ, `notSupported` where it cannot share (also across volumes). Contents and metadata stay as they are;
    // after an error some of the blocks may be shared already.
    [[nodiscard]] virtual Status shareBlocks(HeldFile& source) = 0;
};

// A file that is being made, under a name that was free. Only its owner may read it.
class NewFile {
public:
    virtual ~NewFile() = default;
    [[nodiscard]] virtual Status write(std::span<const std::byte> bytes) = 0;
    // As far as this process may; what could not be given fails, and the rest is in place nevertheless.
    [[nodiscard]] virtual Status setMetadata(const FileMetadata& metadata) = 0;
    // Returns when the device has it.
    [[nodiscard]] virtual Status flush() = 0;
    [[nodiscard]] virtual Result<FileDetails> details() const = 0;
};

// An open folder; names are those directly in it, single components. What happens to the path above it meanwhile leads
// nowhere else. One thread at a time.
class HeldFolder {
public:
    virtual ~HeldFolder() = default;

    [[nodiscard]] virtual const std::filesystem::path& path() const = 0;  // as it was asked for
    // As itself, links not followed; notFound for a free name.
    [[nodiscard]] virtual Result<FileDetails> look(NativeView name) const = 0;
    // A regular file only (`wrongType`), links not followed.
    [[nodiscard]] virtual Result<std::unique_ptr<HeldFile>> open(NativeView name) = 0;
    // `exists` when the name is taken.
    [[nodiscard]] virtual Result<std::unique_ptr<NewFile>> create(NativeView name) = 0;
    // A second name of the open file, here; `exists` when it is taken. systemCode tells of a file that has as many
    // names as it can (isTooManyLinks).
    [[nodiscard]] virtual Status hardLink(HeldFile& file, NativeView name) = 0;
    // The target is stored as it is written; `exists` when the name is taken.
    [[nodiscard]] virtual Status symbolicLink(const std::filesystem::path& target, NativeView name) = 0;
    [[nodiscard]] virtual Result<std::filesystem::path> readLink(NativeView name) const = 0;
    // Two names that both exist lead to one another's files afterwards, in one step; `notSupported` where the file
    // system cannot.
    [[nodiscard]] virtual Status exchange(NativeView a, NativeView b) = 0;
    // In one step, also when `to` exists: it is the old file or the new one at every instant. Nothing happens when both
    // are names of one file already.
    [[nodiscard]] virtual Status replace(NativeView from, NativeView to) = 0;
    // `exists` when `to` is taken.
    [[nodiscard]] virtual Status rename(NativeView from, NativeView to) = 0;
    // A file or a link, also a read-only one; never a folder.
    [[nodiscard]] virtual Status remove(NativeView name) = 0;
    // Returns when the device has the names.
    [[nodiscard]] virtual Status flush() = 0;
    // Returns when the device has all that was changed on the folder's volume, by whomever: for the end of long work,
    // where flushing folder by folder would wait for the device each time.
    [[nodiscard]] virtual Status flushVolume() = 0;
};

// Thread-safe.
class HeldFiles {
public:
    virtual ~HeldFiles() = default;
    // An absolute path of any length; links on the way are followed.
    [[nodiscard]] virtual Result<std::unique_ptr<HeldFolder>> openFolder(const std::filesystem::path& folder) = 0;
    // Whether an error of hardLink() means that the file has as many names as its file system allows.
    [[nodiscard]] virtual bool isTooManyLinks(const Error& error) const = 0;
};

}  // namespace kelvane
