#include "support/memory_tree.h"

#include <algorithm>

#include "support/paths.h"

namespace kelvane::testing {
namespace fs = std::filesystem;
namespace {

bool liesIn(const std::string& path, const std::string& folder)
{
    return folder == "/" || path == folder || path.starts_with(folder + "/");
}

std::string parentOf(const std::string& path)
{
    return path.substr(0, std::max<std::size_t>(path.rfind('/'), 1));
}

bool isHidden(const std::string& path)
{
    return path[path.rfind('/') + 1] == '.';
}

}  // namespace

MemoryTree::MemoryTree()
{
    nodes_["/"] = std::make_shared<MemoryNode>();
    nodes_["/"]->kind = FileKind::folder;
}

void MemoryTree::makeFolders(const std::string& path)
{
    if (!nodes_.contains(path))
        add(path, FileKind::folder, "");
}

void MemoryTree::add(const std::string& path, FileKind kind, std::string contents)
{
    makeFolders(parentOf(path));
    nodes_[path] = std::make_shared<MemoryNode>();
    existing(path).kind = kind;
    existing(path).index = nextIndex_++;
    rewrite(path, std::move(contents));
}

void MemoryTree::addHardLink(const std::string& path, const std::string& existing)
{
    makeFolders(parentOf(path));
    ++nodes_.at(existing)->links;
    nodes_[path] = nodes_.at(existing);
}

void MemoryTree::rewrite(const std::string& path, std::string contents)
{
    existing(path).contents = std::move(contents);
    existing(path).modified = {nextTime_ += ticksPerSecond};
}

void MemoryTree::remove(const std::string& path)
{
    --existing(path).links;
    std::erase_if(nodes_, [&](const auto& entry) { return liesIn(entry.first, path); });
}

Result<MemoryTree::Found> MemoryTree::resolve(const fs::path& path, Links last, int linksLeft) const
{
    fs::path at = "/";
    const fs::path parts = path.relative_path();
    for (auto part = parts.begin(); part != parts.end(); ++part) {
        if (*part == "..")
            at = at.parent_path();
        if (part->empty() || *part == "." || *part == "..")
            continue;
        const auto found = nodes_.find(posix(at / *part));
        if (found == nodes_.end() || linksLeft == 0)
            return Error{ErrorKind::notFound, 0, "no such file, or too many links"};
        if (found->second->kind == FileKind::link && (std::next(part) != parts.end() || last == Links::followed)) {
            fs::path led = at / native(found->second->contents);
            while (++part != parts.end())
                led /= *part;
            return resolve(led, last, linksLeft - 1);
        }
        at = native(found->first);
    }
    return Found{posix(at), nodes_.at(posix(at))};
}

VolumeFacts MemoryTree::volumeOf(const std::string& path) const
{
    VolumeFacts facts{.serial = 1, .fileSystem = "memory", .fixed = true, .mountPoint = "/"};
    for (const auto& [folder, ofFolder] : volumes_) {  // inner folders come after outer ones
        if (liesIn(path, folder))
            facts = ofFolder;
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
    if (node.kind == FileKind::regular && volume.fetchesOnRead)
        info.attributes |= attribute::offline;
    info.size = {node.contents.size()};
    info.modified = node.modified;
    info.identity = {volume.serial, node.index};
    return info;
}

// Hidden goes by the link's own name, everything else by what it leads to.
Result<FileInfo> MemoryTree::infoAt(const std::string& path, Links links) const
{
    const auto itself = resolve(native(path), Links::asThemselves);
    const auto target = resolve(native(path), links);
    if (!itself || !target)
        return itself ? target.error() : itself.error();
    FileInfo info = infoOf(*target);
    if (itself->node->kind == FileKind::link)
        info.attributes |= attribute::reparsePoint;
    if (isHidden(itself->path))
        info.attributes |= attribute::hidden;
    return info;
}

MemoryTree::Children MemoryTree::children(const std::string& folder, Links links) const
{
    Children all;
    const std::string prefix = folder == "/" ? folder : folder + "/";
    for (auto at = nodes_.upper_bound(prefix); at != nodes_.end() && at->first.starts_with(prefix); ++at) {
        if (at->first.find('/', prefix.size()) != std::string::npos)
            continue;
        const auto info = infoAt(at->first, links);
        all.emplace_back(at->first.substr(prefix.size()), info ? *info : *infoAt(at->first, Links::asThemselves));
    }
    return all;
}

}  // namespace kelvane::testing
