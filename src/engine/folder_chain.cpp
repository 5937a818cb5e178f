#include "engine/folder_chain.h"

#include <functional>
#include <utility>

#include "engine/stored_paths.h"
#include "platform/native_text.h"

namespace kelvane {
namespace {

bool isSeparator(NativeString::value_type c)
{
    return c == std::filesystem::path::preferred_separator || c == NativeString::value_type('/');
}

std::size_t rootOf(NativeView path)
{
    // Roots are made of characters that take one unit in every encoding, but for the names of servers.
    const std::string bytes = bytesFromNative(path);
    return nativeFromBytes(std::string_view(bytes).substr(0, rootLength(bytes))).size();
}

}  // namespace

FolderChain::FolderChain(FileSystem& files, NativeString top) : files_(files), top_(std::move(top)) {}

std::size_t FolderChain::Hash::of(const ShellItem* parent, NativeView name)
{
    return std::hash<NativeView>()(name) * 31 + std::hash<const void*>()(parent);
}

Ref<const ShellItem> FolderChain::folderOf(NativeView path)
{
    std::size_t from = top_.empty() ? rootOf(path) : top_.size();
    Ref<const ShellItem> folder =
        top_.empty() ? child(nullptr, path.substr(0, from), path.substr(0, from)) : topFolder();
    while (folder && from < path.size()) {
        from += isSeparator(path[from]) ? 1 : 0;
        std::size_t end = from;
        while (end < path.size() && !isSeparator(path[end]))
            ++end;
        if (end == path.size())
            break;
        folder = child(folder, path.substr(from, end - from), path.substr(0, end));
        from = end;
    }
    return folder;
}

// Kept apart: it may be a long name, and every file asks for it.
const Ref<const ShellItem>& FolderChain::topFolder()
{
    if (!topFolder_)
        topFolder_ = child(nullptr, top_, top_);
    return *topFolder_;
}

// The reference holds until the next call.
const Ref<const ShellItem>& FolderChain::child(const Ref<const ShellItem>& parent, NativeView name, NativeView path)
{
    if (const auto found = folders_.find(View{parent.get(), name}); found != folders_.end())
        return found->second;
    const auto details = files_.details(NativeString(path), Links::followed);
    Ref<const ShellItem> folder;
    if (details && details->kind == FileKind::folder) {
        FileInfo info = static_cast<const FileInfo&>(*details);
        // Whoever named the folder above all others meant what it leads to.
        if (!parent)
            info.attributes &= ~attribute::reparsePoint;
        folder = ShellItem::make(parent, name, info, ShellItem::Place::fileSystem);
    }
    return folders_.emplace(Key{parent.get(), NativeString(name)}, std::move(folder)).first->second;
}

}  // namespace kelvane
