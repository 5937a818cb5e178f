// Port: the files and folders of the computer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <span>
#include <vector>

#include "base/result.h"
#include "platform/file_info.h"

namespace kelvane {

enum class Links { asThemselves, followed };

// How a file will be read: a hint for the system's read-ahead.
enum class ReadPattern { sequential, scattered };

// One open file or stream, read forward. Closed by its destructor. Used by one thread at a time.
class ContentReader {
public:
    virtual ~ContentReader() = default;

    // Fills the buffer from the current position; fewer bytes than asked for mean the end was reached, so a caller
    // never has to loop over short reads. 0 at the end.
    [[nodiscard]] virtual Result<std::size_t> read(std::span<std::byte> buffer) = 0;

    // Moves forward by so many bytes; moving past the end is no error (the next read gives 0).
    [[nodiscard]] virtual Status skip(std::uint64_t bytes) = 0;

    // What the open handle itself says now, not the path: to notice that a file changed while it was read.
    // notSupported for streams from archives.
    [[nodiscard]] virtual Result<FileInfo> info() const = 0;
};

// What is known of the volume that a path lies on.
struct VolumeFacts {
    std::uint64_t serial = 0;  // equals FileIdentity::volume of its files
    std::string fileSystem;    // type name, "ext4"; empty where the system does not tell (under a changed root)
    bool fixed = false;        // a built-in disk, not removable
    bool network = false;
    bool pseudo = false;         // made up by the kernel (proc, sysfs, ...): never entered
    bool fetchesOnRead = false;  // contents come from elsewhere when read: its files count as offline
    bool clones = false;         // files can share blocks, as far as the type tells: whether two do is told by trying
    std::filesystem::path mountPoint;  // where it is seen, for messages; empty where the system does not tell
};

struct DirectoryEntry {
    NativeView name;  // valid during the call only
    FileInfo info;
};

// All calls are thread-safe. Paths are absolute and may be of any length; a path is used byte for byte.
class FileSystem {
public:
    virtual ~FileSystem() = default;

    // Calls sink for every entry but "." and "..", in the system's order. Entries that vanish meanwhile are left
    // out; with Links::followed a link that leads nowhere is given as itself. Returning false from sink ends the
    // listing with success. The folder's own path may be a link to a folder; wrongType when it is no folder.
    using EntrySink = std::function<bool(const DirectoryEntry&)>;
    [[nodiscard]] virtual Status enumerate(const std::filesystem::path& folder, Links links, const EntrySink& sink) = 0;

    [[nodiscard]] virtual Result<FileDetails> details(const std::filesystem::path& path, Links links) = 0;

    // Opens a regular file only; anything else is wrongType and is not touched (a pipe would block, a device act).
    // That goes for a link too, unless links are followed: a file that was swapped for a link is then not read.
    [[nodiscard]] virtual Result<std::unique_ptr<ContentReader>>
    openForReading(const std::filesystem::path& path, ReadPattern pattern, Links links = Links::asThemselves) = 0;

    // The names of the alternate data streams (user extended attributes on Linux, without their "user." prefix).
    [[nodiscard]] virtual Result<std::vector<std::string>> streamNames(const std::filesystem::path& path) = 0;

    // The whole stream; io when it is longer than limit bytes.
    [[nodiscard]] virtual Result<std::vector<std::byte>> readStream(const std::filesystem::path& path,
                                                                    const std::string& name, std::size_t limit) = 0;

    [[nodiscard]] virtual Result<VolumeFacts> volumeFacts(const std::filesystem::path& path) = 0;

    // The display name of a file's owner.
    [[nodiscard]] virtual Result<std::u16string> ownerName(std::uint32_t ownerId) = 0;
};

}  // namespace kelvane
