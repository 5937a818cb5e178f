#include "support/memory_file_system.h"

#include <algorithm>

#include "support/paths.h"

namespace kelvane::testing {

// Writes the access down and asks the hook, outside the lock, so that a hook may change the files.
std::optional<Error> MemoryFileSystem::begin(const std::string& operation, const std::string& path)
{
    Hook asked;
    {
        const std::lock_guard lock(mutex_);
        accesses_.push_back(operation + " " + path);
        asked = hook_;
    }
    return asked ? asked(operation, path) : std::nullopt;
}

Result<MemoryTree::Found> MemoryFileSystem::reach(const std::string& operation, const std::filesystem::path& path,
                                                  Links links)
{
    if (auto error = begin(operation, posix(path)))
        return *std::move(error);
    return tree()->resolve(path, links);
}

// Reads whatever the file holds at the time of each read, as an open handle does.
class MemoryFileSystem::Reader final : public ContentReader {
public:
    Reader(MemoryFileSystem& files, std::string path, MemoryTree::Found found)
        : files_(files), path_(std::move(path)), found_(std::move(found))
    {
    }

    Result<std::size_t> read(std::span<std::byte> buffer) override
    {
        if (auto error = files_.begin("read", path_))
            return *std::move(error);
        const std::lock_guard lock(files_.mutex_);
        const auto bytes = std::as_bytes(std::span(found_.node->contents));
        const auto left = bytes.subspan(std::min<std::size_t>(position_, bytes.size()));
        const std::size_t count = std::min(buffer.size(), left.size());
        std::copy_n(left.begin(), count, buffer.begin());
        position_ += count;
        files_.bytesRead_ += count;
        return count;
    }

    Status skip(std::uint64_t bytes) override
    {
        if (auto error = files_.begin("skip", path_))
            return *std::move(error);
        position_ += std::min(bytes, ~position_);
        return {};
    }

    Result<FileInfo> info() const override
    {
        if (auto error = files_.begin("info", path_))
            return *std::move(error);
        return files_.tree()->infoOf(found_);
    }

private:
    MemoryFileSystem& files_;
    std::string path_;
    MemoryTree::Found found_;
    std::uint64_t position_ = 0;
};

Status MemoryFileSystem::enumerate(const std::filesystem::path& folder, Links links, const EntrySink& sink)
{
    const auto found = reach("enumerate", folder);
    if (!found)
        return found.error();
    if (found->node->kind != FileKind::folder)
        return Error{ErrorKind::wrongType, 0, "not a folder"};
    for (const auto& [name, info] : tree()->children(found->path, links)) {
        const NativeString entry = native(name);
        if (!sink({entry, info}))
            break;
    }
    return {};
}

Result<FileDetails> MemoryFileSystem::details(const std::filesystem::path& path, Links links)
{
    const auto found = reach("details", path, links);
    if (!found)
        return found.error();
    const std::lock_guard lock(mutex_);
    FileDetails details;
    static_cast<FileInfo&>(details) = tree_.infoAt(posix(path), links).value();
    details.created = details.accessed = details.changed = details.modified;
    details.links = found->node->links;
    details.allocated = {(details.size.bytes + 4095) / 4096 * 4096};
    details.ownerId = 1000;
    return details;
}

Result<std::unique_ptr<ContentReader>> MemoryFileSystem::openForReading(const std::filesystem::path& path,
                                                                        ReadPattern /*pattern*/, Links links)
{
    const auto found = reach("open", path, links);
    if (!found)
        return found.error();
    if (found->node->kind != FileKind::regular)
        return Error{ErrorKind::wrongType, 0, "not a regular file"};
    return std::unique_ptr<ContentReader>(std::make_unique<Reader>(*this, posix(path), *found));
}

Result<std::vector<std::string>> MemoryFileSystem::streamNames(const std::filesystem::path& path)
{
    const auto found = reach("streamNames", path);
    if (!found)
        return found.error();
    const std::lock_guard lock(mutex_);
    std::vector<std::string> names;
    for (const auto& [name, contents] : found->node->streams)
        names.push_back(name);
    return names;
}

Result<std::vector<std::byte>> MemoryFileSystem::readStream(const std::filesystem::path& path, const std::string& name,
                                                            std::size_t limit)
{
    const auto found = reach("readStream", path);
    if (!found)
        return found.error();
    const std::lock_guard lock(mutex_);
    const auto stream = found->node->streams.find(name);
    if (stream == found->node->streams.end())
        return Error{ErrorKind::notFound, 0, "no such thing"};
    if (stream->second.size() > limit)
        return Error{ErrorKind::io, 0, "the stream is too long"};
    const auto bytes = std::as_bytes(std::span(stream->second));
    return std::vector<std::byte>(bytes.begin(), bytes.end());
}

Result<VolumeFacts> MemoryFileSystem::volumeFacts(const std::filesystem::path& path)
{
    const auto found = reach("volumeFacts", path);
    if (!found)
        return found.error();
    return tree()->volumeOf(found->path);
}

Result<std::u16string> MemoryFileSystem::ownerName(std::uint32_t ownerId)
{
    if (ownerId == 1000)
        return std::u16string(u"someone");
    return Error{ErrorKind::notFound, 0, "no such thing"};
}

}  // namespace kelvane::testing
