// What a preview shows of one file, as plain values.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "base/file_time.h"
#include "props/cached_bitmap.h"

namespace kelvane {

// How a file stands to what the scan saw.
enum class FileState { asSeen, changed, gone, unreadable };

struct ListedEntry {
    std::u16string name;  // below the archive or folder, "/" between its parts
    bool folder = false;
    std::uint64_t bytes = 0;
    FileTime modified;
};

struct PreviewContent {
    enum class Kind {
        nothing,  // see note
        text,
        picture,
        entries,  // of an archive or a folder
        bytes,
    };

    Kind kind = Kind::nothing;
    FileState state = FileState::asSeen;
    std::u16string note;  // for a person: why there is nothing, or nothing better; may be empty
    std::u16string text;
    std::string charset;  // of a text that the file is itself; empty for one that was taken out of a document
    bool cut = false;     // there is more than is shown
    bool broken = false;  // lines of the text are shown in pieces
    Ref<CachedBitmap> picture;
    std::vector<ListedEntry> entries;
    std::vector<std::byte> head;  // the first bytes, of Kind::bytes
    std::uint64_t bytes = 0;      // size of the file, now
};

// Bounds of a preview.
namespace preview_limit {
inline constexpr std::size_t textBytes = 256 * 1024;
inline constexpr std::size_t textCharacters = 131'072;
inline constexpr std::size_t lineCharacters = 500;  // one of 100,000 keeps a view busy for many seconds
inline constexpr std::size_t lines = 10'000;
inline constexpr std::size_t valueCharacters = 2'000;  // of a fact
inline constexpr std::size_t entries = 2'000;
inline constexpr std::size_t depth = 32;               // of folders that are listed
inline constexpr std::uint64_t packedBytes = 1 << 20;  // of an entry of an archive, in a look at its bytes
inline constexpr std::size_t chunk = 16 * 1024;        // that a look at bytes reads at once
}  // namespace preview_limit

}  // namespace kelvane
