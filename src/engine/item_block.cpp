#include "engine/item_block.h"

#include <utility>

#include "engine/stored_paths.h"

namespace kelvane {
namespace {

constexpr std::size_t countSize = 4;

std::string listName(std::size_t index)
{
    return index == 0 ? "the ID list of the common folder" : "the ID list of row " + std::to_string(index);
}

bool liesInArchive(StoredKind kind)
{
    return kind == StoredKind::entry || kind == StoredKind::entryFolder;
}

bool canGoOn(StoredKind kind)
{
    return kind == StoredKind::folder || kind == StoredKind::entryFolder || kind == StoredKind::archive;
}

// Whether an item of this kind may stand behind the other one.
bool follows(StoredKind before, StoredKind kind)
{
    const bool inside = before == StoredKind::archive || liesInArchive(before);
    return canGoOn(before) && inside == liesInArchive(kind);
}

bool hasSoundName(const StoredItem& item, bool absolute)
{
    const bool asNamed = item.has(stored_flag::root) && !liesInArchive(item.kind);
    const Detours detours = asNamed ? Detours::allowed : Detours::refused;
    if (liesInArchive(item.kind))
        return isSoundPath(item.name, detours, '/');
    return absolute ? isSoundAbsolutePath(item.name, detours) : isSoundPath(item.name, detours);
}

// Reads one list to its end. The first item's name is absolute or relative, as it has to be.
class ListCheck {
public:
    ListCheck(std::span<const std::byte> bytes, bool absolute) : reader_(bytes), absolute_(absolute) {}

    const char* damage()
    {
        while (const auto item = reader_.next()) {
            if (last_ ? !follows(*last_, item->kind) : liesInArchive(item->kind))
                return "holds items that do not follow one another";
            if (!hasSoundName(*item, absolute_ && !last_))
                return "holds a name that no file has";
            onlyFolders_ = onlyFolders_ && item->kind == StoredKind::folder;
            last_ = item->kind;
        }
        return reader_.damage();
    }
    [[nodiscard]] bool empty() const { return !last_; }
    [[nodiscard]] bool onlyFolders() const { return onlyFolders_; }
    [[nodiscard]] std::size_t length() const { return reader_.consumed(); }

private:
    ItemReader reader_;
    bool absolute_;
    std::optional<StoredKind> last_;
    bool onlyFolders_ = true;
};

void append(std::string& path, std::string_view name, char separator)
{
    if (!path.empty() && !separates(path.back(), separator))
        path += separator;
    path += name;
}

}  // namespace

Result<ItemBlock> ItemBlock::check(std::vector<std::byte> bytes)
{
    ItemBlock block;
    block.bytes_ = std::move(bytes);
    const auto rows = ByteReader(block.bytes_).number<std::uint32_t>();
    const std::size_t room = block.bytes_.size();
    if (!rows || room < countSize * 2 || *rows == 0 || *rows > (room - countSize * 2) / countSize)
        return invalid("an item block of " + std::to_string(room) + " bytes cannot hold " +
                       std::to_string(rows.value_or(0)) + " rows");
    block.rows_ = *rows;
    if (const Status status = block.checkLists(); !status)
        return status.error();
    return block;
}

Status ItemBlock::checkLists()
{
    std::size_t at = countSize * (std::size_t{rows_} + 2);
    for (std::size_t list = 0; list <= rows_; ++list) {
        if (offset(list) != at)
            return invalid(listName(list) + " begins at byte " + std::to_string(at) + " of the block and not at " +
                           std::to_string(offset(list)));
        ListCheck check{std::span(bytes_).subspan(at), list == 0 || folder_.empty()};
        if (const char* damage = check.damage())
            return invalid(listName(list) + " " + damage);
        if (list == 0 ? !check.onlyFolders() : check.empty())
            return invalid(listName(list) + " names no " + (list == 0 ? "folder" : "file"));
        if (list == 0)
            folder_ = placeAt(at).path;
        if (!fitsCommonFolder(folder_.size(), rows_))
            return invalid("the common folder has a name of " + std::to_string(folder_.size()) + " bytes");
        at += check.length();
    }
    return at == bytes_.size() ? Status() : invalid("the item block goes on behind its last row");
}

std::uint32_t ItemBlock::offset(std::size_t index) const
{
    return *ByteReader(std::span(bytes_).subspan(countSize * (index + 1))).number<std::uint32_t>();
}

StoredPlace ItemBlock::row(std::uint32_t index) const
{
    return placeAt(offset(std::size_t{index} + 1));
}

StoredPlace ItemBlock::placeAt(std::size_t at) const
{
    StoredPlace place;
    ItemReader reader{std::span(bytes_).subspan(at)};
    while (const auto item = reader.next()) {
        place.inArchive = liesInArchive(item->kind);
        (place.inArchive ? place.entry : place.item) = *item;
        if (place.inArchive)
            append(place.inside, item->name, '/');
        else
            append(place.path, item->name, nativeSeparator);
    }
    return place;
}

}  // namespace kelvane
