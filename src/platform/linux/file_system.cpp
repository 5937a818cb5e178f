#include <cerrno>
#include <pwd.h>
#include <string>
#include <sys/stat.h>

#include "base/utf.h"
#include "platform/linux/adapters.h"
#include "platform/linux/anchored_path.h"
#include "platform/linux/directory_listing.h"
#include "platform/linux/file_facts.h"
#include "platform/linux/file_reader.h"
#include "platform/linux/file_streams.h"
#include "platform/linux/os_error.h"

namespace kelvane {
namespace linux_os {
namespace {

namespace fs = std::filesystem;

class LinuxFileSystem final : public FileSystem {
public:
    Status enumerate(const fs::path& folder, Links links, const EntrySink& sink) override
    {
        return listFolder(folder, links, sink, volumes_);
    }

    Result<FileDetails> details(const fs::path& path, Links links) override
    {
        const auto anchored = AnchoredPath::make(path);
        if (!anchored)
            return anchored.error();
        const std::string name = path.filename().native();
        struct statx facts {};
        if (!readFacts(anchored->folder(), anchored->rest(), Links::asThemselves, detailsMask(), facts))
            return osError(errno);
        if (!S_ISLNK(facts.stx_mode) || links == Links::asThemselves)
            return FactReader(volumes_).details(facts, name);
        if (!readFacts(anchored->folder(), anchored->rest(), Links::followed, detailsMask(), facts))
            return osError(errno);
        FileDetails details = FactReader(volumes_).details(facts, name);
        details.attributes |= attribute::reparsePoint;
        return details;
    }

    Result<std::unique_ptr<ContentReader>> openForReading(const fs::path& path, ReadPattern pattern,
                                                          Links links) override
    {
        return readRegularFile(path, pattern, links, volumes_);
    }

    Result<std::vector<std::string>> streamNames(const fs::path& path) override { return listStreams(path); }

    Result<std::vector<std::byte>> readStream(const fs::path& path, const std::string& name, std::size_t limit) override
    {
        return readWholeStream(path, name, limit);
    }

    Result<VolumeFacts> volumeFacts(const fs::path& path) override
    {
        const auto anchored = AnchoredPath::make(path);
        if (!anchored)
            return anchored.error();
        struct statx facts {};
        if (!readFacts(anchored->folder(), anchored->rest(), Links::followed, listingMask(), facts))
            return osError(errno);
        return FactReader(volumes_).volume(facts);
    }

    Result<std::u16string> ownerName(std::uint32_t ownerId) override;

private:
    Volumes volumes_;
};

// The system says that the buffer was too small rather than how large it must be.
Result<std::u16string> LinuxFileSystem::ownerName(std::uint32_t ownerId)
{
    constexpr std::size_t longestRecord = 1 << 20;
    for (std::string buffer(1024, '\0'); buffer.size() <= longestRecord; buffer.resize(buffer.size() * 4)) {
        passwd record{};
        passwd* found = nullptr;
        const int code = ::getpwuid_r(ownerId, &record, buffer.data(), buffer.size(), &found);
        if (found)
            return toUtf16(found->pw_name);
        if (code != ERANGE && code != EINTR)
            return osError(code == 0 ? ENOENT : code);
    }
    return osError(ERANGE);
}

}  // namespace
}  // namespace linux_os

std::unique_ptr<FileSystem> makeLinuxFileSystem()
{
    return std::make_unique<linux_os::LinuxFileSystem>();
}

}  // namespace kelvane
