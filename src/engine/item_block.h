// The item block of a results file: the rows' paths and facts as an array of ID lists.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "base/result.h"
#include "engine/stored_item.h"
#include "platform/shell_item.h"

namespace kelvane {

inline constexpr std::size_t smallestItemBlock = 101;
inline constexpr std::size_t largestItemBlock = 67'108'863;

// Every row is put together with the common folder, so that a long name and many rows would take any time and memory:
// such rows are kept whole.
[[nodiscard]] constexpr bool fitsCommonFolder(std::size_t bytes, std::size_t rows)
{
    return bytes <= 32'767 && bytes * rows <= std::size_t{1} << 30;
}

struct StoredRow {
    Ref<const ShellItem> file;
    std::uint32_t group = 0;
    bool approximate = false;
};

// The block for these rows, in their order; there is one at least. `notSupported`, with a message for the person, when
// it would be too long, or when a name or a file cannot be put into it.
[[nodiscard]] Result<std::vector<std::byte>> buildItemBlock(std::span<const StoredRow> rows);

// Where a row's file is and what the scan saw of it.
struct StoredPlace {
    std::string path;  // behind the folder of all rows, separated natively; of an entry: the archive's
    StoredItem item;   // of that file or archive; its name is the last piece of the path
    bool inArchive = false;
    std::string inside;  // the entry's path in the archive, "/" between its names
    StoredItem entry;

    [[nodiscard]] bool approximate() const { return (inArchive ? entry : item).has(stored_flag::approximate); }
};

// A block that was checked as a whole: every length, every offset, every name. Owns the bytes.
class ItemBlock {
public:
    // `invalid`, and what is wrong with it, for anything that buildItemBlock() would not have made.
    [[nodiscard]] static Result<ItemBlock> check(std::vector<std::byte> bytes);

    [[nodiscard]] std::uint32_t rows() const { return rows_; }
    // The folder that all rows lie in, "" when there is none: then the paths of the rows are absolute.
    [[nodiscard]] const std::string& folder() const { return folder_; }
    [[nodiscard]] StoredPlace row(std::uint32_t index) const;
    [[nodiscard]] const std::vector<std::byte>& bytes() const { return bytes_; }

private:
    ItemBlock() = default;
    [[nodiscard]] std::uint32_t offset(std::size_t index) const;
    [[nodiscard]] StoredPlace placeAt(std::size_t at) const;
    [[nodiscard]] Status checkLists();

    std::vector<std::byte> bytes_;
    std::uint32_t rows_ = 0;
    std::string folder_;
};

}  // namespace kelvane
