#include "engine/row_resolver.h"

#include <map>
#include <optional>
#include <string>
#include <utility>

#include "engine/archive_entries.h"
#include "engine/folder_chain.h"
#include "engine/stored_paths.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

using Place = ShellItem::Place;

class RowResolver {
public:
    RowResolver(const ItemBlock& items, ShellNamespace& shell, const CancelFlag& cancel, WorkCount* count)
        : items_(items),
          shell_(shell),
          cancel_(cancel),
          count_(count),
          prefix_(items.folder()),
          folders_(shell.files(), nativeFromBytes(items.folder()))
    {
        if (!prefix_.empty() && !separates(prefix_.back()))
            prefix_ += nativeSeparator;
    }

    Result<std::vector<ResolvedRow>> run()
    {
        rows_.resize(items_.rows());
        if (count_ != nullptr)
            count_->total = items_.rows();
        if (!prefix_.empty() && !folders_.hasTop())
            return std::move(rows_);
        for (std::uint32_t index = 0; index < items_.rows() && !cancel_.cancelled(); ++index)
            take(index);
        // Archive by archive, whatever the order of the rows, so that each is listed once.
        for (const auto& [path, entries] : archives_)
            takeEntries(path, entries);
        if (cancel_.cancelled())
            return Error{ErrorKind::cancelled, 0, {}};
        return std::move(rows_);
    }

private:
    void take(std::uint32_t index)
    {
        const StoredPlace place = items_.row(index);
        rows_[index].approximate = place.approximate();
        if (place.inArchive) {
            archives_[place.path].push_back(index);
            return;
        }
        rows_[index].file = itemAt(prefix_ + place.path, place.item);
        countRows(1);
    }

    void countRows(std::size_t rows)
    {
        if (count_ != nullptr)
            count_->done += static_cast<std::uint32_t>(rows);
    }

    // The item if what is on the disk is of its kind.
    Ref<const ShellItem> itemAt(const std::string& path, const StoredItem& stored)
    {
        const NativeString native = nativeFromBytes(path);
        const bool isRoot = stored.has(stored_flag::root);
        const std::size_t name = isRoot ? 0 : nativeFromBytes(folderPart(path)).size();
        Ref<const ShellItem> folder = name > 0 ? folders_.folderOf(native) : nullptr;
        if (!(isRoot || folder) || !isThere(native, stored))
            return nullptr;
        const Place place = stored.kind == StoredKind::archive ? Place::archive : Place::fileSystem;
        return ShellItem::make(std::move(folder), NativeView(native).substr(name), stored.info, place);
    }

    bool isThere(const NativeString& path, const StoredItem& stored)
    {
        const bool isLinkFollowed =
            stored.kind != StoredKind::link && (stored.info.attributes & attribute::reparsePoint) != 0;
        const bool isFollowed = isLinkFollowed || stored.has(stored_flag::root);
        const auto now = shell_.files().details(path, isFollowed ? Links::followed : Links::asThemselves);
        return now && now->kind == stored.info.kind;
    }

    void takeEntries(const std::string& path, const std::vector<std::uint32_t>& indexes)
    {
        if (cancel_.cancelled())
            return;
        countRows(indexes.size());
        const Ref<const ShellItem> archive = itemAt(prefix_ + path, items_.row(indexes.front()).item);
        if (!archive)
            return;
        ArchiveEntries entries(archive, shell_, cancel_);
        for (const std::uint32_t index : indexes) {
            const StoredPlace place = items_.row(index);
            if (const auto now = entries.find(place.inside, place.entry.info.kind))
                rows_[index].file = entryOf(*now, place.entry.info);
        }
    }

    // What the scan saw, at the place in the archive where the entry is now.
    static Ref<const ShellItem> entryOf(const ShellItem& now, FileInfo info)
    {
        info.identity = now.info().identity;
        return ShellItem::make(now.parent(), now.name(), info, Place::insideArchive);
    }

    const ItemBlock& items_;
    ShellNamespace& shell_;
    const CancelFlag& cancel_;
    WorkCount* count_;
    std::string prefix_;
    FolderChain folders_;
    std::vector<ResolvedRow> rows_;
    std::map<std::string, std::vector<std::uint32_t>> archives_;  // rows by the archive's path below the prefix
};

}  // namespace

Result<std::vector<ResolvedRow>> resolveRows(const ItemBlock& items, ShellNamespace& shell, const CancelFlag& cancel,
                                             WorkCount* count)
{
    return RowResolver(items, shell, cancel, count).run();
}

}  // namespace kelvane
