#include "platform/windows/held_file.h"

#include <algorithm>

#include "platform/windows/file_facts.h"
#include "platform/windows/file_metadata.h"
#include "platform/windows/file_reader.h"
#include "platform/windows/os_error.h"
#include "platform/windows/system_path.h"

namespace kelvane::windows_os {
namespace {

constexpr DWORD mostAtOnce = 64 * 1024 * 1024;

constexpr DWORD nobodyWrites = FILE_SHARE_READ | FILE_SHARE_DELETE;

// Whether somebody has the file open in a way that goes against this access, or against what others may do meanwhile.
bool isInTheWay(HANDLE file, DWORD access, DWORD others)
{
    const Handle again(::ReOpenFile(file, access, others, 0));
    return !again.valid() && ::GetLastError() == ERROR_SHARING_VIOLATION;
}

class WindowsNewFile final : public NewFile {
public:
    explicit WindowsNewFile(Handle file) : file_(std::move(file)) {}

    Status write(std::span<const std::byte> bytes) override
    {
        while (!bytes.empty()) {
            DWORD written = 0;
            const auto count = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), mostAtOnce));
            if (::WriteFile(file_.get(), bytes.data(), count, &written, nullptr) == 0)
                return lastError();
            bytes = bytes.subspan(written);
        }
        return {};
    }

    Status setMetadata(const FileMetadata& metadata) override { return giveMetadata(file_.get(), metadata); }

    Status flush() override { return ::FlushFileBuffers(file_.get()) != 0 ? Status() : Status(lastError()); }

    Result<FileDetails> details() const override { return detailsOf(file_.get()); }

private:
    Handle file_;
};

}  // namespace

Result<FileDetails> WindowsHeldFile::details() const
{
    return detailsOf(file_.get());
}

Result<std::size_t> WindowsHeldFile::readAt(std::uint64_t offset, std::span<std::byte> buffer)
{
    return windows_os::readAt(file_.get(), offset, buffer);
}

Result<FileMetadata> WindowsHeldFile::metadata() const
{
    return metadataOf(file_.get());
}

Result<std::uint64_t> WindowsHeldFile::sharedBytes() const
{
    return std::uint64_t{0};
}

// Opened for reading it finds those who write, read-only files included; for writing, those who forbid it. Other
// failures (no right to write) say nothing about use.
bool WindowsHeldFile::isBeingWritten() const
{
    return isInTheWay(file_.get(), FILE_READ_DATA, nobodyWrites) ||
           isInTheWay(file_.get(), FILE_WRITE_DATA, nobodyWrites);
}

Status WindowsHeldFile::shareBlocks(HeldFile& /*source*/)
{
    return osError(ERROR_NOT_SUPPORTED);
}

bool WindowsHeldFile::keepsItsNames() const
{
    return isInTheWay(file_.get(), DELETE, shareAll);
}

Result<std::wstring> WindowsHeldFile::currentName() const
{
    if (leadsTo(name_, file_.get()))
        return name_;
    auto now = pathOfHandle(file_.get());
    if (!now || !leadsTo(*now, file_.get()))
        return Error{ErrorKind::changed, ERROR_FILE_INVALID, "the file has no name any more"};
    return std::move(*now);
}

Result<std::unique_ptr<NewFile>> createFile(const std::wstring& name)
{
    Handle file(::CreateFileW(name.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                              CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file.valid())
        return lastError();
    return std::unique_ptr<NewFile>(std::make_unique<WindowsNewFile>(std::move(file)));
}

}  // namespace kelvane::windows_os
