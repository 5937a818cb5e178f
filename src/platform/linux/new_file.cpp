#include "platform/linux/new_file.h"

#include <fcntl.h>
#include <sys/stat.h>

#include "platform/linux/file_facts.h"
#include "platform/linux/file_handle.h"
#include "platform/linux/file_metadata.h"
#include "platform/linux/os_error.h"
#include "platform/linux/whole_writes.h"

namespace kelvane::linux_os {
namespace {

class LinuxNewFile final : public NewFile {
public:
    LinuxNewFile(FileHandle file, std::string name, std::shared_ptr<Volumes> volumes)
        : file_(std::move(file)), name_(std::move(name)), volumes_(std::move(volumes))
    {
    }

    Status write(std::span<const std::byte> bytes) override { return writeAll(file_.get(), bytes); }
    Status setMetadata(const FileMetadata& metadata) override { return giveMetadata(file_.get(), metadata); }

    Status flush() override
    {
        return uninterrupted([&] { return ::fsync(file_.get()); }) == 0 ? Status() : Status(osError(errno));
    }

    Result<FileDetails> details() const override
    {
        struct statx facts {};
        if (!readOpenFacts(file_.get(), detailsMask(), facts))
            return osError(errno);
        return FactReader(*volumes_).details(facts, name_);
    }

private:
    FileHandle file_;
    std::string name_;
    std::shared_ptr<Volumes> volumes_;
};

}  // namespace

Result<std::unique_ptr<NewFile>> createNewFile(int folder, const std::string& name, std::shared_ptr<Volumes> volumes)
{
    constexpr int flags = O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC | O_NOCTTY;
    FileHandle file(uninterrupted([&] { return ::openat(folder, name.c_str(), flags, 0600); }));
    if (!file.valid())
        return osError(errno);
    return std::unique_ptr<NewFile>(std::make_unique<LinuxNewFile>(std::move(file), name, std::move(volumes)));
}

}  // namespace kelvane::linux_os
