#include "platform/linux/directory_listing.h"

#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>

#include "platform/linux/anchored_path.h"
#include "platform/linux/file_facts.h"
#include "platform/linux/os_error.h"

namespace kelvane::linux_os {
namespace {

bool isDots(const char* name)
{
    return std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0;
}

class Listing {
public:
    Listing(FileHandle folder, Links links, const FileSystem::EntrySink& sink, Volumes& volumes)
        : folder_(std::move(folder)), links_(links), sink_(sink), facts_(volumes)
    {
    }

    Status run()
    {
        // Straight from the kernel: the C library's stream would add an allocation and two calls a folder.
        alignas(dirent64) char buffer[32 * 1024];
        for (;;) {
            const ssize_t got = uninterrupted([&] { return ::getdents64(folder_.get(), buffer, sizeof buffer); });
            if (got < 0)
                return osError(errno);
            if (got == 0 || !giveAll(buffer, static_cast<std::size_t>(got)))
                return fault_ ? Status(*std::move(fault_)) : Status();
        }
    }

private:
    // False when the sink has had enough.
    bool giveAll(const char* buffer, std::size_t size)
    {
        for (std::size_t at = 0; at < size;) {
            const auto* entry = reinterpret_cast<const dirent64*>(buffer + at);
            at += entry->d_reclen;
            if (!isDots(entry->d_name) && !give(entry->d_name))
                return false;
        }
        return true;
    }

    bool give(const char* name)
    {
        const auto info = infoOf(name);
        return !info || sink_({name, *info});
    }

    std::optional<FileInfo> infoOf(const char* name)
    {
        struct statx facts {};
        if (!readFacts(folder_.get(), name, Links::asThemselves, listingMask(), facts)) {
            if (errno != ENOENT && !fault_)
                fault_ = osError(errno);
            return std::nullopt;
        }
        FileInfo info = facts_.info(facts, name);
        struct statx target {};
        if (links_ == Links::followed && info.kind == FileKind::link &&
            readFacts(folder_.get(), name, Links::followed, listingMask(), target)) {
            info = facts_.info(target, name);
            info.attributes |= attribute::reparsePoint;
        }
        return info;
    }

    FileHandle folder_;
    Links links_;
    const FileSystem::EntrySink& sink_;
    FactReader facts_;
    std::optional<Error> fault_;
};

FileHandle openFolder(const AnchoredPath& path)
{
    constexpr int flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK;
    return FileHandle(uninterrupted([&] { return ::openat(path.folder(), path.rest(), flags); }));
}

}  // namespace

Status listFolder(const std::filesystem::path& folder, Links links, const FileSystem::EntrySink& sink, Volumes& volumes)
{
    const auto anchored = AnchoredPath::make(folder);
    if (!anchored)
        return anchored.error();
    FileHandle handle = openFolder(*anchored);
    if (!handle.valid()) {
        Error error = osError(errno);
        if (error.systemCode == ENOTDIR)
            error.kind = ErrorKind::wrongType;
        return error;
    }
    return Listing(std::move(handle), links, sink, volumes).run();
}

}  // namespace kelvane::linux_os
