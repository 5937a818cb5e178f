// Rows into an item block.
#include <algorithm>
#include <optional>
#include <utility>

#include "base/filled_text.h"
#include "engine/item_block.h"
#include "engine/stored_paths.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

const ShellItem& placeOf(const ShellItem& file)
{
    const ShellItem* archive = file.enclosingArchive();
    return archive ? *archive : file;
}

std::string pathOf(const ShellItem& file)
{
    return bytesFromNative(placeOf(file).fullName());
}

std::string pathInside(const ShellItem& entry)
{
    std::string path(nameBytes(entry.name()));
    for (const ShellItem* above = entry.parent(); above && !above->inFileSystem(); above = above->parent())
        path = std::string(nameBytes(above->name())) + '/' + path;
    return path;
}

// The folder that all rows lie in, with the separator at its end.
std::string folderOf(std::span<const StoredRow> rows)
{
    std::string folder;
    const ShellItem* lastParent = nullptr;
    for (const StoredRow& row : rows) {
        const ShellItem& file = placeOf(*row.file);
        const bool known = file.parent() && file.parent() == lastParent;
        lastParent = file.parent();
        if (known)
            continue;
        const std::string path = bytesFromNative(file.fullName());
        const std::string_view own = folderPart(path);
        folder = &row == rows.data() ? own : commonFolder(folder, own);
        if (folder.empty())
            break;
    }
    return fitsCommonFolder(folder.size(), rows.size()) ? folder : std::string();
}

std::optional<StoredKind> kindOf(const ShellItem& item)
{
    const FileKind kind = item.info().kind;
    if (item.place() == ShellItem::Place::archive)
        return StoredKind::archive;
    if (kind == FileKind::other)
        return std::nullopt;
    if (kind == FileKind::link)
        return StoredKind::link;
    if (item.inFileSystem())
        return kind == FileKind::folder ? StoredKind::folder : StoredKind::file;
    return kind == FileKind::folder ? StoredKind::entryFolder : StoredKind::entry;
}

class BlockBuilder {
public:
    explicit BlockBuilder(std::span<const StoredRow> rows) : rows_(rows), folder_(folderOf(rows)) {}

    Result<std::vector<std::byte>> run()
    {
        addFolder();
        for (const StoredRow& row : rows_) {
            if (!add(row))
                return Error{ErrorKind::notSupported, 0,
                             filledText(TextId::resultNotStorable, {displayText(pathOf(*row.file))})};
            if (size() > largestItemBlock)
                return Error{ErrorKind::notSupported, 0,
                             filledText(TextId::resultsTooLarge,
                                        {std::to_string(rows_.size()), std::to_string(largestItemBlock)})};
        }
        return finished();
    }

private:
    [[nodiscard]] std::size_t headSize() const { return 4 * rows_.size() + 8; }
    [[nodiscard]] std::size_t size() const { return headSize() + lists_.size(); }

    void begin() { offsets_.push_back(static_cast<std::uint32_t>(size())); }

    void addFolder()
    {
        begin();
        if (!folder_.empty()) {
            const std::string_view name = withoutEndSeparator(folder_);
            StoredItem item{StoredKind::folder, 0, {}, {}};
            item.info.attributes = attribute::directory;
            item.flags = detourEnd(name) > 0 ? stored_flag::root : 0;
            folderFits_ = writePath(lists_, name, item, StoredKind::folder);
        }
        endItems(lists_);
    }

    bool add(const StoredRow& row)
    {
        begin();
        const ShellItem& placed = placeOf(*row.file);
        const bool isEntry = !row.file->inFileSystem();
        const std::string path = bytesFromNative(placed.fullName());
        const std::string_view relative = std::string_view(path).substr(folder_.size());
        bool fits = folderFits_ && write(placed, relative, StoredKind::folder, row.approximate && !isEntry);
        if (isEntry)
            fits = fits && write(*row.file, pathInside(*row.file), StoredKind::entryFolder, row.approximate);
        endItems(lists_);
        return fits;
    }

    bool write(const ShellItem& item, std::string_view path, StoredKind between, bool approximate)
    {
        const auto kind = kindOf(item);
        if (!kind || path.empty())
            return false;
        StoredItem stored{*kind, 0, item.info(), {}};
        stored.flags = approximate ? stored_flag::approximate : 0;
        if (!item.parent())
            stored.flags |= stored_flag::root;
        return writePath(lists_, path, stored, between);
    }

    Result<std::vector<std::byte>> finished() const
    {
        ByteWriter block;
        block.number(static_cast<std::uint32_t>(rows_.size()));
        for (const std::uint32_t offset : offsets_)
            block.number(offset);
        block.bytes(lists_.written());
        return block.take();
    }

    std::span<const StoredRow> rows_;
    std::string folder_;
    ByteWriter lists_;
    std::vector<std::uint32_t> offsets_;
    bool folderFits_ = true;
};

}  // namespace

Result<std::vector<std::byte>> buildItemBlock(std::span<const StoredRow> rows)
{
    return BlockBuilder(rows).run();
}

}  // namespace kelvane
