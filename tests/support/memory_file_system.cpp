#include "support/memory_file_system.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <utility>

namespace kelvane::testing {
namespace {

// One physical file; hard links share it.
struct Node {
    FileKind kind = FileKind::regular;
    std::string contents;  // of a link: its target
    std::map<std::string, std::string> streams;
    FileTime modified;
    std::uint32_t attributes = 0;
    std::uint64_t index = 0;
    std::uint32_t links = 1;
};

using NodePtr = std::shared_ptr<Node>;

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

struct MemoryFileSystem::State {
    // What a path leads to, and under which name free of links.
    struct Found {
        std::string path;
        NodePtr node;
    };

    mutable std::mutex mutex;
    std::map<std::string, NodePtr> nodes;
    std::map<std::string, VolumeFacts> volumes;
    std::vector<std::string> accesses;
    std::uint64_t bytesRead = 0;
    std::uint64_t nextIndex = 1;
    std::int64_t nextTime = 133'000'000'000'000'000;
    Hook hook;

    State() { nodes["/"] = newNode(FileKind::folder, ""); }

    NodePtr newNode(FileKind kind, std::string contents)
    {
        auto node = std::make_shared<Node>();
        node->kind = kind;
        node->contents = std::move(contents);
        node->index = nextIndex++;
        node->modified = newTime();
        return node;
    }

    FileTime newTime() { return {nextTime += ticksPerSecond}; }

    void makeFolders(const std::string& path)
    {
        if (nodes.contains(path))
            return;
        makeFolders(parentOf(path));
        nodes[path] = newNode(FileKind::folder, "");
    }

    void add(const std::string& path, NodePtr node)
    {
        makeFolders(parentOf(path));
        nodes[path] = std::move(node);
    }

    const NodePtr& existing(const std::string& path) const
    {
        const auto found = nodes.find(path);
        if (found == nodes.end())
            throw std::invalid_argument("the memory file system has no " + path);
        return found->second;
    }

    // Writes the access down and asks the hook, outside the lock, so that a hook may change the files.
    std::optional<Error> begin(const std::string& operation, const std::string& path)
    {
        Hook asked;
        {
            const std::lock_guard lock(mutex);
            accesses.push_back(operation + " " + path);
            asked = hook;
        }
        return asked ? asked(operation, path) : std::nullopt;
    }

    Result<Found> resolve(const std::string& path, Links last) const
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
            const auto found = nodes.find(joined(at, part));
            if (found == nodes.end())
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
        return Found{at, nodes.at(at)};
    }

    VolumeFacts volumeOf(const std::string& path) const
    {
        VolumeFacts facts{.serial = 1, .fileSystem = "memory", .fixed = true};
        std::size_t longest = 0;
        for (const auto& [folder, ofFolder] : volumes) {
            if (liesIn(path, folder) && folder.size() >= longest) {
                longest = folder.size();
                facts = ofFolder;
            }
        }
        return facts;
    }

    FileInfo infoOf(const Found& found) const
    {
        const Node& node = *found.node;
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
    FileInfo infoThroughLink(const std::string& linkPath, const Found& target) const
    {
        FileInfo info = infoOf(target);
        info.attributes |= attribute::reparsePoint;
        if (nameOf(target.path).starts_with('.'))
            info.attributes &= ~attribute::hidden;
        if (nameOf(linkPath).starts_with('.'))
            info.attributes |= attribute::hidden;
        return info;
    }

    Result<FileInfo> infoAt(const std::string& path, Links links) const
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

    std::vector<std::pair<std::string, FileInfo>> children(const std::string& folder, Links links) const
    {
        std::vector<std::pair<std::string, FileInfo>> all;
        const std::string prefix = joined(folder, "");
        for (auto at = nodes.upper_bound(prefix); at != nodes.end() && at->first.starts_with(prefix);) {
            auto info = infoAt(at->first, links);
            if (!info)
                info = infoAt(at->first, Links::asThemselves);
            all.emplace_back(nameOf(at->first), *info);
            // '0' is the character after '/': the next path that does not lie inside this one, siblings like "a-b"
            // (which sort before "a/") being met one by one.
            at = std::next(at);
            while (at != nodes.end() && at->first.starts_with(prefix) &&
                   at->first.find('/', prefix.size()) != std::string::npos)
                at = nodes.lower_bound(at->first.substr(0, at->first.find('/', prefix.size())) + "0");
        }
        return all;
    }
};

namespace {

std::vector<std::byte> toBytes(const std::string& text)
{
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

}  // namespace

// Reads whatever the file holds at the time of each read, as an open handle does.
class MemoryFileSystem::Reader final : public ContentReader {
public:
    Reader(State& state, std::string path, State::Found found)
        : state_(state), path_(std::move(path)), found_(std::move(found))
    {
    }

