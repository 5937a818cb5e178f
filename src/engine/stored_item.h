// One item of an ID list: a fixed record and a name. docs/formats/results-file.md describes every byte.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "base/byte_stream.h"
#include "platform/file_info.h"

namespace kelvane {

enum class StoredKind : std::uint8_t {
    file,
    folder,  // also a piece of a path that goes on in the next item
    link,
    archive,      // the items behind it lie inside it
    entry,        // a file in an archive
    entryFolder,  // a folder in an archive
};
inline constexpr std::uint8_t lastStoredKind = static_cast<std::uint8_t>(StoredKind::entryFolder);

namespace stored_flag {
inline constexpr std::uint8_t approximate = 1;  // the row's group was compared approximately
inline constexpr std::uint8_t root = 2;         // as the person named it: links are followed, ".." may be in it
}  // namespace stored_flag

struct StoredItem {
    StoredKind kind = StoredKind::file;
    std::uint8_t flags = 0;
    FileInfo info;          // its kind goes by the item's
    std::string_view name;  // bytes that somebody else holds

    [[nodiscard]] bool has(std::uint8_t flag) const { return (flags & flag) != 0; }
};

inline constexpr std::size_t itemLengthSize = 2;
inline constexpr std::size_t itemRecordSize = 40;
inline constexpr std::size_t longestItemName = 0xFFFF - itemLengthSize - itemRecordSize;

// The name has 1 to longestItemName bytes.
void writeItem(ByteWriter& list, const StoredItem& item);
void endItems(ByteWriter& list);

// Writes the path as one item, `last` with that name; one that is too long, or that holds ".." on its way, in pieces of
// the kind `between` first. False, with part of it written, when a single name is too long.
[[nodiscard]] bool writePath(ByteWriter& list, std::string_view path, StoredItem last, StoredKind between);

// Reads one list, item by item. The bytes may be anything, and outlive the items.
class ItemReader {
public:
    explicit ItemReader(std::span<const std::byte> bytes) : all_(bytes.size()), reader_(bytes), left_(all_) {}

    // Nothing at the end of the list, and at damage.
    [[nodiscard]] std::optional<StoredItem> next();
    // What is wrong; null for a list that ended well.
    [[nodiscard]] const char* damage() const { return damage_; }
    // How many bytes were read, the end of the list included.
    [[nodiscard]] std::size_t consumed() const { return all_ - left_; }

private:
    std::optional<StoredItem> fail(const char* why);

    std::size_t all_;
    ByteReader reader_;
    std::size_t left_;
    const char* damage_ = nullptr;
};

}  // namespace kelvane
