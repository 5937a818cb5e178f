#include "engine/archive_entries.h"

#include <algorithm>

#include "platform/native_text.h"

namespace kelvane {

Ref<const ShellItem> ArchiveEntries::find(const std::string& path, FileKind kind)
{
    Ref<const ShellItem> item = archive_;
    for (std::size_t from = 0; item && from <= path.size();) {
        const std::size_t end = std::min(path.find('/', from), path.size());
        const FileKind wanted = end == path.size() ? kind : FileKind::folder;
        const Children& children = childrenOf(item);
        const auto found = children.find({nativeFromBytes(std::string_view(path).substr(from, end - from)), wanted});
        item = found != children.end() ? found->second : nullptr;
        from = end + 1;
    }
    return item;
}

const ArchiveEntries::Children& ArchiveEntries::childrenOf(const Ref<const ShellItem>& folder)
{
    const auto [made, isNew] = folders_.try_emplace(folder.get());
    Children& children = made->second;
    if (isNew) {
        const Status listed = shell_.enumerate(folder, {}, [&](Ref<ShellItem> child) {
            const NativeString name(child->name());
            const FileKind kind = child->info().kind;
            children.emplace(std::pair(name, kind), std::move(child));
            return !cancel_.cancelled();
        });
        // What could be listed counts; the rest is not there.
        static_cast<void>(listed);
    }
    return children;
}

}  // namespace kelvane