    Result<std::size_t> read(std::span<std::byte> buffer) override
    {
        if (auto error = state_.begin("read", path_))
            return *std::move(error);
        const std::lock_guard lock(state_.mutex);
        const std::string& contents = found_.node->contents;
        const std::uint64_t left = contents.size() - std::min<std::uint64_t>(position_, contents.size());
        const std::size_t count = std::min<std::uint64_t>(buffer.size(), left);
        if (count != 0)
            std::memcpy(buffer.data(), contents.data() + position_, count);
        position_ += count;
        state_.bytesRead += count;
        return count;
    }

    Status skip(std::uint64_t bytes) override
    {
        if (auto error = state_.begin("skip", path_))
            return *std::move(error);
        position_ += std::min(bytes, ~position_);
        return {};
    }

    Result<FileInfo> info() const override
    {
        if (auto error = state_.begin("info", path_))
            return *std::move(error);
        const std::lock_guard lock(state_.mutex);
        return state_.infoOf(found_);
    }

private:
    State& state_;
    std::string path_;
    State::Found found_;
    std::uint64_t position_ = 0;
};

MemoryFileSystem::MemoryFileSystem() : state_(std::make_unique<State>()) {}
MemoryFileSystem::~MemoryFileSystem() = default;

void MemoryFileSystem::addFolder(const std::string& path)
{
    const std::lock_guard lock(state_->mutex);
    state_->makeFolders(path);
}

void MemoryFileSystem::addFile(const std::string& path, std::string contents)
{
    const std::lock_guard lock(state_->mutex);
    state_->add(path, state_->newNode(FileKind::regular, std::move(contents)));
}

void MemoryFileSystem::addHardLink(const std::string& path, const std::string& existing)
{
    const std::lock_guard lock(state_->mutex);
    NodePtr node = state_->existing(existing);
    ++node->links;
    state_->add(path, std::move(node));
}

void MemoryFileSystem::addSymbolicLink(const std::string& path, const std::string& target)
{
    const std::lock_guard lock(state_->mutex);
    state_->add(path, state_->newNode(FileKind::link, target));
}

void MemoryFileSystem::addStream(const std::string& path, const std::string& name, std::string contents)
{
    const std::lock_guard lock(state_->mutex);
    state_->existing(path)->streams[name] = std::move(contents);
}

void MemoryFileSystem::addOther(const std::string& path)
{
    const std::lock_guard lock(state_->mutex);
    state_->add(path, state_->newNode(FileKind::other, ""));
}

void MemoryFileSystem::remove(const std::string& path)
{
    const std::lock_guard lock(state_->mutex);
    --state_->existing(path)->links;
    std::erase_if(state_->nodes, [&](const auto& entry) { return liesIn(entry.first, path); });
}

void MemoryFileSystem::setModified(const std::string& path, FileTime time)
{
    const std::lock_guard lock(state_->mutex);
    state_->existing(path)->modified = time;
}

void MemoryFileSystem::setAttributes(const std::string& path, std::uint32_t attributes)
{
    const std::lock_guard lock(state_->mutex);
    state_->existing(path)->attributes = attributes;
}

void MemoryFileSystem::setVolume(const std::string& folder, const VolumeFacts& facts)
{
    const std::lock_guard lock(state_->mutex);
    state_->volumes[folder] = facts;
}

void MemoryFileSystem::setContents(const std::string& path, std::string contents)
{
    const std::lock_guard lock(state_->mutex);
    Node& node = *state_->existing(path);
    node.contents = std::move(contents);
    node.modified = state_->newTime();
}

void MemoryFileSystem::setHook(Hook hook)
{
    const std::lock_guard lock(state_->mutex);
    state_->hook = std::move(hook);
}

std::vector<std::string> MemoryFileSystem::accesses() const
{
    const std::lock_guard lock(state_->mutex);
    return state_->accesses;
}

std::uint64_t MemoryFileSystem::bytesRead() const
{
    const std::lock_guard lock(state_->mutex);
    return state_->bytesRead;
}

Status MemoryFileSystem::enumerate(const std::filesystem::path& folder, Links links, const EntrySink& sink)
{
    if (auto error = state_->begin("enumerate", folder.string()))
        return *std::move(error);
    std::vector<std::pair<std::string, FileInfo>> entries;
    {
        const std::lock_guard lock(state_->mutex);
        const auto found = state_->resolve(folder.string(), Links::followed);
        if (!found)
            return found.error();
        if (found->node->kind != FileKind::folder)
            return Error{ErrorKind::wrongType, 0, "not a folder"};
        entries = state_->children(found->path, links);
    }
    for (const auto& [name, info] : entries) {
        if (!sink({name, info}))
            break;
    }
    return {};
}

Result<FileDetails> MemoryFileSystem::details(const std::filesystem::path& path, Links links)
{
    if (auto error = state_->begin("details", path.string()))
        return *std::move(error);
    const std::lock_guard lock(state_->mutex);
    const auto info = state_->infoAt(path.string(), links);
    if (!info)
        return info.error();
    FileDetails details;
    static_cast<FileInfo&>(details) = *info;
    details.created = details.accessed = details.changed = info->modified;
    details.links = state_->resolve(path.string(), links)->node->links;
    details.allocated = {(info->size.bytes + 4095) / 4096 * 4096};
    details.ownerId = 1000;
    return details;
}

Result<std::unique_ptr<ContentReader>> MemoryFileSystem::openForReading(const std::filesystem::path& path,
                                                                        ReadPattern /*pattern*/, Links links)
{
    if (auto error = state_->begin("open", path.string()))
        return *std::move(error);
    const std::lock_guard lock(state_->mutex);
    auto found = state_->resolve(path.string(), links);
    if (!found)
        return found.error();
    if (found->node->kind != FileKind::regular)
        return Error{ErrorKind::wrongType, 0, "not a regular file"};
    return std::unique_ptr<ContentReader>(std::make_unique<Reader>(*state_, path.string(), *std::move(found)));
}

Result<std::vector<std::string>> MemoryFileSystem::streamNames(const std::filesystem::path& path)
{
    if (auto error = state_->begin("streamNames", path.string()))
        return *std::move(error);
    const std::lock_guard lock(state_->mutex);
    const auto found = state_->resolve(path.string(), Links::followed);
    if (!found)
        return found.error();
    std::vector<std::string> names;
    for (const auto& [name, contents] : found->node->streams)
        names.push_back(name);
    return names;
}

Result<std::vector<std::byte>> MemoryFileSystem::readStream(const std::filesystem::path& path, const std::string& name,
                                                            std::size_t limit)
{
    if (auto error = state_->begin("readStream", path.string()))
        return *std::move(error);
    const std::lock_guard lock(state_->mutex);
    const auto found = state_->resolve(path.string(), Links::followed);
    if (!found)
        return found.error();
    const auto stream = found->node->streams.find(name);
    if (stream == found->node->streams.end())
        return notFound();
    if (stream->second.size() > limit)
        return Error{ErrorKind::io, 0, "the stream is too long"};
    return toBytes(stream->second);
}

Result<VolumeFacts> MemoryFileSystem::volumeFacts(const std::filesystem::path& path)
{
    if (auto error = state_->begin("volumeFacts", path.string()))
        return *std::move(error);
    const std::lock_guard lock(state_->mutex);
    const auto found = state_->resolve(path.string(), Links::followed);
    if (!found)
        return found.error();
    return state_->volumeOf(found->path);
}

Result<std::u16string> MemoryFileSystem::ownerName(std::uint32_t ownerId)
{
    if (ownerId == 1000)
        return std::u16string(u"someone");
    return notFound();
}

}  // namespace kelvane::testing
