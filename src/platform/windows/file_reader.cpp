#include "platform/windows/file_reader.h"

#include <algorithm>
#include <limits>
#include <windows.h>

#include "platform/windows/file_facts.h"
#include "platform/windows/handle.h"
#include "platform/windows/os_error.h"
#include "platform/windows/system_path.h"

namespace kelvane::windows_os {
namespace {

constexpr std::uint64_t furthest = std::numeric_limits<std::int64_t>::max();
constexpr std::size_t mostAtOnce = 64 * 1024 * 1024;

// Keeps its own position, so that skipping costs no system call.
class FileReader final : public ContentReader {
public:
    explicit FileReader(Handle file) : file_(std::move(file)) {}

    Result<std::size_t> read(std::span<std::byte> buffer) override
    {
        const auto got = readAt(file_.get(), position_, buffer);
        if (got)
            position_ += *got;
        return got;
    }

    Status skip(std::uint64_t bytes) override
    {
        position_ += std::min(bytes, furthest - position_);
        return {};
    }

    Result<FileInfo> info() const override { return infoOf(file_.get()); }

private:
    Handle file_;
    std::uint64_t position_ = 0;
};

Handle open(const std::wstring& path, ReadPattern pattern, bool followLinks)
{
    DWORD flags = pattern == ReadPattern::sequential ? FILE_FLAG_SEQUENTIAL_SCAN : FILE_FLAG_RANDOM_ACCESS;
    if (!followLinks)
        flags |= FILE_FLAG_OPEN_REPARSE_POINT;
    return Handle(::CreateFileW(path.c_str(), GENERIC_READ, shareAll, nullptr, OPEN_EXISTING, flags, nullptr));
}

Error wrongType()
{
    return {ErrorKind::wrongType, 0, "not a regular file"};
}

// The system calls opening a folder as a file a denial.
Error openError(const std::wstring& path)
{
    const Error error = lastError();
    if (error.systemCode != ERROR_ACCESS_DENIED)
        return error;
    const DWORD attributes = ::GetFileAttributesW(path.c_str());
    const bool isFolder = attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    return isFolder ? wrongType() : error;
}

}  // namespace

Result<std::size_t> readAt(HANDLE file, std::uint64_t offset, std::span<std::byte> buffer)
{
    std::size_t filled = 0;
    while (filled < buffer.size() && offset < furthest) {
        OVERLAPPED from{};
        from.Offset = static_cast<DWORD>(offset);
        from.OffsetHigh = static_cast<DWORD>(offset >> 32);
        const auto wanted = static_cast<DWORD>(std::min(buffer.size() - filled, mostAtOnce));
        DWORD got = 0;
        if (::ReadFile(file, buffer.data() + filled, wanted, &got, &from) == 0 && ::GetLastError() != ERROR_HANDLE_EOF)
            return lastError();
        if (got == 0)
            break;
        filled += got;
        offset += got;
    }
    return filled;
}

Result<Handle> openRegularHandle(const std::wstring& path, ReadPattern pattern, Links links)
{
    const bool follow = links == Links::followed;
    Handle file = open(path, pattern, follow);
    if (!file.valid())
        return openError(path);
    if (::GetFileType(file.get()) != FILE_TYPE_DISK)
        return wrongType();
    auto info = infoOf(file.get());
    if (info && !follow && info->kind == FileKind::regular && (info->attributes & attribute::reparsePoint) != 0) {
        // No link, but contents that are kept elsewhere; they come only when the reparse point is let do its work.
        const FileIdentity seen = info->identity;
        file = open(path, pattern, true);
        if (!file.valid())
            return openError(path);
        info = infoOf(file.get());
        if (info && info->identity != seen)
            return wrongType();
    }
    if (!info)
        return info.error();
    if (info->kind != FileKind::regular)
        return wrongType();
    return file;
}

Result<std::unique_ptr<ContentReader>> openContents(const std::wstring& path, ReadPattern pattern, Links links)
{
    auto file = openRegularHandle(path, pattern, links);
    if (!file)
        return file.error();
    return std::unique_ptr<ContentReader>(std::make_unique<FileReader>(std::move(*file)));
}

Result<std::unique_ptr<ContentReader>> openRegularFile(const std::filesystem::path& path, ReadPattern pattern,
                                                       Links links)
{
    return openContents(systemPath(path), pattern, links);
}

}  // namespace kelvane::windows_os
