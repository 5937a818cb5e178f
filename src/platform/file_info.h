// What a file system says of one file.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "base/file_size.h"
#include "base/file_time.h"

namespace kelvane {

// Names and paths in the system's own encoding: bytes on Linux (not always UTF-8), UTF-16 on Windows.
using NativeString = std::filesystem::path::string_type;
using NativeView = std::basic_string_view<NativeString::value_type>;

enum class FileKind : std::uint8_t {
    regular,
    folder,
    link,   // a symbolic link, junction or other reparse point, seen as itself
    other,  // socket, device, pipe: never opened
};

// Attribute bits, with the values that Windows publishes for them (FILE_ATTRIBUTE_*).
namespace attribute {
inline constexpr std::uint32_t readOnly = 0x1;
inline constexpr std::uint32_t hidden = 0x2;
inline constexpr std::uint32_t system = 0x4;
inline constexpr std::uint32_t directory = 0x10;
inline constexpr std::uint32_t archive = 0x20;
inline constexpr std::uint32_t temporary = 0x100;
inline constexpr std::uint32_t sparse = 0x200;
inline constexpr std::uint32_t reparsePoint = 0x400;
inline constexpr std::uint32_t compressed = 0x800;
inline constexpr std::uint32_t offline = 0x1000;
inline constexpr std::uint32_t notContentIndexed = 0x2000;
inline constexpr std::uint32_t encrypted = 0x4000;
inline constexpr std::uint32_t cloudPlaceholder = 0x400000;  // RECALL_ON_DATA_ACCESS
}  // namespace attribute

// Which physical file a name leads to: volume serial number and file index (device and inode on Linux).
// Both 0 means that the file system has no identities, and then no two files are known to be one.
struct FileIdentity {
    std::uint64_t volume = 0;
    std::uint64_t index = 0;
    [[nodiscard]] bool known() const { return volume != 0 || index != 0; }
    friend bool operator==(FileIdentity, FileIdentity) = default;
};

// What listing a folder tells of each entry, cheaply. A link that is not followed describes itself; a link that
// is followed carries attribute::reparsePoint and the kind, size, times and identity of what it leads to.
struct FileInfo {
    FileKind kind = FileKind::other;
    std::uint32_t attributes = 0;
    FileSize size;
    FileTime modified;
    FileIdentity identity;
};

// What asking for one file tells beyond that.
struct FileDetails : FileInfo {
    FileTime created;  // unknown where the file system keeps none
    FileTime accessed;
    FileTime changed;  // of the metadata
    std::uint32_t links = 1;
    FileSize allocated;  // bytes taken on the disk
    std::uint32_t ownerId = 0;
};

}  // namespace kelvane
