#include "platform/archive_listing.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "platform/native_text.h"

namespace kelvane {
namespace {

constexpr auto slash = NativeString::value_type('/');

// "" for a path without a folder.
NativeString folderOf(const NativeString& path)
{
    const auto last = path.rfind(slash);
    return last == NativeString::npos ? NativeString() : path.substr(0, last);
}

NativeString nameOf(const NativeString& path)
{
    return path.substr(path.rfind(slash) + 1);
}

FileInfo folderInfo()
{
    FileInfo info;
    info.kind = FileKind::folder;
    info.attributes = attribute::directory;
    return info;
}

FileInfo fileInfo(const ArchiveEntry& entry)
{
    FileInfo info;
    info.kind = FileKind::regular;
    info.attributes = attribute::readOnly;
    info.size = entry.size;
    info.modified = entry.modified;
    info.identity = {0, entry.ordinal};
    return info;
}

// Of several files with one name the last one in the archive stays.
void settle(ArchiveListing::Children& children)
{
    const auto sameName = [](const auto& a, const auto& b) { return a.info.kind == b.info.kind && a.name == b.name; };
    std::sort(children.begin(), children.end(), [](const auto& a, const auto& b) {
        return std::tie(a.name, a.info.kind, b.info.identity.index) <
               std::tie(b.name, b.info.kind, a.info.identity.index);
    });
    children.erase(std::unique(children.begin(), children.end(), sameName), children.end());
    std::stable_sort(children.begin(), children.end(), [](const auto& a, const auto& b) {
        return std::tie(b.info.kind, a.info.identity.index) < std::tie(a.info.kind, b.info.identity.index);
    });
    children.shrink_to_fit();
}

}  // namespace

ArchiveListing ArchiveListing::read(ArchiveFolders& archives, const std::filesystem::path& archive)
{
    ArchiveListing listing;
    listing.folders_[{}];
    const Status status = archives.list(archive, [&](const ArchiveEntry& entry) {
        listing.add(entry);
        return ++listing.weight_ < mostEntries;
    });
    if (!status)
        listing.fault_ = status.error();
    else if (listing.weight_ == mostEntries)
        listing.fault_ = Error{ErrorKind::notSupported, 0, "the archive has too many entries"};
    for (auto& [path, children] : listing.folders_)
        settle(children);
    return listing;
}

const ArchiveListing::Children* ArchiveListing::children(const NativeString& folder) const
{
    const auto found = folders_.find(folder);
    return found != folders_.end() ? &found->second : nullptr;
}

const ArchiveListing::Child* ArchiveListing::find(const NativeString& folder, NativeView name) const
{
    const Children* all = children(folder);
    if (!all)
        return nullptr;
    const auto found = std::find_if(all->begin(), all->end(), [&](const Child& child) { return child.name == name; });
    return found != all->end() ? &*found : nullptr;
}

void ArchiveListing::add(const ArchiveEntry& entry)
{
    const NativeString path = nativeFromBytes(entry.path);
    if (entry.kind == FileKind::folder)
        addFolder(path);
    else if (entry.kind == FileKind::regular)
        addFolder(folderOf(path)).push_back({nameOf(path), fileInfo(entry)});
}

// Makes the folders above it too, up to one that is there already.
ArchiveListing::Children& ArchiveListing::addFolder(const NativeString& path)
{
    const auto [made, isNew] = folders_.try_emplace(path);
    Children& children = made->second;  // stays in place while the map grows
    if (isNew)
        addFolder(folderOf(path)).push_back({nameOf(path), folderInfo()});
    return children;
}

}  // namespace kelvane
