#include "engine/stored_item.h"

#include <algorithm>

#include "engine/stored_paths.h"

namespace kelvane {
namespace {

// Some 14,000 years each way: what is told of a time can be computed with, and no file is that old.
constexpr std::int64_t mostTicks = std::int64_t{1} << 62;
constexpr std::uint64_t mostBytes = INT64_MAX;

FileKind fileKindOf(StoredKind kind)
{
    switch (kind) {
    case StoredKind::folder:
    case StoredKind::entryFolder:
        return FileKind::folder;
    case StoredKind::link:
        return FileKind::link;
    default:
        return FileKind::regular;
    }
}

// As much of the path as one item holds, cut at a separator; 0 when its first name is too long.
std::size_t pieceLength(std::string_view path)
{
    if (path.size() <= longestItemName)
        return path.size();
    std::size_t length = longestItemName;
    while (length > 0 && !separates(path[length]))
        --length;
    return length;
}

StoredItem piece(StoredKind kind, std::string_view name)
{
    StoredItem item{kind, 0, {}, name};
    item.info.attributes = attribute::directory;
    item.flags = detourEnd(name) > 0 ? stored_flag::root : 0;
    return item;
}

// False when a name is too long. Leaves what fits in one item.
bool writePieces(ByteWriter& list, std::string_view& path, StoredKind kind, std::size_t atLeast)
{
    while (path.size() > longestItemName || atLeast > 0) {
        const std::size_t length = pieceLength(atLeast > 0 ? path.substr(0, atLeast) : path);
        if (length == 0 || length >= path.size())
            return false;
        writeItem(list, piece(kind, path.substr(0, length)));
        path.remove_prefix(length + 1);
        atLeast -= std::min(atLeast, length + 1);
    }
    return true;
}

StoredItem recordOf(std::span<const std::byte> bytes)
{
    ByteReader record(bytes);
    StoredItem item;
    item.kind = static_cast<StoredKind>(*record.number<std::uint8_t>());
    item.flags = *record.number<std::uint8_t>();
    static_cast<void>(record.number<std::uint16_t>());
    item.info.kind = fileKindOf(item.kind);
    item.info.attributes = *record.number<std::uint32_t>();
    item.info.size = {*record.number<std::uint64_t>()};
    item.info.modified = {static_cast<std::int64_t>(*record.number<std::uint64_t>())};
    item.info.identity = {*record.number<std::uint64_t>(), *record.number<std::uint64_t>()};
    return item;
}

}  // namespace

void writeItem(ByteWriter& list, const StoredItem& item)
{
    list.number(static_cast<std::uint16_t>(itemLengthSize + itemRecordSize + item.name.size()));
    list.number(static_cast<std::uint8_t>(item.kind));
    list.number(item.flags);
    list.number(std::uint16_t{0});
    list.number(item.info.attributes);
    list.number(item.info.size.bytes);
    list.number(static_cast<std::uint64_t>(std::clamp(item.info.modified.ticks, -mostTicks, mostTicks)));
    list.number(item.info.identity.volume);
    list.number(item.info.identity.index);
    list.text(item.name);
}

void endItems(ByteWriter& list)
{
    list.number(std::uint16_t{0});
}

bool writePath(ByteWriter& list, std::string_view path, StoredItem last, StoredKind between)
{
    const bool asNamed = between == StoredKind::entryFolder || last.has(stored_flag::root);
    if (!writePieces(list, path, between, asNamed ? 0 : detourEnd(path)))
        return false;
    last.name = path;
    writeItem(list, last);
    return true;
}

std::optional<StoredItem> ItemReader::fail(const char* why)
{
    damage_ = why;
    return std::nullopt;
}

std::optional<StoredItem> ItemReader::next()
{
    const auto length = reader_.number<std::uint16_t>();
    if (!length)
        return fail("has no end");
    left_ -= itemLengthSize;
    if (*length == 0)
        return std::nullopt;
    if (*length <= itemLengthSize + itemRecordSize)
        return fail("holds an item that is too short");
    const auto bytes = reader_.bytes(*length - itemLengthSize);
    if (!bytes)
        return fail("holds an item that reaches beyond the block");
    left_ -= bytes->size();
    const auto name = bytes->subspan(itemRecordSize);
    StoredItem item = recordOf(bytes->first(itemRecordSize));
    item.name = {reinterpret_cast<const char*>(name.data()), name.size()};
    if (static_cast<std::uint8_t>(item.kind) > lastStoredKind)
        return fail("holds an item of an unknown kind");
    if (item.info.size.bytes > mostBytes || item.info.modified.ticks > mostTicks ||
        item.info.modified.ticks < -mostTicks)
        return fail("holds a size or a time that no file has");
    return item;
}

}  // namespace kelvane
