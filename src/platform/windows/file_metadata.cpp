#include "platform/windows/file_metadata.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "platform/windows/os_error.h"

namespace kelvane::windows_os {
namespace {

constexpr std::int64_t nanosecondsPerTick = 100;
constexpr std::int64_t ticksBefore1970 = 116'444'736'000'000'000;  // 369 years, 89 of them leap years

constexpr DWORD settable = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM |
                           FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_TEMPORARY | FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;

LARGE_INTEGER ticksOf(std::int64_t nanoseconds)
{
    LARGE_INTEGER ticks;
    ticks.QuadPart = fromUnixNanoseconds(nanoseconds).ticks;
    return ticks;
}

std::vector<std::byte> bytesOf(LARGE_INTEGER time)
{
    std::vector<std::byte> bytes(sizeof time.QuadPart);
    std::memcpy(bytes.data(), &time.QuadPart, bytes.size());
    return bytes;
}

// What nobody here can give is told at the end.
bool takeAttribute(std::string_view name, const std::vector<std::byte>& value, FILE_BASIC_INFO& into)
{
    if (name != createdAttribute || value.size() != sizeof into.CreationTime.QuadPart)
        return false;
    std::memcpy(&into.CreationTime.QuadPart, value.data(), value.size());
    return true;
}

}  // namespace

std::int64_t unixNanoseconds(FileTime time) noexcept
{
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max() / nanosecondsPerTick;
    return std::clamp(time.ticks - ticksBefore1970, -most, most) * nanosecondsPerTick;
}

FileTime fromUnixNanoseconds(std::int64_t nanoseconds) noexcept
{
    return {nanoseconds / nanosecondsPerTick + ticksBefore1970};
}

Result<FileMetadata> metadataOf(HANDLE file)
{
    FILE_BASIC_INFO basic{};
    if (::GetFileInformationByHandleEx(file, FileBasicInfo, &basic, sizeof basic) == 0)
        return lastError();
    FileMetadata metadata;
    metadata.permissions = basic.FileAttributes;
    metadata.modified = unixNanoseconds({basic.LastWriteTime.QuadPart});
    metadata.accessed = unixNanoseconds({basic.LastAccessTime.QuadPart});
    metadata.attributes.emplace_back(createdAttribute, bytesOf(basic.CreationTime));
    return metadata;
}

Status giveMetadata(HANDLE file, const FileMetadata& metadata)
{
    FILE_BASIC_INFO basic{};
    bool complete = true;
    for (const auto& [name, value] : metadata.attributes)
        complete = takeAttribute(name, value, basic) && complete;
    basic.LastWriteTime = ticksOf(metadata.modified);
    basic.LastAccessTime = ticksOf(metadata.accessed);
    const DWORD attributes = metadata.permissions & settable;
    basic.FileAttributes = attributes != 0 ? attributes : DWORD{FILE_ATTRIBUTE_NORMAL};
    if (::SetFileInformationByHandle(file, FileBasicInfo, &basic, sizeof basic) == 0 ||
        ::GetFileInformationByHandleEx(file, FileBasicInfo, &basic, sizeof basic) == 0)
        return lastError();
    if ((metadata.permissions & ~basic.FileAttributes & FILE_ATTRIBUTE_ENCRYPTED) != 0)
        complete = false;
    return complete ? Status() : Status(osError(ERROR_NOT_SUPPORTED));
}

}  // namespace kelvane::windows_os
