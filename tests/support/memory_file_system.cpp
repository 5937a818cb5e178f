#include "support/memory_file_system.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "support/memory_tree.h"

namespace kelvane::testing {

struct MemoryFileSystem::State {
    mutable std::mutex mutex;
    MemoryTree tree;
    std::vector<std::string> accesses;
    std::uint64_t bytesRead = 0;
    Hook hook;

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
    Reader(State& state, std::string path, MemoryTree::Found found)
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
        return state_.tree.infoOf(found_);
    }

private:
    State& state_;
    std::string path_;
    MemoryTree::Found found_;
    std::uint64_t position_ = 0;
};

MemoryFileSystem::MemoryFileSystem() : state_(std::make_unique<State>()) {}
MemoryFileSystem::~MemoryFileSystem() = default;

void MemoryFileSystem::addFolder(const std::string& path)
{
    const std::lock_guard lock(state_->mutex);
    state_->tree.makeFolders(path);
}

void MemoryFileSystem::addFile(const std::string& path, std::string contents)
{
    const std::lock_guard lock(state_->mutex);
    state_->tree.add(path, state_->tree.newNode(FileKind::regular, std::move(contents)));
}

void MemoryFileSystem::addHardLink(const std::string& path, const std::string& existing)
{
    const std::lock_guard lock(state_->mutex);
    MemoryNodePtr node = state_->tree.existing(existing);
    ++node->links;
    state_->tree.add(path, std::move(node));
}

void MemoryFileSystem::addSymbolicLink(const std::string& path, const std::string& target)
{
    const std::lock_guard lock(state_->mutex);
    state_->tree.add(path, state_->tree.newNode(FileKind::link, target));
}

void MemoryFileSystem::addStream(const std::string& path, const std::string& name, std::string contents)
{
    const std::lock_guard lock(state_->mutex);
    state_->tree.existing(path)->streams[name] = std::move(contents);
}

void MemoryFileSystem::addOther(const std::string& path)
{
    const std::lock_guard lock(state_->mutex);
    state_->tree.add(path, state_->tree.newNode(FileKind::other, ""));
}

void MemoryFileSystem::remove(const std::string& path)
{
    const std::lock_guard lock(state_->mutex);
    state_->tree.remove(path);
}

void MemoryFileSystem::setModified(const std::string& path, FileTime time)
{
    const std::lock_guard lock(state_->mutex);
    state_->tree.existing(path)->modified = time;
}

void MemoryFileSystem::setAttributes(const std::string& path, std::uint32_t attributes)
{
    const std::lock_guard lock(state_->mutex);
    state_->tree.existing(path)->attributes = attributes;
}

void MemoryFileSystem::setVolume(const std::string& folder, const VolumeFacts& facts)
{
    const std::lock_guard lock(state_->mutex);
    state_->tree.setVolume(folder, facts);
}

void MemoryFileSystem::setContents(const std::string& path, std::string contents)
{
    const std::lock_guard lock(state_->mutex);
    MemoryNode& node = *state_->tree.existing(path);
    node.contents = std::move(contents);
    node.modified = state_->tree.newTime();
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
        const auto found = state_->tree.resolve(folder.string(), Links::followed);
        if (!found)
            return found.error();
        if (found->node->kind != FileKind::folder)
            return Error{ErrorKind::wrongType, 0, "not a folder"};
        entries = state_->tree.children(found->path, links);
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
    const auto info = state_->tree.infoAt(path.string(), links);
    if (!info)
        return info.error();
    FileDetails details;
    static_cast<FileInfo&>(details) = *info;
    details.created = details.accessed = details.changed = info->modified;
    details.links = state_->tree.resolve(path.string(), links)->node->links;
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
    auto found = state_->tree.resolve(path.string(), links);
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
    const auto found = state_->tree.resolve(path.string(), Links::followed);
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
    const auto found = state_->tree.resolve(path.string(), Links::followed);
    if (!found)
        return found.error();
    const auto stream = found->node->streams.find(name);
    if (stream == found->node->streams.end())
        return Error{ErrorKind::notFound, 0, "no such thing"};
    if (stream->second.size() > limit)
        return Error{ErrorKind::io, 0, "the stream is too long"};
    return toBytes(stream->second);
}

Result<VolumeFacts> MemoryFileSystem::volumeFacts(const std::filesystem::path& path)
{
    if (auto error = state_->begin("volumeFacts", path.string()))
        return *std::move(error);
    const std::lock_guard lock(state_->mutex);
    const auto found = state_->tree.resolve(path.string(), Links::followed);
    if (!found)
        return found.error();
    return state_->tree.volumeOf(found->path);
}

Result<std::u16string> MemoryFileSystem::ownerName(std::uint32_t ownerId)
{
    if (ownerId == 1000)
        return std::u16string(u"someone");
    return Error{ErrorKind::notFound, 0, "no such thing"};
}

}  // namespace kelvane::testing
