#include "support/memory_tree.h"

#include <algorithm>
#include <stdexcept>

namespace kelvane::testing {
namespace {

Error notFound()
{
    return {ErrorKind::notFound, 0, "no such file"};
}

std::string parentOf(const std::string& path)
{
    const auto slash = path.rfind('/');
    return slash == 0 || slash == std::string::npos ? "/" : path.substr(0, slash);
}

std::string nameOf(const std::string& path)
{
    return path.substr(path.rfind('/') + 1);
}

std::string joined(const std::string& folder, const std::string& name)
{
    return folder == "/" ? folder + name : folder + "/" + name;
}

// The components of a path, last one first, so that the next one to look at is at the back.
std::vector<std::string> reversedComponents(const std::string& path)
{
    std::vector<std::string> parts;
    std::size_t at = 0;
    while (at < path.size()) {
        const std::size_t end = std::min(path.find('/', at), path.size());
        if (end > at && path.compare(at, end - at, ".") != 0)
            parts.push_back(path.substr(at, end - at));
        at = end + 1;
    }
    std::reverse(parts.begin(), parts.end());
    return parts;
}

bool liesIn(const std::string& path, const std::string& folder)
{
    if (folder == "/" || path == folder)
        return true;
    return path.size() > folder.size() && path.starts_with(folder) && path[folder.size()] == '/';
}

}  // namespace

MemoryTree::MemoryTree()
{
    nodes_["/"] = newNode(FileKind::folder, "");
}

MemoryNodePtr MemoryTree::newNode(FileKind kind, std::string contents)
{
    auto node = std::make_shared<MemoryNode>();
    node->kind = kind;
    node->contents = std::move(contents);
    node->index = nextIndex_++;
    node->modified = newTime();
    return node;
}

void MemoryTree::makeFolders(const std::string& path)
{
    if (nodes_.contains(path))
        return;
    makeFolders(parentOf(path));
    nodes_[path] = newNode(FileKind::folder, "");
}

void MemoryTree::add(const std::string& path, MemoryNodePtr node)
{
    makeFolders(parentOf(path));
    nodes_[path] = std::move(node);
}

const MemoryNodePtr& MemoryTree::existing(const std::string& path) const
{
    const auto found = nodes_.find(path);
    if (found == nodes_.end())
        throw std::invalid_argument("the memory file system has no " + path);
    return found->second;
}

Result<MemoryTree::Found> MemoryTree::resolve(const std::string& path, Links last) const
{
    std::string at = "/";
    int linksLeft = 40;
    auto parts = reversedComponents(path);
    while (!parts.empty()) {
        const std::string part = std::move(parts.back());
        parts.pop_back();
        if (part == "..") {
            at = parentOf(at);
            continue;
        }
        const auto found = nodes_.find(joined(at, part));
        if (found == nodes_.end())
            return notFound();
        if (found->second->kind == FileKind::link && (!parts.empty() || last == Links::followed)) {
            if (linksLeft-- == 0)
                return Error{ErrorKind::notFound, 0, "too many links"};
            const std::string& target = found->second->contents;
            if (target.starts_with('/'))
                at = "/";
            const auto more = reversedComponents(target);
            parts.insert(parts.end(), more.begin(), more.end());
            continue;
        }
        at = found->first;
    }
    return Found{at, nodes_.at(at)};
}

VolumeFacts MemoryTree::volumeOf(const std::string& path) const
{
    VolumeFacts facts{.serial = 1, .fileSystem = "memory", .fixed = true};
    std::size_t longest = 0;
    for (const auto& [folder, ofFolder] : volumes_) {
        if (liesIn(path, folder) && folder.size() >= longest) {
            longest = folder.size();
            facts = ofFolder;
        }
    }
    return facts;
}

FileInfo MemoryTree::infoOf(const Found& found) const
{
    const MemoryNode& node = *found.node;
    const VolumeFacts volume = volumeOf(found.path);
    FileInfo info;
    info.kind = node.kind;
    info.attributes = node.attributes;
    if (node.kind == FileKind::folder)
        info.attributes |= attribute::directory;
    if (node.kind == FileKind::link)
        info.attributes |= attribute::reparsePoint;
    if (nameOf(found.path).starts_with('.'))
        info.attributes |= attribute::hidden;
    if (node.kind == FileKind::regular && volume.fetchesOnRead)
        info.attributes |= attribute::offline;
    info.size = {node.kind == FileKind::folder ? 0 : node.contents.size()};
    info.modified = node.modified;
    info.identity = {volume.serial, node.index};
    return info;
}

// Hidden goes by the link's own name, everything else by what it leads to.
FileInfo MemoryTree::infoThroughLink(const std::string& linkPath, const Found& target) const
{
    FileInfo info = infoOf(target);
    info.attributes |= attribute::reparsePoint;
    if (nameOf(target.path).starts_with('.'))
        info.attributes &= ~attribute::hidden;
    if (nameOf(linkPath).starts_with('.'))
        info.attributes |= attribute::hidden;
    return info;
}

Result<FileInfo> MemoryTree::infoAt(const std::string& path, Links links) const
{
    const auto itself = resolve(path, Links::asThemselves);
    if (!itself)
        return itself.error();
    if (itself->node->kind != FileKind::link || links == Links::asThemselves)
        return infoOf(*itself);
    const auto target = resolve(path, Links::followed);
    if (!target)
        return target.error();
    return infoThroughLink(path, *target);
}

MemoryTree::Children MemoryTree::children(const std::string& folder, Links links) const
{
    Children all;
    const std::string prefix = joined(folder, "");
    for (auto at = nodes_.upper_bound(prefix); at != nodes_.end() && at->first.starts_with(prefix);) {
        auto info = infoAt(at->first, links);
        if (!info)
            info = infoAt(at->first, Links::asThemselves);
        all.emplace_back(nameOf(at->first), *info);
        // '0' is the character after '/': the next path that does not lie inside this one, siblings like "a-b"
        // (which sort before "a/") being met one by one.
        at = std::next(at);
        while (at != nodes_.end() && at->first.starts_with(prefix) &&
               at->first.find('/', prefix.size()) != std::string::npos)
            at = nodes_.lower_bound(at->first.substr(0, at->first.find('/', prefix.size())) + "0");
    }
    return all;
}

void MemoryTree::remove(const std::string& path)
{
    --existing(path)->links;
    std::erase_if(nodes_, [&](const auto& entry) { return liesIn(entry.first, path); });
}

}  // namespace kelvane::testing
